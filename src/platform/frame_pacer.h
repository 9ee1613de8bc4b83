#pragma once
// Holds the window at 60 frames per second when vsync does not: each frame ends on the next
// deadline of a fixed grid, so short frames do not make the game run fast and sleep jitter does
// not accumulate into drift.

#include <chrono>

namespace veldra::platform {

class FramePacer {
public:
    using Clock = std::chrono::steady_clock;

    // After a stall longer than this the grid starts again from now instead of rushing through
    // the missed frames.
    static constexpr int MAX_FRAMES_BEHIND = 3;

    FramePacer(Clock::time_point start, Clock::duration period) : deadline_(start), period_(period) {}

    // The moment the frame that ends at `now` should be handed on at: `now` itself when it is late.
    Clock::time_point next_deadline(Clock::time_point now);

private:
    Clock::time_point deadline_;
    Clock::duration period_;
};

}  // namespace veldra::platform
