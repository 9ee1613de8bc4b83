#include "trials/tick_waiter.h"

#include <gtest/gtest.h>

#include "runtime/gc.h"
#include "runtime/runtime.h"
#include "runtime/services.h"
#include "trials/ticker.h"

namespace veldra {
namespace {

class obj_stand_in : public Instance {
    VELDRA_OBJECT(obj_stand_in, Instance)
};

class TickWaiterTest : public ::testing::Test {
protected:
    TickWaiterTest() { ticker.initialize(1); }
    void frame() {
        runtime.run_frame();
        services.clock->frame_done();
    }
    InstanceId make_stand_in() { return runtime.instance_create<obj_stand_in>(0, 0).id(); }

    GcScope collector;
    Services services;
    Runtime runtime{services};
    Ticker ticker;
    InstanceId trial = make_stand_in();
    InstanceId creature = make_stand_in();
};

TEST_F(TickWaiterTest, WaitTicksFulfilsAfterThatManyTicksAndAtLeastOne) {
    for (std::int64_t n : {1, 0, -3}) {
        Promise<void> waited = wait_ticks(runtime, ticker, trial, creature, n);
        EXPECT_TRUE(waited.is_pending());
        ticker.tick(runtime);
        EXPECT_TRUE(waited.is_fulfilled()) << "num_ticks " << n;
    }
    Promise<void> three = wait_ticks(runtime, ticker, trial, creature, 3);
    ticker.tick(runtime);
    ticker.tick(runtime);
    EXPECT_TRUE(three.is_pending());
    ticker.tick(runtime);
    EXPECT_TRUE(three.is_fulfilled());
    EXPECT_EQ(runtime.instance_number<obj_tick_waiter>(), 0u);
}

TEST_F(TickWaiterTest, WaitTicksStaysPendingWhenItsTrialOrInstanceGoes) {
    Promise<void> orphaned = wait_ticks(runtime, ticker, trial, creature, 2);
    runtime.instance_destroy(trial);
    frame();
    EXPECT_EQ(runtime.instance_number<obj_tick_waiter>(), 0u);
    ticker.tick(runtime);
    ticker.tick(runtime);
    EXPECT_TRUE(orphaned.is_pending());

    const InstanceId other_trial = make_stand_in();
    Promise<void> ownerless = wait_ticks(runtime, ticker, other_trial, creature, 1);
    runtime.instance_destroy(creature);
    ticker.tick(runtime);
    EXPECT_TRUE(ownerless.is_pending());
}

}  // namespace
}  // namespace veldra
