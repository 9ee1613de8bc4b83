// Open sets on their own: whatever the heap shape or bucket layout, entries come back in
// pf_taken_before order, which is what keeps a search's results independent of the open set.

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <limits>
#include <random>
#include <vector>

#include "world/pathfinder.h"

namespace veldra {
namespace {

using Entry = PfOpenEntry<int>;

// Pushes and pops interleaved like a search does (pushes mostly a little above the last pop),
// checking every pop against the first entry of a plain list of what is in the set.
template <class OpenSet>
void expect_pops_in_order(OpenSet& open_set, std::uint32_t seed, double spread) {
    std::mt19937 rng(seed);
    std::vector<Entry> reference;
    std::uint32_t sequence = 0;
    double last = 0;
    auto push = [&](double priority) {
        const Entry entry{priority, sequence, static_cast<int>(sequence)};
        ++sequence;
        open_set.push(entry);
        reference.push_back(entry);
    };
    for (int round = 0; round < 400; ++round) {
        const int pushes = static_cast<int>(rng() % 4);
        for (int i = 0; i < pushes; ++i) {
            // Whole steps make exact ties common; a few land below the last pop.
            const double step = static_cast<double>(rng() % 9) - 1;
            push(last + step * spread);
        }
        if (reference.empty())
            continue;
        ASSERT_FALSE(open_set.empty());
        const auto expected =
            std::min_element(reference.begin(), reference.end(), pf_taken_before<int>);
        const Entry taken = open_set.pop();
        ASSERT_EQ(taken.sequence, expected->sequence) << "round " << round;
        EXPECT_EQ(taken.priority, expected->priority);
        EXPECT_EQ(taken.node, expected->node);
        last = taken.priority;
        reference.erase(expected);
    }
    while (!reference.empty()) {
        const auto expected =
            std::min_element(reference.begin(), reference.end(), pf_taken_before<int>);
        ASSERT_EQ(open_set.pop().sequence, expected->sequence);
        reference.erase(expected);
    }
    EXPECT_TRUE(open_set.empty());
}

TEST(PathfinderOpenSetTest, HeapTakesEntriesInOrder) {
    PfHeapOpenSet<int> heap;
    for (std::uint32_t seed = 1; seed <= 5; ++seed) {
        heap.clear();
        expect_pops_in_order(heap, seed, 0.5);
    }
}

TEST(PathfinderOpenSetTest, BucketsTakeEntriesInOrderWhateverTheirWidth) {
    // Narrow buckets with few of them push most entries past the last bucket, so it is spread
    // out again and again; wide ones put many entries, with ties, in one bucket.
    struct Layout {
        double width;
        std::size_t count;
    };
    for (const Layout layout :
         {Layout{1.0 / 32, 1024}, Layout{0.01, 4}, Layout{100, 2}, Layout{0.3, 16}}) {
        SCOPED_TRACE(testing::Message() << "width " << layout.width << " count " << layout.count);
        PfBucketOpenSet<int> buckets(layout.width, layout.count);
        for (std::uint32_t seed = 1; seed <= 5; ++seed) {
            // A reused set must forget the previous base as well as the entries.
            buckets.clear();
            expect_pops_in_order(buckets, seed, seed % 2 ? 0.25 : 7.0);
        }
    }
}

TEST(PathfinderOpenSetTest, BucketsKeepOrderForNegativeAndInfinitePriorities) {
    PfBucketOpenSet<int> buckets(0.5, 8);
    buckets.clear();
    const double infinity = std::numeric_limits<double>::infinity();
    const std::vector<double> priorities{3, -40, infinity, 2.5, 1e9, -40, 3.25, infinity, 0};
    std::vector<Entry> entries;
    for (std::uint32_t i = 0; i < priorities.size(); ++i) {
        entries.push_back({priorities[i], i, static_cast<int>(i)});
        buckets.push(entries.back());
    }
    std::sort(entries.begin(), entries.end(), pf_taken_before<int>);
    for (const Entry& expected : entries)
        EXPECT_EQ(buckets.pop().sequence, expected.sequence);
    EXPECT_TRUE(buckets.empty());
}

}  // namespace
}  // namespace veldra
