#pragma once
// The handlers of the terminal's commands (debug_commands.h), by theme: time control, the
// world's creatures, the configuration. Each returns its output, or nothing for wrong arguments.

#include <optional>
#include <string>
#include <vector>

#include "devtools/debug_commands.h"

namespace veldra {

using DebugCommandOutput = std::optional<std::vector<std::string>>;

DebugCommandOutput command_help(SimulationState& sim, DebugCommandArgs args);

DebugCommandOutput command_speed(SimulationState& sim, DebugCommandArgs args);
DebugCommandOutput command_pause(SimulationState& sim, DebugCommandArgs args);
DebugCommandOutput command_resume(SimulationState& sim, DebugCommandArgs args);
DebugCommandOutput command_step(SimulationState& sim, DebugCommandArgs args);
DebugCommandOutput command_step_decision(SimulationState& sim, DebugCommandArgs args);
DebugCommandOutput command_fast_forward(SimulationState& sim, DebugCommandArgs args);

DebugCommandOutput command_spawn(SimulationState& sim, DebugCommandArgs args);
DebugCommandOutput command_kill(SimulationState& sim, DebugCommandArgs args);
DebugCommandOutput command_teleport(SimulationState& sim, DebugCommandArgs args);
DebugCommandOutput command_print(SimulationState& sim, DebugCommandArgs args);
DebugCommandOutput command_inspect(SimulationState& sim, DebugCommandArgs args);

DebugCommandOutput command_reload(SimulationState& sim, DebugCommandArgs args);
DebugCommandOutput command_eval(SimulationState& sim, DebugCommandArgs args);

DebugCommandOutput command_switch(SimulationState& sim, DebugCommandArgs args);

// Argument parsing shared by the handlers: the whole word must be the number.
std::optional<double> parse_number_argument(const std::string& word);
std::optional<long long> parse_integer_argument(const std::string& word);
// An entity id as EID prints it: "Human 105" (two words) or "105".
std::optional<long long> parse_id_arguments(DebugCommandArgs args);

// One line in the error colour.
std::vector<std::string> error_output(const std::string& message);

}  // namespace veldra
