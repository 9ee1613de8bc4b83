#include "startup/single_trial_mode.h"

#include <cstdio>

#include "async/room_goer.h"
#include "config/game_configurations.h"
#include "runtime/log.h"
#include "runtime/number_format.h"
#include "runtime/paths.h"
#include "runtime/runtime.h"
#include "serial/json.h"
#include "startup/app_state.h"
#include "startup/run_program.h"
#include "startup/trial_parameters.h"
#include "trials/trial.h"
#include "trials/trial_data.h"
#include "world/level_file.h"

namespace veldra {

void start_single_trial_mode(AppState& app, const ProgramParameters& params) {
    const auto trial_params = read_trial_parameters(app, params);
    if (!trial_params)
        return;
    const double seed = trial_params->seed;
    const PersonalityTraits traits = trial_params->traits;
    auto level = level_load_for_trial(*app.services.files, app.sim.cell_types,
                                      resolve_user_path(*params.trial_level));
    if (!level)
        return end_program(app, 1);
    if (!app.sim.configs.loaded())
        return end_program(app, 1);
    SimulationState& sim = app.sim;
    room_goto_or_restart(app.runtime, app.runtime.room_find("rm_game"))
        .and_then([&app, &sim, level = std::move(*level), seed, traits]() {
            auto& trial = sim.runtime.instance_create<obj_trial>(0, 0, "Instances", sim);
            sim.trial.trial = trial.id();
            trial.initialize(level, seed, true, sim.configs->game_speed, 0);
            const TrialResult result = std::get<TrialResult>(trial.start(traits));
            std::printf("%s\n", json_stringify(trial_result_to_value(result), false).c_str());
            sim.world.log_zero_total_weight_summary();
            end_program(app, 0);
        })
        .and_catch([&app](const Value& reason) {
            // Running out of memory on a huge level, for one: a shell run ends with the reason
            // instead of waiting for frames that will never bring a result.
            log_error("The trial failed: " + to_string(reason));
            end_program(app, 1);
        });
}

}  // namespace veldra
