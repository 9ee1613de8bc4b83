#include "devtools/terminal_log.h"

namespace veldra {

void TerminalLog::add(LogLevel level, std::string_view text) {
    std::size_t at = 0;
    while (true) {
        const std::size_t end = text.find('\n', at);
        if (lines_.size() == capacity_)
            lines_.pop_front();
        lines_.push_back({level, std::string(text.substr(at, end - at))});
        ++added_;
        if (end == std::string_view::npos)
            break;
        at = end + 1;
    }
}

std::size_t TerminalLog::shown_count() const {
    std::size_t count = 0;
    for (const TerminalLine& line : lines_)
        count += shows(line.level) ? 1 : 0;
    return count;
}

}  // namespace veldra
