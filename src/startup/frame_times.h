#pragma once
// How long each frame took to make (input, simulation, drawing, presenting; not the wait for the
// next frame), and how long the program took to show its first picture. frame_times=FILE writes
// them for bench/frame_time.sh; nothing is measured otherwise.

#include <chrono>
#include <string>
#include <vector>

namespace veldra {

class FrameTimes {
public:
    using Clock = std::chrono::steady_clock;

    explicit FrameTimes(Clock::time_point program_start) : program_start_(program_start) {}

    void frame_started() { frame_start_ = Clock::now(); }
    // `drawn`: the frame showed something; the first such frame ends the start-up.
    void frame_finished(bool drawn);

    // One line per frame ("frame,milliseconds,drawn") after a header; "" on success, else the
    // reason. drawn is 1 from the first frame that showed something on.
    std::string write(const std::string& path) const;
    // "N frames: median X ms, 99th percentile Y ms, first frame after Z ms", over the frames
    // after the first drawn one (which paints the level's pictures and is start-up).
    std::string summary() const;

    const std::vector<double>& frame_ms() const { return frame_ms_; }
    double first_frame_ms() const { return first_frame_ms_; }

private:
    Clock::time_point program_start_;
    Clock::time_point frame_start_;
    std::vector<double> frame_ms_;
    std::size_t first_drawn_index_ = 0;
    double first_frame_ms_ = 0;
    bool first_frame_drawn_ = false;
};

// The value below which `fraction` (0..1) of the sorted values lie, by nearest rank; 0 for none.
double percentile(std::vector<double> values, double fraction);

}  // namespace veldra
