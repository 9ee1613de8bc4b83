#include "platform/realtime_clock.h"

#include <thread>

#include "platform/local_time.h"

namespace veldra::platform {

namespace {

constexpr auto FRAME = std::chrono::duration_cast<FramePacer::Clock::duration>(
    std::chrono::duration<double>(1.0 / 60.0));

}  // namespace

RealtimeClock::RealtimeClock(bool pace_frames)
    : start_(FramePacer::Clock::now()), pace_frames_(pace_frames), pacer_(start_, FRAME) {}

double RealtimeClock::current_time() const {
    return std::chrono::duration<double, std::milli>(FramePacer::Clock::now() - start_).count();
}

LocalDateTime RealtimeClock::local_now() const {
    return local_time_now();
}

void RealtimeClock::frame_done() {
    if (!pace_frames_)
        return;
    const auto now = FramePacer::Clock::now();
    const auto deadline = pacer_.next_deadline(now);
    if (deadline > now)
        std::this_thread::sleep_until(deadline);
}

}  // namespace veldra::platform
