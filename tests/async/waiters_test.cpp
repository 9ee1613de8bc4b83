#include "async/waiters.h"

#include <gtest/gtest.h>

#include <optional>

#include <vector>

#include "async/room_goer.h"
#include "runtime/gc.h"
#include "runtime/runtime.h"
#include "runtime/services.h"

namespace veldra {
namespace {

// Counts the room starts in `count`; lives in the room, so a restart makes a fresh one.
class obj_room_probe : public Instance {
    VELDRA_OBJECT(obj_room_probe, Instance)
public:
    explicit obj_room_probe(int& count) : count_(count) {}
    void on_room_start() override { ++count_; }

private:
    int& count_;
};

class WaitersTest : public ::testing::Test {
protected:
    // One frame as the program runs it: events, then the clock moves on.
    void frame() {
        runtime.run_frame();
        services.clock->frame_done();
    }
    GcScope collector;
    Services services;
    Runtime runtime{services};
};

TEST_F(WaitersTest, WaitConditionIsTestedOnlyFromTheNextStep) {
    int tests = 0;
    Promise<void> already_true = wait_condition(runtime, [&] {
        ++tests;
        return true;
    });
    EXPECT_EQ(tests, 0);
    EXPECT_TRUE(already_true.is_pending());
    frame();
    EXPECT_TRUE(already_true.is_fulfilled());

    bool ready = false;
    Promise<void> later = wait_condition(runtime, [&] { return ready; });
    frame();
    frame();
    EXPECT_TRUE(later.is_pending());
    ready = true;
    frame();
    EXPECT_TRUE(later.is_fulfilled());
    EXPECT_EQ(runtime.instance_number<obj_condition_waiter>(), 0u);
}

TEST_F(WaitersTest, WaitOneStepNeedsALaterMillisecond) {
    Promise<void> next = wait_one_step(runtime);
    runtime.run_frame();  // same millisecond as the call
    EXPECT_TRUE(next.is_pending());
    services.clock->frame_done();
    runtime.run_frame();
    EXPECT_TRUE(next.is_fulfilled());
    EXPECT_EQ(runtime.instance_number<obj_step_waiter>(), 0u);
}

class RoomGoerTest : public WaitersTest {
protected:
    RoomGoerTest() {
        auto with_probe = [this](Runtime& r) {
            r.instance_create<obj_room_probe>(0, 0, "Instances", starts);
        };
        menu = runtime.room_add({"menu", with_probe});
        game = runtime.room_add({"game", with_probe});
        runtime.start(menu);
    }
    int room_starts() const { return starts; }
    int starts = 0;
    int menu = -1;
    int game = -1;
};

TEST_F(RoomGoerTest, RestartingTheCurrentRoomResolvesAfterItsRoomStart) {
    ASSERT_EQ(room_starts(), 1);
    int starts_seen = -1;
    Promise<void> restarted =
        room_goto_or_restart(runtime, menu).and_then([&] { starts_seen = room_starts(); });
    runtime.run_frame();  // the restart happens at the end of this frame
    EXPECT_EQ(room_starts(), 2);
    runtime.run_frame();  // still the millisecond of the call
    EXPECT_TRUE(restarted.is_pending());
    services.clock->frame_done();
    runtime.run_frame();
    EXPECT_TRUE(restarted.is_fulfilled());
    EXPECT_EQ(starts_seen, 2);
    EXPECT_EQ(runtime.room(), menu);
    EXPECT_EQ(runtime.instance_number<obj_room_goer>(), 0u);
}

TEST_F(RoomGoerTest, GoingToAnotherRoomResolvesThereAndChainsContinueInIt) {
    int room_in_handler = -1;
    Promise<void> there = room_goto_or_restart(runtime, game)
                              .and_then([&] { return room_goto_or_restart(runtime, menu); })
                              .and_then([&] { room_in_handler = runtime.room(); });
    for (int i = 0; i < 4; ++i)
        frame();
    EXPECT_TRUE(there.is_fulfilled());
    EXPECT_EQ(room_in_handler, menu);
    EXPECT_EQ(room_starts(), 3);
}

TEST_F(RoomGoerTest, AGoerMadeWhileARoomStartsWaitsForTheRoomItAskedFor) {
    // As start-up does: the first room's entity asks for the game room while that room starts.
    std::optional<Promise<void>> there;
    const int boot =
        runtime.room_add({"boot", [&](Runtime& r) { there = room_goto_or_restart(r, game); }});
    runtime.room_goto(boot);
    runtime.run_frame();
    ASSERT_EQ(runtime.room(), boot);
    // Real time passes within a frame in a window; the boot room's start must not count.
    services.clock->frame_done();
    runtime.run_step_events();
    EXPECT_TRUE(there->is_pending());
    runtime.end_frame();
    EXPECT_EQ(runtime.room(), game);
    services.clock->frame_done();
    runtime.run_frame();
    EXPECT_TRUE(there->is_fulfilled());
}

}  // namespace
}  // namespace veldra
