#include "startup/run_mode.h"

#include "config/game_configurations.h"
#include "config/program_parameters.h"
#include "runtime/log.h"
#include "runtime/paths.h"
#include "runtime/runtime.h"
#include "runtime/services.h"
#include "startup/app_state.h"
#include "startup/auto_run_mode.h"
#include "startup/dev_menu.h"
#include "startup/interrupt.h"
#include "startup/parameter_values.h"
#include "startup/play_mode.h"
#include "startup/program.h"
#include "startup/session_mode.h"
#include "startup/single_trial_mode.h"
#include "world/level_set_generator.h"

namespace veldra {

namespace {

// Shell modes end the program with an exit status: 0 done, 1 failed, 2 bad parameters.
void run_level_set_generator(AppState& app, const ProgramParameters& params) {
    if (!params.output_dir || params.output_dir->empty()) {
        log_error("generate_levels needs output_dir=DIR: the directory to write the levels into.");
        end_program(app, 2);
        return;
    }
    std::optional<double> seed;
    if (params.seed) {
        seed = parse_seed_value(*params.seed);
        if (!seed)
            return bad_parameter(app, "seed", *params.seed, SEED_PROBLEM);
    }
    const bool ok =
        generate_level_set(*app.services.files, app.sim.cell_types,
                           resolve_user_path(*params.generate_levels), *params.output_dir, seed);
    end_program(app, ok ? 0 : 1);
}

}  // namespace

void choose_run_mode(AppState& app) {
    const ProgramParameters& params = app.params;
    // A batch the user asked to run with a custom configuration must not quietly run without it.
    const bool shell_mode = params.generate_levels || params.auto_run_merge ||
                            params.auto_run_config || params.trial_level || params.play_level ||
                            params.replay;
    if (shell_mode && app.sim.configs.custom_failed) {
        log_error("Stopped: the custom configuration config=" + params.config.value_or("") +
                  " could not be loaded (see above), and this run would not use it.");
        return end_program(app, 1);
    }
    // Each of these is one call that runs to its end within a frame: Ctrl-C ends them at once,
    // as it ends any command-line tool.
    if (params.generate_levels || params.auto_run_merge)
        restore_default_interrupt_handling();
    if (params.generate_levels)
        return run_level_set_generator(app, params);
    if (params.auto_run_merge)
        return start_auto_run_merge_mode(app, params);
    // Everything below plays trials: without a configuration there is nothing to play with.
    const bool plays = params.user_id || params.auto_run_config || params.trial_level ||
                       params.play_level || params.replay;
    if (plays && !app.sim.configs.loaded()) {
        log_error("Cannot run without a configuration: see the errors above.");
        return end_program(app, 1);
    }
    if (params.user_id) {
        log_error("Sessions against the research server are not available in this build.");
        return end_program(app, 2);
    }
    if (params.auto_run_config)
        return start_auto_run_mode(app, params);
    if (params.trial_level)
        return start_single_trial_mode(app, params);
    if (params.replay)
        return start_replay_mode(app, params);
    if (params.play_level)
        return start_play_mode(app, params);
    if (params.demo) {
        const auto demo = parse_switch_value(*params.demo);
        if (!demo)
            return bad_parameter(app, "demo", *params.demo, "must be 0 or 1.");
        if (*demo && !app.sim.configs.loaded()) {
            log_error("Cannot run without a configuration: see the errors above.");
            return end_program(app, 1);
        }
        if (*demo)
            return start_demo_mode(app);
    }
    // The developer menu needs a window; a headless start with nothing to run has nothing to
    // wait for, unless the caller asked for a number of frames.
    if (app.services.headless) {
        if (!params.frames) {
            log("Nothing to run: give a run mode on the command line (see --help).");
            app.runtime.game_end();
        }
        return;
    }
    open_dev_menu(app);
}

}  // namespace veldra
