#include "trials/ticker.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "runtime/gc.h"
#include "runtime/runtime.h"
#include "runtime/services.h"

namespace veldra {
namespace {

class obj_ticking : public Instance {
    VELDRA_OBJECT(obj_ticking, Instance)
};

class TickerTest : public ::testing::Test {
protected:
    TickerTest() { ticker.initialize(42); }
    InstanceId make_owner() { return runtime.instance_create<obj_ticking>(0, 0).id(); }
    // A handler that notes its name and the tick number it was given.
    Ticker::Callback noting(std::string name) {
        return [this, name](std::int64_t tick, Rng&) {
            journal.push_back(name + std::to_string(tick));
        };
    }

    GcScope collector;
    Services services;
    Runtime runtime{services};
    Ticker ticker;
    std::vector<std::string> journal;
};

TEST_F(TickerTest, HandlersRunInRegistrationOrderWithTheTickNumber) {
    const InstanceId owner = make_owner();
    ticker.on_tick(owner, noting("a"));
    ticker.on_tick(owner, noting("b"));
    EXPECT_EQ(ticker.spent_ticks, 0);
    ticker.tick(runtime);
    EXPECT_EQ(ticker.spent_ticks, 1);
    ticker.tick(runtime);
    EXPECT_EQ(journal, (std::vector<std::string>{"a0", "b0", "a1", "b1"}));
}

TEST_F(TickerTest, HandlerOfADestroyedOwnerIsDroppedAndTheNextStillRuns) {
    const InstanceId doomed = make_owner();
    const InstanceId kept = make_owner();
    ticker.on_tick(doomed, noting("doomed"));
    ticker.on_tick(doomed, noting("doomed"));
    ticker.on_tick(kept, noting("kept"));
    runtime.instance_destroy(doomed);
    EXPECT_EQ(ticker.handler_count(), 3u);
    ticker.tick(runtime);
    EXPECT_EQ(journal, std::vector<std::string>{"kept0"});
    EXPECT_EQ(ticker.handler_count(), 1u);
}

TEST_F(TickerTest, HandlerRegisteredDuringATickRunsInThatTick) {
    const InstanceId owner = make_owner();
    ticker.on_tick(owner, [&](std::int64_t tick, Rng&) {
        journal.push_back("first" + std::to_string(tick));
        // Enough registrations to grow the storage while this handler runs.
        if (tick == 0)
            for (int i = 0; i < 100; ++i)
                ticker.on_tick(owner, noting("late"));
    });
    ticker.tick(runtime);
    ASSERT_EQ(journal.size(), 101u);
    EXPECT_EQ(journal.front(), "first0");
    EXPECT_EQ(journal.back(), "late0");
}

TEST_F(TickerTest, HandlerMayDestroyOwnersAndFreeTheTicker) {
    const InstanceId owner = make_owner();
    const InstanceId victim = make_owner();
    ticker.on_tick(owner, [&](std::int64_t, Rng&) { runtime.instance_destroy(victim); });
    ticker.on_tick(victim, noting("victim"));
    ticker.on_tick(owner, [&](std::int64_t, Rng&) {
        journal.push_back("freeing");
        ticker.free();
        journal.push_back("still alive");
    });
    ticker.on_tick(owner, noting("after free"));
    ticker.tick(runtime);
    EXPECT_EQ(journal, (std::vector<std::string>{"freeing", "still alive"}));
    EXPECT_EQ(ticker.handler_count(), 0u);
    EXPECT_EQ(ticker.spent_ticks, 1);
}

TEST_F(TickerTest, HandlersShareTheTickersOwnSeededGenerator) {
    const InstanceId owner = make_owner();
    std::vector<double> draws;
    auto draw = [&](std::int64_t, Rng& rng) { draws.push_back(rng.rng_random(1)); };
    ticker.on_tick(owner, draw);
    ticker.on_tick(owner, draw);
    ticker.tick(runtime);
    ticker.tick(runtime);
    Rng expected(42);
    ASSERT_EQ(draws.size(), 4u);
    for (double d : draws)
        EXPECT_EQ(d, expected.rng_random(1));
}

TEST_F(TickerTest, ResetDropsHandlersButKeepsTheCount) {
    ticker.on_tick(make_owner(), noting("a"));
    ticker.tick(runtime);
    ticker.reset();
    ticker.tick(runtime);
    EXPECT_EQ(journal, std::vector<std::string>{"a0"});
    EXPECT_EQ(ticker.spent_ticks, 2);
}

}  // namespace
}  // namespace veldra
