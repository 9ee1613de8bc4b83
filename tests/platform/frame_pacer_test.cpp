#include "platform/frame_pacer.h"

#include <gtest/gtest.h>

namespace veldra::platform {
namespace {

using namespace std::chrono_literals;
using TimePoint = FramePacer::Clock::time_point;

TEST(FramePacer, ShortFramesWaitForTheGridWithoutDrift) {
    const TimePoint start{};
    FramePacer pacer(start, 16ms);
    // Frames of very different lengths all end on multiples of the period.
    EXPECT_EQ(pacer.next_deadline(start + 1ms), start + 16ms);
    EXPECT_EQ(pacer.next_deadline(start + 16ms + 15ms), start + 32ms);
    EXPECT_EQ(pacer.next_deadline(start + 32ms), start + 48ms);
    for (int frame = 4; frame < 1000; ++frame)
        pacer.next_deadline(start + (frame - 1) * 16ms + 3ms);
    EXPECT_EQ(pacer.next_deadline(start + 999 * 16ms + 1ms), start + 1000 * 16ms);
}

TEST(FramePacer, ASlowFrameIsCaughtUpOnTheGrid) {
    const TimePoint start{};
    FramePacer pacer(start, 16ms);
    EXPECT_EQ(pacer.next_deadline(start + 20ms), start + 20ms);  // late: no wait
    // The next frames return to the original grid instead of shifting it by 4 ms.
    EXPECT_EQ(pacer.next_deadline(start + 22ms), start + 32ms);
    EXPECT_EQ(pacer.next_deadline(start + 33ms), start + 48ms);
}

TEST(FramePacer, ALongStallRestartsTheGridInsteadOfRacing) {
    const TimePoint start{};
    FramePacer pacer(start, 16ms);
    const TimePoint after_stall = start + 2s;
    EXPECT_EQ(pacer.next_deadline(after_stall), after_stall);
    // Without the restart the next 120 frames would run without waiting.
    EXPECT_EQ(pacer.next_deadline(after_stall + 1ms), after_stall + 16ms);
}

}  // namespace
}  // namespace veldra::platform
