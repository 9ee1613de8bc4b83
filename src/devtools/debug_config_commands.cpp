// The commands about the configuration: reloading its files and trying its formulas.

#include "config/config_method.h"
#include "config/game_configurations.h"
#include "devtools/configuration_apply.h"
#include "devtools/debug_command_handlers.h"
#include "devtools/formula_workbench.h"
#include "runtime/number_format.h"
#include "runtime/runtime.h"
#include "trials/simulation_state.h"

namespace veldra {

DebugCommandOutput command_reload(SimulationState& sim, DebugCommandArgs args) {
    if (!args.empty())
        return std::nullopt;
    ConfigsState& state = sim.configs;
    const ConfigurationLoad load =
        apply_configuration_safely(state, sim.files, custom_configuration_in_effect(state));
    if (!load.applied)
        return error_output("Reloading failed (see the log above); the old configuration stays.");
    re_evaluate_humans(sim.runtime);
    std::vector<std::string> lines{"Reloaded the configuration:"};
    for (const std::string& path : state.loaded_paths)
        lines.push_back("  " + path);
    return lines;
}

DebugCommandOutput command_eval(SimulationState& sim, DebugCommandArgs args) {
    if (args.size() != 6 && args.size() != 7)
        return std::nullopt;
    double numbers[6] = {0, 0, 0, 0, 0, UNDEFINED_NUMBER};
    for (std::size_t i = 1; i < args.size(); ++i) {
        const std::optional<double> number = parse_number_argument(args[i]);
        if (!number)
            return std::nullopt;
        numbers[i - 1] = *number;
    }
    if (!sim.configs.loaded())
        return error_output("No configuration is loaded.");
    const ConfigMethod* method = find_configuration_method(sim.configs.get(), args[0]);
    if (!method || !method->is_set())
        return error_output("\"" + args[0] + "\" is not a formula of the configuration.");
    const PersonalityTraits traits{numbers[0], numbers[1], numbers[2], numbers[3], numbers[4]};
    const double value = (*method)(traits, numbers[5]);
    return std::vector<std::string>{args[0] + " = " + number_to_string(value),
                                    "  " + std::string(method->source())};
}

}  // namespace veldra
