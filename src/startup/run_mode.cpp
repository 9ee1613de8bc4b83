#include "startup/run_mode.h"

#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "config/game_configurations.h"
#include "config/program_parameters.h"
#include "platform/interrupt.h"
#include "runtime/log.h"
#include "runtime/paths.h"
#include "runtime/runtime.h"
#include "runtime/services.h"
#include "startup/app_state.h"
#include "startup/auto_run_mode.h"
#include "startup/dev_menu.h"
#include "startup/outbox_mode.h"
#include "startup/parameter_values.h"
#include "startup/play_mode.h"
#include "startup/run_program.h"
#include "startup/server_session_mode.h"
#include "startup/session_mode.h"
#include "startup/single_trial_mode.h"
#include "world/level_file.h"
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

// The run modes a command asks for, by the parameter that starts each. A replay may name the
// level it replays with play_level, so that pair is one mode.
std::vector<std::string> requested_modes(const ProgramParameters& params, bool demo) {
    std::vector<std::string> modes;
    const std::pair<const std::optional<std::string>*, const char*> starters[] = {
        {&params.generate_levels, "generate_levels"}, {&params.auto_run_merge, "auto_run_merge"},
        {&params.auto_run_config, "auto_run_config"}, {&params.replay, "replay"},
        {&params.trial_level, "trial_level"},         {&params.play_level, "play_level"},
        {&params.submit_outbox, "submit_outbox"}};
    for (const auto& [value, name] : starters)
        if (*value && !(value == &params.play_level && params.replay))
            modes.emplace_back(name);
    if (demo)
        modes.emplace_back("demo");
    return modes;
}

// Logs and ends the program (status 2) when the command asks for two run modes: running one and
// silently dropping the other would leave the user believing both ran.
bool refuse_two_modes(AppState& app, const std::vector<std::string>& modes) {
    if (modes.size() < 2)
        return false;
    log_error(modes[0] + "= and " + modes[1] +
              "= start two different run modes; give one of them per command.");
    end_program(app, 2);
    return true;
}

// A mode the user asked for from the shell stops with a message when what it was told to use
// did not load, instead of quietly running without it.
bool refuse_missing_inputs(AppState& app, bool shell_mode) {
    const ProgramParameters& params = app.params;
    if (!shell_mode)
        return false;
    if (app.sim.configs.custom_failed) {
        log_error("Stopped: the custom configuration config=" + params.config.value_or("") +
                  " could not be loaded (see above), and this run would not use it.");
        end_program(app, 1);
        return true;
    }
    if (params.lang && !app.localization.active_language()) {
        log_error("Stopped: lang=" + *params.lang +
                  " could not be loaded (see above), and this run would not use it.");
        end_program(app, 2);
        return true;
    }
    return false;
}

// Every level can be played as a trial (each refusal is logged), so a kiosk does not stop in the
// middle of a participant's session.
bool levels_playable(AppState& app, const std::vector<std::string>& levels) {
    bool playable = true;
    for (const std::string& level : levels)
        playable = level_load_for_trial(*app.services.files, app.sim.cell_types,
                                        resolve_user_path(level)) &&
                   playable;
    return playable;
}

}  // namespace

void choose_run_mode(AppState& app) {
    const ProgramParameters& params = app.params;
    bool demo = false;
    if (params.demo) {
        const auto parsed = parse_switch_value(*params.demo);
        if (!parsed)
            return bad_parameter(app, "demo", *params.demo, "must be 0 or 1.");
        demo = *parsed;
    }
    // A server session is checked first and wins over any other mode, as documented.
    const std::vector<std::string> modes = requested_modes(params, demo);
    if (!params.user_id && refuse_two_modes(app, modes))
        return;
    if (refuse_missing_inputs(app, !modes.empty() || params.user_id))
        return;
    // Each of these is one call that runs to its end within a frame: Ctrl-C ends them at once,
    // as it ends any command-line tool.
    if (params.generate_levels || params.auto_run_merge)
        restore_default_interrupt_handling();
    if (params.generate_levels)
        return run_level_set_generator(app, params);
    if (params.auto_run_merge)
        return start_auto_run_merge_mode(app, params);
    if (params.submit_outbox)
        return start_submit_outbox_mode(app);
    // Everything below plays trials: without a configuration there is nothing to play with.
    if ((params.user_id || !modes.empty()) && !app.sim.configs.loaded()) {
        log_error("Cannot run without a configuration: see the errors above.");
        return end_program(app, 1);
    }
    if (params.user_id)
        return start_server_user_mode(app, *params.user_id);
    if (params.auto_run_config)
        return start_auto_run_mode(app, params);
    if (params.replay)
        return start_replay_mode(app, params);
    if (params.trial_level)
        return start_single_trial_mode(app, params);
    if (params.play_level)
        return start_play_mode(app, params);
    if (demo)
        return levels_playable(app, configured_levels(app)) ? start_demo_mode(app)
                                                            : end_program(app, 1);
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
