#include "devtools/configuration_apply.h"

#include "creatures/human.h"
#include "runtime/log.h"
#include "runtime/runtime.h"

namespace veldra {

ConfigurationLoad apply_configuration_safely(ConfigsState& live, Files& files,
                                             const std::string& custom_name) {
    ConfigurationLoad load;
    {
        ConfigsState scratch;
        initialize_configs(scratch);
        LogCapture trial_load;  // its "Loaded ..." lines would say what did not happen
        const bool base_loaded = reload_game_configurations(scratch, files, custom_name);
        if (!base_loaded || scratch.custom_failed) {
            for (const LogCapture::Line& line : trial_load.lines)
                if (line.level != LogLevel::info)
                    load.problems.push_back(remove_text_tags(line.message));
            if (load.problems.empty())
                load.problems.push_back("The configuration did not load.");
        }
    }
    if (!load.problems.empty()) {
        for (const std::string& problem : load.problems)
            log_error(problem);
        log_warning("The configuration in effect was kept.");
        return load;
    }
    load.applied = reload_game_configurations(live, files, custom_name);
    return load;
}

void re_evaluate_humans(Runtime& runtime) {
    runtime.for_each<obj_human>([](obj_human& human) { human.re_evaluate_from_configs(); });
}

std::string custom_configuration_in_effect(const ConfigsState& state) {
    return state.loaded_paths.size() > 1 ? state.loaded_paths[1] : std::string();
}

}  // namespace veldra
