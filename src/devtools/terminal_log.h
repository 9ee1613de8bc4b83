#pragma once
// The developer terminal's scrollback: the last lines logged, each with its level, oldest first.
// Only the newest TERMINAL_SCROLLBACK lines are kept. A logged text of several lines becomes
// several entries, so every entry is one row of the terminal. Adding a line costs its copy and
// nothing else, so keeping lines while the terminal is hidden is next to free.

#include <array>
#include <cstddef>
#include <deque>
#include <string>
#include <string_view>

#include "runtime/log.h"

namespace veldra {

inline constexpr std::size_t TERMINAL_SCROLLBACK = 2000;

struct TerminalLine {
    LogLevel level;
    std::string text;  // colour markup kept
};

class TerminalLog {
public:
    explicit TerminalLog(std::size_t capacity = TERMINAL_SCROLLBACK) : capacity_(capacity) {}

    void add(LogLevel level, std::string_view text);
    void clear() { lines_.clear(); }

    const std::deque<TerminalLine>& lines() const { return lines_; }
    // Grows with every line added, also once old ones drop: tells a view that there is more.
    std::size_t added() const { return added_; }

    // The level filter: which levels the terminal shows.
    bool shows(LogLevel level) const { return showing_[static_cast<std::size_t>(level)]; }
    void set_shows(LogLevel level, bool on) { showing_[static_cast<std::size_t>(level)] = on; }
    // How many kept lines the filter lets through.
    std::size_t shown_count() const;

private:
    std::size_t capacity_;
    std::deque<TerminalLine> lines_;
    std::size_t added_ = 0;
    std::array<bool, 3> showing_{true, true, true};
};

}  // namespace veldra
