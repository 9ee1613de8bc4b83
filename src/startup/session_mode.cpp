#include "startup/session_mode.h"

#include "config/game_configurations.h"
#include "config/logger.h"
#include "config/run_files_folder.h"
#include "config/text_ids.h"
#include "runtime/log.h"
#include "runtime/number_format.h"
#include "runtime/paths.h"
#include "runtime/random_source.h"
#include "runtime/services.h"
#include "startup/app_state.h"
#include "startup/run_program.h"
#include "trials/session.h"
#include "trials/session_autosave.h"
#include "trials/trial.h"
#include "ui/popup_menu.h"
#include "ui/session_menus.h"
#include "veldra_version.h"
#include "world/level_file.h"

namespace veldra {

namespace {

void show_message(AppState& app, const std::string& text) {
    app.services.dialogs->show_message(text);
}

struct TrialPause {
    InstanceId trial = NO_INSTANCE;
    double speed = 0;
};

TrialPause pause_trial(AppState& app) {
    obj_trial* trial = app.sim.current_trial();
    if (!trial)
        return {};
    const TrialPause pause{trial->id(), trial->game_speed};
    trial->game_speed = 0;
    log("The trial stands still while the participant is asked whether to leave.");
    return pause;
}

void resume_trial(AppState& app, const TrialPause& pause) {
    obj_trial* trial = app.sim.current_trial();
    if (trial && trial->id() == pause.trial) {
        trial->game_speed = pause.speed;
        log("The participant keeps playing; the trial goes on.");
    }
}

// Closing the window in the middle of a session: the participant confirms first. Every
// finished trial is in the autosave already, on disk; the trial in progress is not kept.
void on_quit_during_session(AppState& app, bool can_ask) {
    const bool in_progress = session_in_progress(app);
    auto quit = [&app] {
        const auto& left = app.local_session;
        // A finished session said where its results are when it finished.
        if (left && left->autosave && !left->finished && !left->failed)
            log("The session ended early; the results of its " +
                std::to_string(left->trials->size()) + " finished trials are in \"" +
                left->autosave->path() + "\".");
        end_program(app, 0);
    };
    if (!in_progress || !can_ask || app.services.headless)
        return quit();
    if (popup_menus_open(app.runtime, "quit_confirmation") > 0)
        return;
    // The trial stands still while the participant decides, and the safe answer comes first, so
    // that Enter keeps playing.
    const TrialPause pause = pause_trial(app);
    MenuDefinition menu;
    menu.entries.push_back(menu_heading(text_of(app.localization, lid::Quit_Title)));
    menu.entries.push_back(menu_text(text_of(app.localization, lid::Quit_Text)));
    menu.entries.push_back(menu_button(text_of(app.localization, lid::Quit_Cancel), Value(false)));
    menu.entries.push_back(menu_button(text_of(app.localization, lid::Quit_Confirm), Value(true)));
    PopupOptions options;
    options.persistent = true;
    options.name = "quit_confirmation";
    create_popup_menu(app.runtime, std::move(menu), options)
        .and_then([&app, quit, pause](const Value& yes) {
            if (yes.is_bool() && yes.as_bool())
                quit();
            else
                resume_trial(app, pause);
        });
}

// Nobody watches a headless session: its trials play themselves, and the program ends with it,
// its records in the autosave.
SessionScreens headless_session_screens(AppState& app) {
    SessionScreens screens;
    screens.show_end = [&app](const std::string&, double,
                              std::shared_ptr<const std::vector<TrialData>>) {
        const LocalSession& session = *app.local_session;
        if (session.records_not_autosaved > 0) {
            log_error(std::to_string(session.records_not_autosaved) +
                      " trial results could not be written to \"" + session.autosave->path() +
                      "\" (see above); they are lost.");
            return end_program(app, 1);
        }
        end_program(app, 0);
    };
    screens.show_problem = [&app](const std::string&) { end_program(app, 1); };
    return screens;
}

}  // namespace

bool session_levels_loadable(AppState& app, const std::vector<std::string>& level_filenames) {
    for (const std::string& name : level_filenames)
        if (!level_load_from_file(*app.services.files, app.sim.cell_types,
                                  resolve_user_path(name))) {
            show_message(app, "Failed to load level from file.\n\"" + resolve_user_path(name) +
                                  "\" cannot be played (the log says why); the session does "
                                  "not start.");
            return false;
        }
    return true;
}

std::optional<AppendFile> create_session_autosave(AppState& app, const std::string& user_id) {
    std::string error;
    auto autosave =
        session_autosave_create(run_files_folder(app.params.log_output_file), user_id,
                                make_file_name_stamp(app.services.clock->local_now()), error);
    if (!autosave) {
        const std::string text = "The session does not start: its results cannot be kept in " +
                                 error +
                                 ". Give log_output_file= a file in a folder that can be written "
                                 "(the results go beside it), or start from such a folder.";
        log_error(text);  // headless, this is what the caller sees
        if (!app.services.headless)
            show_message(app, text);
    }
    return autosave;
}

void ask_before_leaving_session(AppState& app) {
    app.on_quit_requested = [&app](bool can_ask) { on_quit_during_session(app, can_ask); };
}

bool session_in_progress(const AppState& app) {
    const auto& local = app.local_session;
    const auto& server = app.server_session;
    return (local && !local->finished && !local->failed) ||
           (server && !server->finished && !server->failed);
}

std::vector<std::string> configured_levels(const AppState& app) {
    std::vector<std::string> levels;
    const Value& list = app.sim.configs->levels;
    for (std::size_t i = 0; i < list.size(); ++i)
        if (list.at(i).is_string())
            levels.push_back(list.at(i).as_string());
    return levels;
}

bool start_local_session(AppState& app, std::vector<std::string> level_filenames,
                         std::string user_id, Rng rng, bool repeat) {
    if (session_in_progress(app)) {
        show_message(app, "A session is already running.");
        return false;
    }
    if (level_filenames.empty()) {
        show_message(app, "The configuration lists no levels to play (the key \"levels\").");
        return false;
    }
    if (!session_levels_loadable(app, level_filenames))
        return false;
    SessionMenuContext menus{app.runtime, app.services, app.sim.configs, app.localization,
                             DEBUG_BUILD};
    if (!app.services.headless)
        app.session_context = std::make_unique<SessionContext>(
            SessionContext{app.sim, app.localization, window_session_screens(menus)});
    else
        app.session_context = std::make_unique<SessionContext>(
            SessionContext{app.sim, app.localization, headless_session_screens(app)});
    auto autosave = create_session_autosave(app, user_id);
    if (!autosave)
        return false;
    const std::string autosave_path = autosave->path();
    app.local_session = local_session_start(*app.session_context, std::move(level_filenames),
                                            std::move(user_id), rng, std::move(autosave));
    app.local_session->repeat = repeat;
    log("The results of each trial are kept in \"" + autosave_path + "\" as the session goes on.");
    ask_before_leaving_session(app);
    return true;
}

void start_demo_mode(AppState& app) {
    Rng rng(random_seed_value());
    if (!start_local_session(app, configured_levels(app), "DEMO_USER", rng))
        end_program(app, 1);
}

}  // namespace veldra
