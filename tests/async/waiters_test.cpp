#include "async/waiters.h"

#include <gtest/gtest.h>

#include <vector>

#include "async/room_goer.h"
#include "runtime/context.h"
#include "runtime/runtime.h"
#include "runtime/services.h"

namespace veldra {
namespace {

struct RoomStarts {
    int count = 0;
};

// Counts the room starts; lives in the room, so a restart makes a fresh one.
class obj_room_probe : public Instance {
    VELDRA_OBJECT(obj_room_probe, Instance)
public:
    void on_room_start() override { ++ctx().slot<RoomStarts>().count; }
};

class WaitersTest : public ::testing::Test {
protected:
    // One frame as the program runs it: events, then the clock moves on.
    void frame() {
        rt().run_frame();
        services().clock->frame_done();
    }
    Context context;
    ContextScope scope{context};
};

TEST_F(WaitersTest, WaitConditionIsTestedOnlyFromTheNextStep) {
    int tests = 0;
    Promise already_true = wait_condition([&] {
        ++tests;
        return true;
    });
    EXPECT_EQ(tests, 0);
    EXPECT_TRUE(already_true.is_pending());
    frame();
    EXPECT_TRUE(already_true.is_fulfilled());

    bool ready = false;
    Promise later = wait_condition([&] { return ready; });
    frame();
    frame();
    EXPECT_TRUE(later.is_pending());
    ready = true;
    frame();
    EXPECT_TRUE(later.is_fulfilled());
    EXPECT_EQ(rt().instance_number<obj_condition_waiter>(), 0u);
}

TEST_F(WaitersTest, WaitOneStepNeedsALaterMillisecond) {
    Promise next = wait_one_step();
    rt().run_frame();  // same millisecond as the call
    EXPECT_TRUE(next.is_pending());
    services().clock->frame_done();
    rt().run_frame();
    EXPECT_TRUE(next.is_fulfilled());
    EXPECT_EQ(rt().instance_number<obj_step_waiter>(), 0u);
}

class RoomGoerTest : public WaitersTest {
protected:
    RoomGoerTest() {
        auto with_probe = [](Runtime& r) { r.instance_create<obj_room_probe>(0, 0); };
        menu = rt().room_add({"menu", with_probe});
        game = rt().room_add({"game", with_probe});
        rt().start(menu);
    }
    int room_starts() { return ctx().slot<RoomStarts>().count; }
    int menu = -1;
    int game = -1;
};

TEST_F(RoomGoerTest, RestartingTheCurrentRoomResolvesAfterItsRoomStart) {
    ASSERT_EQ(room_starts(), 1);
    int starts_seen = -1;
    Promise restarted = room_goto_or_restart(menu).and_then([&] { starts_seen = room_starts(); });
    rt().run_frame();  // the restart happens at the end of this frame
    EXPECT_EQ(room_starts(), 2);
    rt().run_frame();  // still the millisecond of the call
    EXPECT_TRUE(restarted.is_pending());
    services().clock->frame_done();
    rt().run_frame();
    EXPECT_TRUE(restarted.is_fulfilled());
    EXPECT_EQ(starts_seen, 2);
    EXPECT_EQ(rt().room(), menu);
    EXPECT_EQ(rt().instance_number<obj_room_goer>(), 0u);
}

TEST_F(RoomGoerTest, GoingToAnotherRoomResolvesThereAndChainsContinueInIt) {
    int room_in_handler = -1;
    Promise there = room_goto_or_restart(game)
                        .and_then([&] { return room_goto_or_restart(menu); })
                        .and_then([&] { room_in_handler = rt().room(); });
    for (int i = 0; i < 4; ++i)
        frame();
    EXPECT_TRUE(there.is_fulfilled());
    EXPECT_EQ(room_in_handler, menu);
    EXPECT_EQ(room_starts(), 3);
}

}  // namespace
}  // namespace veldra
