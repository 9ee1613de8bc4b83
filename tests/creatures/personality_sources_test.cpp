#include "creatures/personality_sources.h"

#include <gtest/gtest.h>

#include "creature_test_fixture.h"

namespace veldra {
namespace {

TEST(PersonalityTraitsTest, PermutationsOfTwoValuesRunNeuroticismFastest) {
    const auto all = personality_traits_make_all_permutations({1, 2});
    ASSERT_EQ(all.size(), 32u);
    EXPECT_EQ(all.front(), (PersonalityTraits{1, 1, 1, 1, 1}));
    EXPECT_EQ(all[1], (PersonalityTraits{1, 1, 1, 1, 2}));
    EXPECT_EQ(all[2], (PersonalityTraits{1, 1, 1, 2, 1}));
    EXPECT_EQ(all[16], (PersonalityTraits{2, 1, 1, 1, 1}));
    EXPECT_EQ(all.back(), (PersonalityTraits{2, 2, 2, 2, 2}));
}

TEST(PersonalityTraitsTest, PermutationsPerTraitListsKeepEachTraitsValues) {
    const auto all = personality_traits_make_all_permutations({1}, {2, 3}, {4}, {5, 6, 7}, {8});
    ASSERT_EQ(all.size(), 6u);
    EXPECT_EQ(all[0], (PersonalityTraits{1, 2, 4, 5, 8}));
    EXPECT_EQ(all[1], (PersonalityTraits{1, 2, 4, 6, 8}));
    EXPECT_EQ(all[3], (PersonalityTraits{1, 3, 4, 5, 8}));
    EXPECT_TRUE(personality_traits_make_all_permutations({}).empty());
}

TEST(PersonalityTraitsTest, FromRangesDrawsEveryTraitInFieldOrder) {
    PersonalityTraitRanges ranges;
    ranges.openness = {0, 1};
    ranges.conscientiousness = {0.5, 0.5};  // still drawn
    ranges.extraversion = {-1, 0};
    ranges.agreeableness = {2, 2};
    ranges.neuroticism = {0, 10};
    Rng rng(42);
    Rng expected(42);
    const PersonalityTraits traits = personality_traits_from_ranges(ranges, rng);
    EXPECT_EQ(traits.openness, expected.rng_random_range(0, 1));
    EXPECT_EQ(traits.conscientiousness, 0.5);
    expected.rng_random(0);
    EXPECT_EQ(traits.extraversion, expected.rng_random_range(-1, 0));
    EXPECT_EQ(traits.agreeableness, 2);
    expected.rng_random(0);
    EXPECT_EQ(traits.neuroticism, expected.rng_random_range(0, 10));
    EXPECT_EQ(rng.seed, expected.seed);
}

TEST(PersonalityTraitsTest, CopiesAreIndependent) {
    PersonalityTraits original{1, 2, 3, 4, 5};
    PersonalityTraits copy = personality_traits_copied(original);
    EXPECT_EQ(copy, original);
    copy.openness = 9;
    EXPECT_EQ(original.openness, 1);
    EXPECT_EQ(PersonalityTraits{}, (PersonalityTraits{0, 0, 0, 0, 0}));
}

class TraitRangesFromValueTest : public testing::CreatureTest {};

TEST_F(TraitRangesFromValueTest, ReadsEveryShippedEntry) {
    const std::size_t logged = capture.lines.size();
    const Value& entries = configs.get().ai_human_traits;
    ASSERT_GT(entries.size(), 0u);
    for (std::size_t i = 0; i < entries.size(); ++i)
        EXPECT_TRUE(personality_traits_ranges_from_value(entries.at(i)).has_value()) << i;
    const auto first = personality_traits_ranges_from_value(entries.at(0));
    EXPECT_EQ(first->openness[0], entries.at(0).get("openness").at(0).as_number());
    EXPECT_EQ(first->neuroticism[1], entries.at(0).get("neuroticism").at(1).as_number());
    EXPECT_EQ(capture.lines.size(), logged);
}

TEST_F(TraitRangesFromValueTest, MalformedEntriesAreLoggedAndRefused) {
    const std::size_t logged = capture.lines.size();
    Value entry = Value::make_struct();
    for (const char* name : {"openness", "conscientiousness", "extraversion", "agreeableness"})
        entry.set(name, Value::array({0.0, 1.0}));
    EXPECT_FALSE(personality_traits_ranges_from_value(entry));
    EXPECT_TRUE(capture.contains("\"neuroticism\""));
    entry.set("neuroticism", Value::array({0.0}));
    EXPECT_FALSE(personality_traits_ranges_from_value(entry));
    entry.set("neuroticism", Value::array({0.0, "high"}));
    EXPECT_FALSE(personality_traits_ranges_from_value(entry));
    EXPECT_FALSE(personality_traits_ranges_from_value(Value(3.0)));
    EXPECT_EQ(capture.lines.size(), logged + 4);
}

TEST_F(TraitRangesFromValueTest, PrintOutListsTraitsActionsAndExchangeWeights) {
    const PersonalityTraits traits{0.5, -1, 0, 1, 0.25};
    const std::string text = personality_traits_format_data(traits, configs.get(), action_types);
    for (const char* label :
         {"Parameter", "Openness", "Neuroticism", "Action", "Exchange action", "Give", "Take"})
        EXPECT_NE(text.find(label), std::string::npos) << label;
    for (const HumanActionType* type : action_types.all)
        EXPECT_NE(text.find(type->debug_name), std::string::npos) << type->debug_name;
    EXPECT_NE(text.find("0.25"), std::string::npos);
    personality_traits_print_data(traits, configs.get(), action_types);
    EXPECT_TRUE(capture.contains("Exchange action"));
}

}  // namespace
}  // namespace veldra
