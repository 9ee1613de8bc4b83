#pragma once
// The developer terminal's commands: one table of name, usage, help and handler, read by `help`,
// by the terminal's completion and by the documentation. A command runs on the simulation and
// answers with lines of text in the game's colour markup; nothing here draws, so tests run
// commands directly and read what they print.

#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace veldra {

struct SimulationState;

using DebugCommandArgs = std::span<const std::string>;
// Nothing: the arguments were wrong, and the caller prints the command's usage.
using DebugCommandHandler = std::optional<std::vector<std::string>> (*)(SimulationState& sim,
                                                                        DebugCommandArgs args);

struct DebugCommand {
    const char* name;
    const char* usage;  // the name with its arguments, e.g. "step [N]"
    const char* help;   // one line
    DebugCommandHandler run;
};

// Every command, in the order `help` lists them.
std::span<const DebugCommand> debug_commands();
const DebugCommand* find_debug_command(std::string_view name);
// The names that start with `prefix`, in table order.
std::vector<std::string> debug_command_names_starting_with(std::string_view prefix);

// Splits at spaces; empty words are dropped.
std::vector<std::string> split_command_line(std::string_view line);
// Runs one line: the command's output, its usage when the arguments were wrong, or a line that
// says the command is unknown and points to `help`. An empty line prints nothing.
std::vector<std::string> run_debug_command(SimulationState& sim, std::string_view line);

inline constexpr const char* DEBUG_ERROR_COLOR = "[#dd5555]";

}  // namespace veldra
