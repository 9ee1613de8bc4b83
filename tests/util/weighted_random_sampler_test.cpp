#include "util/weighted_random_sampler.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <map>
#include <memory>
#include <string>

#include "util/random_deck.h"

namespace veldra {
namespace {

TEST(WeightedRandomSampler, EmptyOrWeightlessReturnsDefaultWithoutAdvancing) {
    Rng rng(1);
    WeightedRandomSampler<int> sampler;
    EXPECT_EQ(sampler.get(-7, rng), -7);
    sampler.add(3, 0.0);
    EXPECT_EQ(sampler.get(-7, rng), -7);
    EXPECT_EQ(rng.seed, Rng(1).seed);
}

TEST(WeightedRandomSampler, ZeroWeightIsNeverDrawn) {
    Rng rng(2);
    WeightedRandomSampler<std::string> sampler;
    sampler.add("never", 0.0);
    sampler.add("always", 1.0);
    for (int i = 0; i < 1000; ++i)
        ASSERT_EQ(sampler.get("", rng), "always");
}

TEST(WeightedRandomSampler, DrawsFollowWeights) {
    Rng rng(3);
    WeightedRandomSampler<int> sampler;
    sampler.add(0, 1.0);
    sampler.add(1, 3.0);
    std::map<int, int> counts;
    for (int i = 0; i < 8000; ++i)
        ++counts[sampler.get(-1, rng)];
    EXPECT_NEAR(counts[1] / 8000.0, 0.75, 0.03);
    EXPECT_EQ(counts.count(-1), 0u);
}

TEST(WeightedRandomSampler, NestedSamplerSharesItsWeight) {
    auto nested = std::make_shared<WeightedRandomSampler<int>>();
    nested->add(10, 1.0);
    nested->add(11, 1.0);
    WeightedRandomSampler<int> sampler;
    sampler.add(1, 1.0);
    sampler.add_sampler(nested, 1.0);
    Rng rng(4);
    std::map<int, int> counts;
    for (int i = 0; i < 8000; ++i)
        ++counts[sampler.get(-1, rng)];
    EXPECT_NEAR(counts[1] / 8000.0, 0.5, 0.03);
    EXPECT_NEAR(counts[10] / 8000.0, 0.25, 0.03);
    EXPECT_NEAR(counts[11] / 8000.0, 0.25, 0.03);
}

TEST(WeightedRandomSampler, WeightBookkeeping) {
    WeightedRandomSampler<int> sampler;
    sampler.add(1, 2.0);
    sampler.add(2, 3.0);
    sampler.change_weight_at(0, 0.5);
    EXPECT_DOUBLE_EQ(sampler.total_weight(), 3.5);
    EXPECT_EQ(sampler.get_num_elements(), 2u);
    Rng rng(5);
    sampler.change_weight_at(1, 0.0);
    for (int i = 0; i < 100; ++i)
        ASSERT_EQ(sampler.get(-1, rng), 1);
    sampler.clear();
    EXPECT_EQ(sampler.get_num_elements(), 0u);
    EXPECT_EQ(sampler.total_weight(), 0.0);
    const auto from_array = weighted_random_sampler_from_array<int>({{4, 1.0}, {5, 2.0}});
    EXPECT_EQ(from_array.get_num_elements(), 2u);
    EXPECT_DOUBLE_EQ(from_array.total_weight(), 3.0);
}

TEST(WeightedRandomSampler, OrderedArrayHoldsEveryValueOnceHeavierFirstMoreOften) {
    auto nested = std::make_shared<WeightedRandomSampler<int>>();
    nested->add(20, 1.0);
    nested->add(21, 1.0);
    WeightedRandomSampler<int> sampler;
    sampler.add(1, 1.0);
    sampler.add(2, 4.0);
    sampler.add_sampler(nested, 1.0);
    Rng rng(6);
    std::vector<int> out;
    int heavy_first = 0;
    const int runs = 4000;
    for (int i = 0; i < runs; ++i) {
        sampler.get_ordered_array(rng, out);
        std::vector<int> sorted = out;
        std::sort(sorted.begin(), sorted.end());
        ASSERT_EQ(sorted, (std::vector<int>{1, 2, 20, 21}));
        const auto pos = [&](int v) { return std::find(out.begin(), out.end(), v) - out.begin(); };
        heavy_first += pos(2) < pos(1);
    }
    // p1 = 4/6 against p2 = 1/6: the heavy one leads with probability 1 - p2 / (2 p1) = 7/8.
    EXPECT_NEAR(heavy_first / double(runs), 0.875, 0.03);
}

TEST(WeightedRandomSampler, OrderedArrayWithoutWeightKeepsInsertionOrder) {
    WeightedRandomSampler<int> sampler;
    sampler.add(3, 0.0);
    sampler.add(1, 0.0);
    sampler.add(2, 0.0);
    Rng rng(7);
    EXPECT_EQ(sampler.get_ordered_array(rng), (std::vector<int>{3, 1, 2}));
}

TEST(RandomDeck, DealsEachElementOncePerRound) {
    Rng rng(8);
    auto deck = random_deck_from_array(std::vector<int>{1, 2, 3}, rng);
    EXPECT_EQ(deck.get_size(), 3u);
    std::vector<std::vector<int>> rounds;
    for (int round = 0; round < 20; ++round) {
        std::vector<int> dealt;
        for (int i = 0; i < 3; ++i)
            dealt.push_back(deck.draw_one());
        rounds.push_back(dealt);
        std::sort(dealt.begin(), dealt.end());
        ASSERT_EQ(dealt, (std::vector<int>{1, 2, 3}));
    }
    // Reshuffled every round: twenty identical rounds would mean the shuffle never ran.
    EXPECT_GT(std::count(rounds.begin(), rounds.end(), rounds[0]), 0);
    EXPECT_LT(std::count(rounds.begin(), rounds.end(), rounds[0]), 20);
}

}  // namespace
}  // namespace veldra
