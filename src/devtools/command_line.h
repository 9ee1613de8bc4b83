#pragma once
// The developer terminal's command line without its drawing: the commands entered before, walked
// with Up and Down, and Tab completion of a command name.

#include <optional>
#include <string>
#include <vector>

namespace veldra {

class CommandHistory {
public:
    // Remembers an entered line; a blank one or a repeat of the last is not kept twice.
    void add(const std::string& line);
    // Up: the line before the one shown (the newest first); nothing at the oldest.
    std::optional<std::string> older();
    // Down: the line after the one shown; "" past the newest; nothing when not walking.
    std::optional<std::string> newer();

    const std::vector<std::string>& lines() const { return lines_; }

private:
    std::vector<std::string> lines_;
    std::size_t position_ = 0;  // lines_.size(): not walking
};

struct Completion {
    std::string line;                     // the line, completed as far as the candidates agree
    std::vector<std::string> candidates;  // every name that fits; several: the terminal says them
};

// Completes the command name `line` starts with, out of `names`. Only the first word is
// completed; a unique name gets a space after it.
Completion complete_command_name(const std::string& line, const std::vector<std::string>& names);

}  // namespace veldra
