#include "util/rng.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <map>
#include <set>
#include <vector>

namespace veldra {
namespace {

TEST(Rng, SeedZeroFirstValue) {
    Rng rng(0);
    EXPECT_EQ(rng.rng_random(1), 0.23606797284446657);
    EXPECT_EQ(rng.seed, 1013904223.0);
}

TEST(Rng, StepMatchesTheCongruenceOnDoubles) {
    for (const double start : {0.0, 1.0, 123456789.0, 4294967295.0}) {
        Rng rng(start);
        double reference = start;
        for (int i = 0; i < 10000; ++i) {
            reference = std::fmod(Rng::a * reference + Rng::c, Rng::m);
            ASSERT_EQ(rng.rng_random(2.0), reference / Rng::m * 2.0);
        }
    }
}

TEST(Rng, SameSeedSameStreamAndSeedsReducedModulo2To32) {
    Rng a(12345), b(12345), c(12346);
    Rng wrapped(4294967296.0 + 12345), negative(-1), top(4294967295.0);
    bool differs = false;
    for (int i = 0; i < 1000; ++i) {
        const double x = a.rng_random(1);
        EXPECT_EQ(x, b.rng_random(1));
        EXPECT_EQ(x, wrapped.rng_random(1));
        EXPECT_EQ(negative.rng_random(1), top.rng_random(1));
        differs |= x != c.rng_random(1);
        ASSERT_GE(a.seed, 0.0);
        ASSERT_LT(a.seed, Rng::m);
    }
    EXPECT_TRUE(differs);
}

TEST(Rng, IntegerDrawsIncludeBothEnds) {
    Rng rng(7);
    std::set<long long> seen, seen_range, seen_negative;
    for (int i = 0; i < 2000; ++i) {
        seen.insert(rng.rng_irandom(3));
        seen_range.insert(rng.rng_irandom_range(2, -2));
        seen_negative.insert(rng.rng_irandom(-2));
        EXPECT_EQ(rng.rng_irandom(0), 0);
    }
    EXPECT_EQ(seen, (std::set<long long>{0, 1, 2, 3}));
    EXPECT_EQ(seen_range, (std::set<long long>{-2, -1, 0, 1, 2}));
    EXPECT_EQ(seen_negative, (std::set<long long>{-2, -1, 0}));
}

TEST(Rng, ShuffleIsUniformOverPermutations) {
    // A shuffle drawing from the wrong range (for example only cyclic permutations) would leave
    // some of the six orders out entirely.
    Rng rng(99);
    std::map<std::vector<int>, int> counts;
    for (int i = 0; i < 6000; ++i)
        ++counts[rng.rng_array_shuffled(std::vector<int>{1, 2, 3})];
    ASSERT_EQ(counts.size(), 6u);
    for (const auto& [order, count] : counts) {
        EXPECT_GT(count, 800);
        EXPECT_LT(count, 1200);
    }
}

TEST(Rng, ShuffleKeepsElementsAndDependsOnlyOnState) {
    std::vector<int> values(50);
    for (int i = 0; i < 50; ++i)
        values[i] = i;
    Rng a(5), b(5);
    auto shuffled = a.rng_array_shuffled(values);
    EXPECT_EQ(shuffled, b.rng_array_shuffled(values));
    EXPECT_NE(shuffled, values);
    std::sort(shuffled.begin(), shuffled.end());
    EXPECT_EQ(shuffled, values);
}

TEST(Rng, ArrayHelpers) {
    Rng rng(3);
    std::vector<int> values{10, 20, 30};
    const int popped = rng.rng_array_pop_random(values);
    EXPECT_EQ(values.size(), 2u);
    EXPECT_EQ(std::count(values.begin(), values.end(), popped), 0);
    EXPECT_NE(std::find(values.begin(), values.end(), rng.rng_array_get_random(values)),
              values.end());

    const double seed_before = rng.seed;
    EXPECT_EQ(rng.rng_array_get_random_element_or_default(std::vector<int>{}, -1), -1);
    const std::vector<int> empty;
    EXPECT_FALSE(rng.rng_array_get_random_element_from_many<int>({&empty, &empty}));
    EXPECT_EQ(rng.seed, seed_before);

    const std::vector<int> first{1}, second{2, 3};
    std::set<int> from_many, chosen;
    for (int i = 0; i < 300; ++i) {
        from_many.insert(
            *rng.rng_array_get_random_element_from_many<int>({&first, &empty, &second}));
        chosen.insert(rng.rng_choose(4, 5, 6));
        chosen.insert(rng.rng_choose({7, 8}));
    }
    EXPECT_EQ(from_many, (std::set<int>{1, 2, 3}));
    EXPECT_EQ(chosen, (std::set<int>{4, 5, 6, 7, 8}));
}

}  // namespace
}  // namespace veldra
