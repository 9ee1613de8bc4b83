#include "startup/frame_times.h"

#include <algorithm>
#include <cmath>
#include <cstdio>

namespace veldra {

namespace {

double ms_between(FrameTimes::Clock::time_point a, FrameTimes::Clock::time_point b) {
    return std::chrono::duration<double, std::milli>(b - a).count();
}

}  // namespace

void FrameTimes::frame_finished() {
    const Clock::time_point now = Clock::now();
    if (frame_ms_.empty())
        first_frame_ms_ = ms_between(program_start_, now);
    frame_ms_.push_back(ms_between(frame_start_, now));
}

std::string FrameTimes::write(const std::string& path) const {
    std::FILE* file = std::fopen(path.c_str(), "wb");
    if (!file)
        return "cannot be opened for writing";
    std::fprintf(file, "frame,milliseconds\n");
    for (std::size_t i = 0; i < frame_ms_.size(); ++i)
        std::fprintf(file, "%zu,%.3f\n", i, frame_ms_[i]);
    const bool failed = std::ferror(file) != 0;
    return std::fclose(file) != 0 || failed ? "could not be written completely" : "";
}

std::string FrameTimes::summary() const {
    char text[160];
    std::snprintf(text, sizeof text,
                  "%zu frames: median %.2f ms, 99th percentile %.2f ms, first frame after %.0f ms",
                  frame_ms_.size(), percentile(frame_ms_, 0.5), percentile(frame_ms_, 0.99),
                  first_frame_ms_);
    return text;
}

double percentile(std::vector<double> values, double fraction) {
    if (values.empty())
        return 0;
    std::sort(values.begin(), values.end());
    const double rank = std::ceil(std::clamp(fraction, 0.0, 1.0) * values.size());
    const std::size_t index = rank < 1 ? 0 : static_cast<std::size_t>(rank) - 1;
    return values[std::min(index, values.size() - 1)];
}

}  // namespace veldra
