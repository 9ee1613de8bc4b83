#pragma once
// The window's Clock: real milliseconds since the window opened, and 60 frames per second when
// the display's vsync does not hold the frame rate by itself.

#include "platform/frame_pacer.h"
#include "runtime/services.h"

namespace veldra::platform {

class RealtimeClock final : public Clock {
public:
    explicit RealtimeClock(bool pace_frames);
    double current_time() const override;
    LocalDateTime local_now() const override;
    void frame_done() override;

private:
    FramePacer::Clock::time_point start_;
    bool pace_frames_;
    FramePacer pacer_;
};

}  // namespace veldra::platform
