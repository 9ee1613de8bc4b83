#include "devtools/debug_commands.h"

#include <algorithm>
#include <array>

#include "devtools/debug_command_handlers.h"

namespace veldra {

namespace {

constexpr std::array<DebugCommand, 15> COMMANDS{{
    {"help", "help [command]", "lists the commands, or says what one does", command_help},
    {"speed", "speed X", "sets the game speed, 0.25 to 16 ticks a frame", command_speed},
    {"pause", "pause", "stops the trial's clock", command_pause},
    {"resume", "resume", "runs the trial again at the speed it had", command_resume},
    {"step", "step [N]", "pauses and runs N ticks (1 by default)", command_step},
    {"step_decision", "step_decision", "pauses and runs until some human makes a decision",
     command_step_decision},
    {"fast_forward", "fast_forward", "runs the rest of the trial at once", command_fast_forward},
    {"reload", "reload",
     "reloads the configuration files; the old configuration stays if they fail", command_reload},
    {"spawn", "spawn monster|food [X Y]",
     "creates a monster or food in cell X Y (default: the cell under the mouse)", command_spawn},
    {"kill", "kill ID", "destroys a creature or food, e.g. kill Human 105", command_kill},
    {"teleport", "teleport X Y", "moves the player to the free cell X Y", command_teleport},
    {"print", "print ID", "prints a creature's energy, action, cell and traits", command_print},
    {"inspect", "inspect ID [follow]",
     "shows a creature in the inspector (as a right click on it does), optionally followed",
     command_inspect},
    {"eval", "eval KEY O C E A N [ENERGY_RATIO]",
     "evaluates a formula of the configuration with these traits and energy ratio", command_eval},
    {"switch", "switch [NAME [on|off]]",
     "lists the debug switches, or flips one (a field of the settings, or workbench)",
     command_switch},
}};

}  // namespace

std::span<const DebugCommand> debug_commands() {
    return COMMANDS;
}

const DebugCommand* find_debug_command(std::string_view name) {
    for (const DebugCommand& command : COMMANDS)
        if (name == command.name)
            return &command;
    return nullptr;
}

std::vector<std::string> debug_command_names_starting_with(std::string_view prefix) {
    std::vector<std::string> names;
    for (const DebugCommand& command : COMMANDS)
        if (std::string_view(command.name).starts_with(prefix))
            names.emplace_back(command.name);
    return names;
}

std::vector<std::string> split_command_line(std::string_view line) {
    std::vector<std::string> words;
    std::size_t at = 0;
    while (at < line.size()) {
        const std::size_t end = std::min(line.find(' ', at), line.size());
        if (end > at)
            words.emplace_back(line.substr(at, end - at));
        at = end + 1;
    }
    return words;
}

std::vector<std::string> run_debug_command(SimulationState& sim, std::string_view line) {
    const std::vector<std::string> words = split_command_line(line);
    if (words.empty())
        return {};
    const DebugCommand* command = find_debug_command(words[0]);
    if (!command)
        return error_output("Unknown command \"" + words[0] + "\". Type help for the list.");
    if (auto output = command->run(sim, DebugCommandArgs(words).subspan(1)))
        return *output;
    return error_output(std::string("Usage: ") + command->usage);
}

}  // namespace veldra
