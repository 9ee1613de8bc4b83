#include "devtools/command_line.h"

#include <algorithm>
#include <string_view>

namespace veldra {

void CommandHistory::add(const std::string& line) {
    if (line.find_first_not_of(' ') != std::string::npos &&
        (lines_.empty() || lines_.back() != line))
        lines_.push_back(line);
    position_ = lines_.size();
}

std::optional<std::string> CommandHistory::older() {
    if (position_ == 0)
        return std::nullopt;
    return lines_[--position_];
}

std::optional<std::string> CommandHistory::newer() {
    if (position_ >= lines_.size())
        return std::nullopt;
    ++position_;
    return position_ == lines_.size() ? std::string() : lines_[position_];
}

Completion complete_command_name(const std::string& line, const std::vector<std::string>& names) {
    Completion result{line, {}};
    const std::size_t start = line.find_first_not_of(' ');
    if (start == std::string::npos || line.find(' ', start) != std::string::npos)
        return result;  // nothing typed, or past the name
    const std::string_view typed = std::string_view(line).substr(start);
    for (const std::string& name : names)
        if (name.starts_with(typed))
            result.candidates.push_back(name);
    if (result.candidates.empty())
        return result;
    // The longest start the candidates share.
    std::string common = result.candidates.front();
    for (const std::string& name : result.candidates) {
        const auto [a, b] = std::mismatch(common.begin(), common.end(), name.begin(), name.end());
        common.erase(a, common.end());
    }
    result.line = line.substr(0, start) + common + (result.candidates.size() == 1 ? " " : "");
    return result;
}

}  // namespace veldra
