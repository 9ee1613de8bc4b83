// The commands about the configuration: reloading its files and trying its formulas.

#include <type_traits>

#include "config/config_method.h"
#include "config/game_configurations.h"
#include "creatures/human.h"
#include "devtools/debug_command_handlers.h"
#include "runtime/number_format.h"
#include "runtime/runtime.h"
#include "trials/simulation_state.h"

namespace veldra {

namespace {

template <class T>
const ConfigMethod* as_method(const T& field) {
    if constexpr (std::is_same_v<T, ConfigMethod>)
        return &field;
    else
        return nullptr;
}

// The formula of a key by name; nullptr for a key that is not one.
const ConfigMethod* config_method_named(const GameConfigurations& configs, std::string_view key) {
#define VELDRA_FIND_CONFIG_METHOD(name, type, rule, meaning) \
    if (key == #name)                                        \
        return as_method(configs.name);
    VELDRA_GAME_CONFIGURATION_KEYS(VELDRA_FIND_CONFIG_METHOD)
#undef VELDRA_FIND_CONFIG_METHOD
    return nullptr;
}

}  // namespace

DebugCommandOutput command_reload(SimulationState& sim, DebugCommandArgs args) {
    if (!args.empty())
        return std::nullopt;
    ConfigsState& state = sim.configs;
    // The custom file in force, already resolved; a failing one was never in force.
    const std::string custom = state.loaded_paths.size() > 1 ? state.loaded_paths[1] : "";
    std::optional<GameConfigurations> old;
    old.swap(state.configs);
    std::vector<std::string> old_paths = state.loaded_paths;
    const bool old_failed = state.custom_failed;
    const bool loaded = reload_game_configurations(state, sim.files, custom);
    if (!loaded || (!custom.empty() && state.custom_failed)) {
        state.configs.swap(old);
        state.loaded_paths = std::move(old_paths);
        state.custom_failed = old_failed;
        return error_output("Reloading failed (see the log above); the old configuration stays.");
    }
    // Weights follow the energy as it changes; the new formulas must not wait for that.
    sim.runtime.for_each<obj_human>([](obj_human& human) { human.re_evaluate_from_configs(); });
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
    const ConfigMethod* method = config_method_named(sim.configs.get(), args[0]);
    if (!method || !method->is_set())
        return error_output("\"" + args[0] + "\" is not a formula of the configuration.");
    const PersonalityTraits traits{numbers[0], numbers[1], numbers[2], numbers[3], numbers[4]};
    const double value = (*method)(traits, numbers[5]);
    return std::vector<std::string>{args[0] + " = " + number_to_string(value),
                                    "  " + std::string(method->source())};
}

}  // namespace veldra
