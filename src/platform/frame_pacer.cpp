#include "platform/frame_pacer.h"

namespace veldra::platform {

FramePacer::Clock::time_point FramePacer::next_deadline(Clock::time_point now) {
    deadline_ += period_;
    if (now <= deadline_)
        return deadline_;
    // Late: a little (a slow frame) stays on the grid so the next frames catch up; a lot (a
    // dragged window, a debugger) restarts the grid.
    if (now - deadline_ > period_ * MAX_FRAMES_BEHIND)
        deadline_ = now;
    return now;
}

}  // namespace veldra::platform
