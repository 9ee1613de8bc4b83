#include "devtools/config_watcher.h"

#include "devtools/configuration_apply.h"
#include "devtools/debug_tools.h"
#include "runtime/log.h"
#include "runtime/runtime.h"
#include "trials/simulation_state.h"

namespace veldra {

void obj_config_watcher::on_step() {
    if (--countdown_ > 0)
        return;
    countdown_ = CONFIG_WATCH_INTERVAL_STEPS;
    check();
}

bool obj_config_watcher::check() {
    obj_debug_tools* tools = find_debug_tools(runtime());
    if (!tools || !tools->context.sim.configs.loaded())
        return false;
    ConfigsState& configs = tools->context.sim.configs;
    const std::vector<std::string> changed = watch_.changed(configs.loaded_paths);
    if (changed.empty())
        return false;
    for (const std::string& path : changed)
        log("Configuration file \"" + path + "\" changed on disk; reloading.");
    const ConfigurationLoad load = apply_configuration_safely(
        configs, tools->context.files, custom_configuration_in_effect(configs));
    if (load.applied) {
        re_evaluate_humans(runtime());
        log("Reloaded the configuration after the change on disk.");
    }
    return true;
}

}  // namespace veldra
