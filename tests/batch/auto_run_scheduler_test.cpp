#include "batch/auto_run_scheduler.h"

#include <gtest/gtest.h>

namespace veldra {
namespace {

constexpr int INTERRUPTED = 130;

// Chunks of the given sizes, tiling the run list from 0.
std::vector<RunRange> chunks_of(std::initializer_list<std::size_t> sizes) {
    std::vector<RunRange> chunks;
    std::size_t first = 0;
    for (std::size_t size : sizes) {
        chunks.push_back({first, first + size});
        first += size;
    }
    return chunks;
}

// The handouts as "worker:chunk" ("worker:-" for a worker let go), so a wrong order reads well.
std::string handouts(AutoRunScheduler& scheduler) {
    std::string text;
    for (const auto& order : scheduler.handouts()) {
        text += text.empty() ? "" : " ";
        text += std::to_string(order.worker) + ":" +
                (order.chunk ? std::to_string(*order.chunk) : std::string("-"));
    }
    return text;
}

// Joins every chunk that may join; returns them in the order they joined.
std::vector<std::size_t> join_all(AutoRunScheduler& scheduler) {
    std::vector<std::size_t> joined;
    while (const auto ended = scheduler.next_to_join()) {
        joined.push_back(ended->chunk);
        scheduler.joined();
    }
    return joined;
}

TEST(AutoRunScheduler, HandsChunksOutInListOrderToIdleWorkersOnly) {
    AutoRunScheduler scheduler(chunks_of({4, 3, 2}), 2);
    EXPECT_EQ(handouts(scheduler), "0:0 1:1");
    EXPECT_EQ(handouts(scheduler), "") << "both workers are busy";
    scheduler.chunk_done(1);
    EXPECT_EQ(handouts(scheduler), "1:2");
    scheduler.chunk_done(0);
    EXPECT_EQ(handouts(scheduler), "0:-") << "nothing left: the idle worker is let go";
    EXPECT_EQ(handouts(scheduler), "") << "a worker is let go once";
    scheduler.chunk_done(0);  // a stray answer of a worker with no chunk changes nothing
    EXPECT_EQ(scheduler.chunks_in_play(), (std::pair<std::size_t, std::size_t>{0, 3}));
    EXPECT_EQ(join_all(scheduler), (std::vector<std::size_t>{0, 1}));
    EXPECT_FALSE(scheduler.finished());
    EXPECT_FALSE(scheduler.failed());
}

TEST(AutoRunScheduler, JoinsStrictlyInListOrderAndCountsTheRuns) {
    AutoRunScheduler scheduler(chunks_of({4, 3, 2}), 2);
    handouts(scheduler);
    scheduler.chunk_done(1);
    EXPECT_FALSE(scheduler.next_to_join()) << "chunk 1 may not join before chunk 0";
    EXPECT_EQ(handouts(scheduler), "1:2");
    scheduler.chunk_done(1);
    scheduler.chunk_done(0);
    EXPECT_EQ(join_all(scheduler), (std::vector<std::size_t>{0, 1, 2}));
    EXPECT_EQ(scheduler.joined_runs(), 9u);
    EXPECT_TRUE(scheduler.finished());
    EXPECT_FALSE(scheduler.failed());
}

TEST(AutoRunScheduler, AChunkThatStoppedEarlyJoinsLastAndFailsTheRun) {
    for (int exit_status : {0, 3, 137, INTERRUPTED}) {
        SCOPED_TRACE(exit_status);
        AutoRunScheduler scheduler(chunks_of({2, 2, 2}), 3);
        handouts(scheduler);
        scheduler.chunk_done(2);
        scheduler.chunk_done(0);
        EXPECT_TRUE(scheduler.worker_ended(1, exit_status));
        ASSERT_TRUE(scheduler.next_to_join());
        scheduler.joined();  // chunk 0, complete
        const auto ended = scheduler.next_to_join();
        ASSERT_TRUE(ended);
        EXPECT_EQ(ended->chunk, 1u);
        // Exiting without reporting the chunk done is a failure even with status 0.
        EXPECT_EQ(ended->status, exit_status == 0 ? 1 : exit_status);
        scheduler.joined();
        EXPECT_TRUE(scheduler.failed());
        EXPECT_FALSE(scheduler.next_to_join()) << "chunk 2 would follow a gap";
        EXPECT_EQ(scheduler.joined_runs(), 2u);
    }
}

TEST(AutoRunScheduler, WorkersThatEndIdleOrNeverStartLeaveTheRestToTheOthers) {
    AutoRunScheduler scheduler(chunks_of({3, 2, 1}), 3);
    scheduler.worker_lost(2);
    EXPECT_EQ(handouts(scheduler), "0:0 1:1");
    scheduler.chunk_done(0);
    EXPECT_EQ(handouts(scheduler), "0:2");
    scheduler.chunk_done(0);
    EXPECT_EQ(handouts(scheduler), "0:-");
    EXPECT_FALSE(scheduler.worker_ended(0, 3)) << "an idle worker's status decides no chunk";
    EXPECT_FALSE(scheduler.worker_alive(0));
    EXPECT_FALSE(scheduler.failed());
    scheduler.chunk_done(1);
    EXPECT_EQ(join_all(scheduler), (std::vector<std::size_t>{0, 1, 2}));
    EXPECT_TRUE(scheduler.finished());
}

TEST(AutoRunScheduler, FailsWhenNoWorkerIsLeftForTheChunksLeft) {
    AutoRunScheduler none_started(chunks_of({1, 1}), 2);
    none_started.worker_lost(0);
    none_started.worker_lost(1);
    EXPECT_EQ(handouts(none_started), "");
    EXPECT_TRUE(none_started.failed());

    AutoRunScheduler all_gone(chunks_of({1, 1, 1}), 1);
    handouts(all_gone);
    all_gone.chunk_done(0);
    join_all(all_gone);
    EXPECT_FALSE(all_gone.failed());
    EXPECT_FALSE(all_gone.worker_ended(0, 0));  // gone before it was handed chunk 1
    EXPECT_TRUE(all_gone.failed());
}

TEST(AutoRunScheduler, AnInterruptHandsOutNothingMoreAndKeepsTheFinishedPrefix) {
    AutoRunScheduler scheduler(chunks_of({2, 2, 2, 2}), 2);
    handouts(scheduler);
    scheduler.interrupt();
    scheduler.chunk_done(1);
    EXPECT_EQ(handouts(scheduler), "1:-");
    EXPECT_FALSE(scheduler.failed()) << "chunk 0 is still being played";
    scheduler.chunk_done(0);
    EXPECT_EQ(join_all(scheduler), (std::vector<std::size_t>{0, 1}));
    EXPECT_TRUE(scheduler.failed()) << "chunk 2 will never be handed out";
    EXPECT_FALSE(scheduler.finished());

    // Interrupted in the middle of the first chunk: its whole lines still join.
    AutoRunScheduler early(chunks_of({2, 2}), 2);
    handouts(early);
    early.interrupt();
    early.worker_ended(0, INTERRUPTED);
    const auto ended = early.next_to_join();
    ASSERT_TRUE(ended);
    EXPECT_EQ(ended->status, INTERRUPTED);
}

TEST(AutoRunScheduler, AnInterruptAfterTheLastHandoutStillFinishes) {
    AutoRunScheduler scheduler(chunks_of({2, 2}), 2);
    handouts(scheduler);
    scheduler.interrupt();
    scheduler.chunk_done(0);
    scheduler.chunk_done(1);
    EXPECT_EQ(join_all(scheduler).size(), 2u);
    EXPECT_TRUE(scheduler.finished());
    EXPECT_FALSE(scheduler.failed());
}

TEST(AutoRunScheduler, AnOutputThatCannotBeWrittenStopsTheJoins) {
    AutoRunScheduler scheduler(chunks_of({1, 1}), 2);
    handouts(scheduler);
    scheduler.chunk_done(0);
    scheduler.chunk_done(1);
    ASSERT_TRUE(scheduler.next_to_join());
    scheduler.fail();
    EXPECT_TRUE(scheduler.failed());
    EXPECT_FALSE(scheduler.next_to_join());
}

}  // namespace
}  // namespace veldra
