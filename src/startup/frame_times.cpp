#include "startup/frame_times.h"

#include <algorithm>
#include <cmath>
#include <cstdio>

#include "runtime/file_io.h"

namespace veldra {

namespace {

double ms_between(FrameTimes::Clock::time_point a, FrameTimes::Clock::time_point b) {
    return std::chrono::duration<double, std::milli>(b - a).count();
}

}  // namespace

void FrameTimes::frame_finished(bool drawn) {
    const Clock::time_point now = Clock::now();
    if (drawn && !first_frame_drawn_) {
        first_frame_drawn_ = true;
        first_frame_ms_ = ms_between(program_start_, now);
        first_drawn_index_ = frame_ms_.size();
    }
    frame_ms_.push_back(ms_between(frame_start_, now));
}

std::string FrameTimes::write(const std::string& path) const {
    std::string why;
    std::FILE* file = open_file(path, "wb", why);
    if (!file)
        return "cannot be opened for writing: " + why;
    std::fprintf(file, "frame,milliseconds,drawn\n");
    for (std::size_t i = 0; i < frame_ms_.size(); ++i)
        std::fprintf(file, "%zu,%.3f,%d\n", i, frame_ms_[i],
                     first_frame_drawn_ && i >= first_drawn_index_ ? 1 : 0);
    const bool failed = std::ferror(file) != 0;
    return std::fclose(file) != 0 || failed ? "could not be written completely" : "";
}

std::string FrameTimes::summary() const {
    const std::vector<double> steady(
        frame_ms_.begin() +
            static_cast<std::ptrdiff_t>(std::min(frame_ms_.size(), first_drawn_index_ + 1)),
        frame_ms_.end());
    char text[160];
    std::snprintf(text, sizeof text,
                  "%zu frames: median %.2f ms, 99th percentile %.2f ms, first frame after %.0f ms",
                  steady.size(), percentile(steady, 0.5), percentile(steady, 0.99),
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
