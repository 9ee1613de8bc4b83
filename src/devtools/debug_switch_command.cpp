// The command that flips the debug menu's switches, so that every overlay can be turned on and
// off from the keyboard while the terminal has it.

#include "config/debug_settings.h"
#include "devtools/debug_command_handlers.h"
#include "devtools/debug_menu.h"
#include "devtools/debug_tools.h"
#include "trials/simulation_state.h"

namespace veldra {

namespace {

constexpr const char* WORKBENCH_SWITCH = "workbench";

std::string on_off(bool on) {
    return on ? "on" : "off";
}

std::optional<bool> parse_state(DebugCommandArgs args, bool current) {
    if (args.size() == 1)
        return !current;
    if (args[1] == "on")
        return true;
    if (args[1] == "off")
        return false;
    return std::nullopt;
}

}  // namespace

DebugCommandOutput command_switch(SimulationState& sim, DebugCommandArgs args) {
    obj_debug_tools* tools = find_debug_tools(sim.runtime);
    if (!tools)
        return error_output("The debug tools are not made in this run.");
    if (args.empty()) {
        std::vector<std::string> lines;
        for (const DebugSwitch& s : debug_switches())
            lines.push_back(std::string(s.field) + " " + on_off(tools->context.debugs.*s.member));
        lines.push_back(std::string(WORKBENCH_SWITCH) + " " + on_off(tools->workbench_open));
        return lines;
    }
    if (args.size() > 2)
        return std::nullopt;
    if (args[0] == WORKBENCH_SWITCH) {
        const std::optional<bool> on = parse_state(args, tools->workbench_open);
        if (!on)
            return std::nullopt;
        tools->workbench_open = *on;
        return std::vector<std::string>{std::string(WORKBENCH_SWITCH) + " " + on_off(*on)};
    }
    const DebugSwitch* which = find_debug_switch(args[0]);
    if (!which)
        return error_output("No switch is called \"" + args[0] + "\". Type switch for the list.");
    const std::optional<bool> on = parse_state(args, tools->context.debugs.*which->member);
    if (!on)
        return std::nullopt;
    set_debug_switch(tools->context.debugs, tools->context.files, *which, *on);
    return std::vector<std::string>{std::string(which->field) + " " + on_off(*on)};
}

}  // namespace veldra
