#include "trials/input_record.h"

#include <gtest/gtest.h>

#include <string>

namespace veldra {
namespace {

InputRecord sample_record() {
    InputRecord record;
    record.level_path = "my levels/level 05.txt";  // spaces survive
    record.level_digest = "0123456789abcdef";
    record.configuration_digest = "fedcba9876543210";
    record.seed = -9007199254740992.0;
    record.traits = PersonalityTraits{1, 0.1, 0, -0.3333333333333333, -1};
    PlayerCommands commands;
    commands.push_move(0, 1, -1);
    commands.push_target(7, 830.4, 415.6);
    commands.push_move(7, 0, 0);
    record.commands.assign(commands.pending.begin(), commands.pending.end());
    TrialResult result;
    result.outcome = TrialOutcome::perished;
    result.time_left = 1234;
    result.num_monsters_remaining = 2;
    result.num_food_remaining = 0;
    result.num_humans_remaining = 5;
    result.energy_remaining = 0.1 + 0.2;  // not a short decimal: must come back bit for bit
    result.trial_score = -17.25;
    record.result = result;
    return record;
}

// `text` with the first `from` replaced by `to`.
std::string replaced(std::string text, const std::string& from, const std::string& to) {
    text.replace(text.find(from), from.size(), to);
    return text;
}

std::string why_refused(const std::string& text) {
    std::string why;
    EXPECT_FALSE(input_record_parse(text, why).has_value()) << text;
    return why;
}

TEST(InputRecordTest, ARecordComesBackExactly) {
    const InputRecord record = sample_record();
    std::string why;
    const auto again = input_record_parse(input_record_to_text(record), why);
    ASSERT_TRUE(again) << why;
    EXPECT_EQ(again->level_path, record.level_path);
    EXPECT_EQ(again->level_digest, record.level_digest);
    EXPECT_EQ(again->configuration_digest, record.configuration_digest);
    EXPECT_EQ(again->seed, record.seed);
    EXPECT_EQ(again->traits, record.traits);
    EXPECT_EQ(again->commands, record.commands);
    ASSERT_TRUE(again->result);
    EXPECT_TRUE(trial_results_equal(*again->result, *record.result));
}

TEST(InputRecordTest, AnAbandonedTrialKeepsItsCommandsAndTick) {
    InputRecord record = sample_record();
    record.result.reset();
    record.abandoned_at = 4321;
    std::string why;
    const auto again = input_record_parse(input_record_to_text(record), why);
    ASSERT_TRUE(again) << why;
    EXPECT_FALSE(again->result);
    EXPECT_EQ(again->abandoned_at, 4321);
    EXPECT_EQ(again->commands.size(), 3u);
}

TEST(InputRecordTest, WindowsLineEndsAndBlankLinesAreRead) {
    std::string text = input_record_to_text(sample_record());
    std::string crlf;
    for (char c : text)
        crlf += c == '\n' ? std::string("\r\n\n") : std::string(1, c);
    std::string why;
    EXPECT_TRUE(input_record_parse(crlf, why)) << why;
}

TEST(InputRecordTest, BrokenFilesAreRefusedWithTheReason) {
    const std::string good = input_record_to_text(sample_record());
    const auto replace = [&](const std::string& from, const std::string& to) {
        return replaced(good, from, to);
    };
    EXPECT_NE(why_refused("").find("not an input recording"), std::string::npos);
    EXPECT_NE(why_refused(std::string("\x89PNG\r\n\x1a\n", 8)).find("not an input recording"),
              std::string::npos);
    EXPECT_NE(why_refused(good.substr(0, good.size() - 4)).find("truncated"), std::string::npos);
    EXPECT_NE(why_refused(good + "move 9 1 0\n").find("after the end"), std::string::npos);
    EXPECT_NE(why_refused(replace("move 7 0 0", "move 3 0 0")).find("backwards"),
              std::string::npos);
    EXPECT_NE(why_refused(replace("move 0 1 -1", "move 0 2 -1")).find("-1, 0 or 1"),
              std::string::npos);
    EXPECT_NE(why_refused(replace("target 7 830 416", "target 7 nan 416")).find("line 8"),
              std::string::npos);
    EXPECT_NE(why_refused(replace("seed -9007199254740992", "seed 1.5")).find("whole"),
              std::string::npos);
    EXPECT_NE(why_refused(replace("level_digest 0123456789abcdef", "level_digest xyz"))
                  .find("hexadecimal"),
              std::string::npos);
    EXPECT_NE(why_refused(replace("traits ", "traits 1,")).find("five numbers"), std::string::npos);
    EXPECT_NE(why_refused(replace("result perished", "result lost")).find("survived or perished"),
              std::string::npos);
    EXPECT_NE(
        why_refused(replace("move 0 1 -1\n", "move 0 1 -1\nseed 4\n")).find("a second seed line"),
        std::string::npos);
    EXPECT_NE(why_refused(replace("seed -9007199254740992\n", "")).find("no seed"),
              std::string::npos);
    EXPECT_NE(why_refused(replace("move 0 1 -1", "jump 0 1 -1")).find("unknown line \"jump\""),
              std::string::npos);
    EXPECT_NE(why_refused(replace("move 0 1 -1", "move 99999999999999999999 1 -1")).find("tick"),
              std::string::npos);
}

// Numbers beyond what a recording may hold are said to be too large, with the limit, and
// every problem reads on after "the file": "the file has an error on line 7: ...".
TEST(InputRecordTest, NumbersTooLargeAreCalledSoWithTheirLimit) {
    const std::string good = input_record_to_text(sample_record());
    const auto replace = [&](const std::string& from, const std::string& to) {
        return replaced(good, from, to);
    };
    EXPECT_EQ(why_refused(replace("move 0 1 -1", "move 99999999999999999999 1 -1")),
              "has an error on line 7: the tick is too large: at most 1099511627776");
    EXPECT_EQ(why_refused(replace("move 0 1 -1", "move 1099511627777 1 -1")),
              "has an error on line 7: the tick is too large: at most 1099511627776");
    EXPECT_EQ(why_refused(replace("move 0 1 -1", "move x 1 -1")),
              "has an error on line 7: the tick is not a whole number");
    EXPECT_EQ(why_refused(replace("seed -9007199254740992", "seed 1e300")),
              "has an error on line 5: the seed is too large: at most 9007199254740992 either "
              "side of 0");
    EXPECT_NE(why_refused(replace("traits 1,", "traits 1e300,")).find("each from -1000000000"),
              std::string::npos);
}

TEST(InputRecordTest, ALeadingByteOrderMarkIsNoPartOfTheFirstLine) {
    std::string why;
    const auto record =
        input_record_parse("\xEF\xBB\xBF" + input_record_to_text(sample_record()), why);
    EXPECT_TRUE(record) << why;
}

TEST(InputRecordTest, DigestsTellContentsApart) {
    EXPECT_EQ(level_digest_of("  p  \n m \n"), level_digest_of("  p  \n m \n"));
    EXPECT_NE(level_digest_of("  p  \n m \n"), level_digest_of("  p  \nm  \n"));
    EXPECT_EQ(level_digest_of("").size(), 16u);
}

}  // namespace
}  // namespace veldra
