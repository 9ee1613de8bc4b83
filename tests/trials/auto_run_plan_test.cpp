#include "trials/auto_run_plan.h"

#include <gtest/gtest.h>

namespace veldra {
namespace {

// Every split of the run list must cover it exactly once, in order, or lines go missing or
// repeat in the output.
void expect_tiles(const std::vector<RunRange>& ranges, std::size_t count) {
    ASSERT_FALSE(ranges.empty());
    EXPECT_EQ(ranges.front().first, 0u);
    EXPECT_EQ(ranges.back().last, count);
    for (std::size_t i = 1; i < ranges.size(); ++i)
        EXPECT_EQ(ranges[i].first, ranges[i - 1].last) << "chunk " << i;
}

TEST(AutoRunShards, NearlyEqualContiguousRanges) {
    std::vector<RunRange> shards;
    for (std::size_t k = 1; k <= 4; ++k)
        shards.push_back(auto_run_shard_range(10, k, 4));
    expect_tiles(shards, 10);
    for (const RunRange& shard : shards)
        EXPECT_TRUE(shard.last - shard.first == 2 || shard.last - shard.first == 3);
    // More shards than runs: some are empty, none overlap.
    std::vector<RunRange> sparse;
    for (std::size_t k = 1; k <= 5; ++k)
        sparse.push_back(auto_run_shard_range(2, k, 5));
    expect_tiles(sparse, 2);
}

TEST(AutoRunShards, ParsesOnlyWholeKOfN) {
    EXPECT_EQ(parse_shard("3/16"), (std::pair<std::size_t, std::size_t>{3, 16}));
    for (const char* bad : {"0/4", "5/4", "1.5/4", "1/0", "1", "1/2/3", "a/b", ""})
        EXPECT_FALSE(parse_shard(bad)) << bad;
}

TEST(AutoRunGuidedChunks, CoverTheListAndShrinkDownToAFloor) {
    for (std::size_t count : {1u, 7u, 24u, 729u, 100000u}) {
        for (std::size_t jobs : {1u, 2u, 8u}) {
            SCOPED_TRACE(testing::Message() << count << " runs, " << jobs << " jobs");
            const auto chunks = auto_run_guided_chunks(count, jobs);
            expect_tiles(chunks, count);
            const std::size_t floor = std::max<std::size_t>(1, count / (jobs * 64));
            for (std::size_t i = 0; i < chunks.size(); ++i) {
                const std::size_t size = chunks[i].last - chunks[i].first;
                EXPECT_GE(size, 1u);
                if (i + 1 < chunks.size()) {
                    EXPECT_GE(size, floor);
                }
                if (i > 0) {
                    EXPECT_LE(size, chunks[i - 1].last - chunks[i - 1].first);
                }
            }
            // Few enough that starting them stays cheap, many enough to balance the jobs.
            EXPECT_LE(chunks.size(), std::min<std::size_t>(count, jobs * 48));
            if (count >= jobs * 4) {
                EXPECT_GE(chunks.size(), jobs * 2);
            }
        }
    }
}

TEST(AutoRunGuidedChunks, EmptyListIsOneEmptyChunk) {
    const auto chunks = auto_run_guided_chunks(0, 2);
    ASSERT_EQ(chunks.size(), 1u);
    EXPECT_EQ(chunks[0].first, 0u);
    EXPECT_EQ(chunks[0].last, 0u);
}

}  // namespace
}  // namespace veldra
