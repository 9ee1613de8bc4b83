#include "startup/session_mode.h"

#include <cctype>

#include "config/game_configurations.h"
#include "config/logger.h"
#include "config/text_ids.h"
#include "runtime/log.h"
#include "runtime/number_format.h"
#include "runtime/paths.h"
#include "runtime/random_source.h"
#include "runtime/services.h"
#include "startup/app_state.h"
#include "startup/program.h"
#include "trials/session.h"
#include "trials/trial.h"
#include "ui/popup_menu.h"
#include "ui/session_menus.h"
#include "veldra_version.h"
#include "world/level_file.h"

namespace veldra {

namespace {

// A name that is safe in a file name whatever the user typed as their id.
std::string file_name_part(const std::string& text) {
    std::string part;
    for (char c : text)
        part += std::isalnum(static_cast<unsigned char>(c)) || c == '-' || c == '_' ? c : '_';
    return part.empty() ? "user" : part.substr(0, 64);
}

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

// Closing the window in the middle of a session: the participant confirms first. Everything
// finished is in the autosave already; it is written once more so the file is certainly there.
void on_quit_during_session(AppState& app, bool can_ask) {
    const auto& session = app.local_session;
    const bool in_progress = session && !session->finished && !session->failed;
    auto quit = [&app] {
        if (app.local_session && !app.local_session->autosave_path.empty() &&
            !app.local_session->trials->empty()) {
            const std::string error =
                app.services.files->write(app.local_session->autosave_path,
                                          trial_results_csv_text(*app.local_session->trials));
            if (error.empty())
                log("The session's results so far are saved in \"" +
                    app.local_session->autosave_path + "\".");
            else
                log_error("Cannot save the session's results to \"" +
                          app.local_session->autosave_path + "\": " + error + ".");
        }
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
    screens.show_end = [&app](const std::string&, double total,
                              std::shared_ptr<const std::vector<TrialData>>) {
        log("The session's results are in \"" + app.local_session->autosave_path + "\"; total " +
            number_to_string(total) + ".");
        end_program(app, 0);
    };
    screens.show_problem = [&app](const std::string&) { end_program(app, 1); };
    return screens;
}

}  // namespace

std::vector<std::string> configured_levels(const AppState& app) {
    std::vector<std::string> levels;
    const Value& list = app.sim.configs->levels;
    for (std::size_t i = 0; i < list.size(); ++i)
        if (list.at(i).is_string())
            levels.push_back(list.at(i).as_string());
    return levels;
}

std::string session_autosave_path(const AppState& app, const std::string& user_id) {
    return path_beside_log(app.params.log_output_file,
                           "session-" + file_name_part(user_id) + "-" +
                               make_file_name_stamp(app.services.clock->local_now()) + ".csv");
}

bool start_local_session(AppState& app, std::vector<std::string> level_filenames,
                         std::string user_id, Rng rng, bool repeat) {
    if (app.local_session && !app.local_session->finished && !app.local_session->failed) {
        show_message(app, "A session is already running.");
        return false;
    }
    if (level_filenames.empty()) {
        show_message(app, "The configuration lists no levels to play (the key \"levels\").");
        return false;
    }
    for (const std::string& name : level_filenames)
        if (!level_load_from_file(*app.services.files, app.sim.cell_types,
                                  resolve_user_path(name))) {
            show_message(app, "Failed to load level from file.\n\"" + resolve_user_path(name) +
                                  "\" cannot be played (the log says why); the session does "
                                  "not start.");
            return false;
        }
    SessionMenuContext menus{app.runtime, app.services, app.sim.configs, app.localization,
                             DEBUG_BUILD};
    if (!app.services.headless)
        app.session_context = std::make_unique<SessionContext>(
            SessionContext{app.sim, app.localization, window_session_screens(menus)});
    else
        app.session_context = std::make_unique<SessionContext>(
            SessionContext{app.sim, app.localization, headless_session_screens(app)});
    const std::string autosave = session_autosave_path(app, user_id);
    app.local_session = local_session_start(*app.session_context, std::move(level_filenames),
                                            std::move(user_id), rng, autosave);
    app.local_session->repeat = repeat;
    log("The results of each trial are kept in \"" + autosave + "\" as the session goes on.");
    app.on_quit_requested = [&app](bool can_ask) { on_quit_during_session(app, can_ask); };
    return true;
}

void start_demo_mode(AppState& app) {
    Rng rng(random_seed_value());
    if (!start_local_session(app, configured_levels(app), "DEMO_USER", rng))
        end_program(app, 1);
}

}  // namespace veldra
