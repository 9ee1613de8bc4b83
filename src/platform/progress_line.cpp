#include "platform/progress_line.h"

#include <cstdio>

#include "platform/terminal.h"

namespace veldra {

namespace {
std::string format_duration(double seconds) {
    const long total = static_cast<long>(seconds + 0.5);
    char text[32];
    std::snprintf(text, sizeof text, "%ld:%02ld:%02ld", total / 3600, total / 60 % 60, total % 60);
    return text;
}
}  // namespace

ProgressLine::ProgressLine(std::string label)
    : label_(std::move(label)),
      start_(std::chrono::steady_clock::now()),
      last_print_(start_),
      terminal_(platform::stderr_is_terminal()) {}

double ProgressLine::elapsed_seconds() const {
    return std::chrono::duration<double>(std::chrono::steady_clock::now() - start_).count();
}

void ProgressLine::update(std::size_t done, std::size_t total) {
    const auto now = std::chrono::steady_clock::now();
    const auto interval =
        terminal_ ? std::chrono::milliseconds(200) : std::chrono::milliseconds(5000);
    if (done < total && now - last_print_ < interval)
        return;
    last_print_ = now;
    const double elapsed = elapsed_seconds();
    const double rate = elapsed > 0 ? static_cast<double>(done) / elapsed : 0;
    const double left = rate > 0 ? static_cast<double>(total - done) / rate : 0;
    std::fprintf(stderr, "%s%s %zu/%zu runs, %.1f trials/s, %s left%s", terminal_ ? "\r" : "",
                 label_.c_str(), done, total, rate, format_duration(left).c_str(),
                 terminal_ ? "\033[K" : "\n");
    std::fflush(stderr);
    printed_in_place_ = terminal_;
}

double ProgressLine::finish() {
    if (printed_in_place_)
        std::fputc('\n', stderr);
    printed_in_place_ = false;
    return elapsed_seconds();
}

}  // namespace veldra
