#include "startup/server_session_mode.h"

#include <optional>
#include <utility>

#include "async/waiters.h"
#include "config/game_configurations.h"
#include "config/run_files_folder.h"
#include "net/obj_api.h"
#include "net/outbox.h"
#include "runtime/log.h"
#include "runtime/number_format.h"
#include "runtime/random_source.h"
#include "runtime/services.h"
#include "startup/app_state.h"
#include "startup/run_program.h"
#include "startup/server_connection.h"
#include "startup/session_mode.h"
#include "ui/loading_status.h"
#include "ui/session_menus.h"
#include "veldra_version.h"

namespace veldra {

namespace {

// Headless, a message that stops the session also ends the program: nobody is there to read it
// and start again.
void show_stopping_message(AppState& app, const std::string& text) {
    app.services.dialogs->show_message(text);
    if (app.services.headless)
        end_program(app, 1);
}

// Long enough not to hammer a server that is down, short enough that a participant waiting at
// the end is not kept long once it is back.
constexpr double OUTBOX_RETRY_MS = 5000;

Promise<void> wait_milliseconds(AppState& app, double ms) {
    const double until = app.services.clock->current_time() + ms;
    return wait_condition(app.runtime,
                          [&app, until] { return app.services.clock->current_time() >= until; });
}

obj_loading_status* loading_status(AppState& app) {
    return app.runtime.find_as<obj_loading_status>(app.loading_status);
}

SessionScreens headless_server_session_screens(AppState& app) {
    SessionScreens screens;
    screens.show_end = [&app](const std::string&, double,
                              std::shared_ptr<const std::vector<TrialData>>) {
        const ServerSession& session = *app.server_session;
        if (session.records_not_autosaved > 0)
            log_error(std::to_string(session.records_not_autosaved) +
                      " trial results could not be written to the autosave (see above); they "
                      "are on the server only.");
        end_program(app, session.records_not_autosaved > 0 ? 1 : 0);
    };
    screens.show_problem = [&app](const std::string&) { end_program(app, 1); };
    return screens;
}

SessionScreens server_session_screens(AppState& app) {
    if (app.services.headless)
        return headless_server_session_screens(app);
    SessionMenuContext menus{app.runtime, app.services, app.sim.configs, app.localization,
                             DEBUG_BUILD};
    SessionScreens screens = window_session_screens(menus);
    screens.show_problem = [&app](const std::string& text) {
        app.services.dialogs->show_message(text);
    };
    return screens;
}

// The configuration's levels, shuffled by the session's own generator when the configuration
// asks for it.
std::vector<std::string> session_levels(AppState& app, Rng& rng) {
    std::vector<std::string> levels = configured_levels(app);
    if (app.sim.configs->shuffle_levels)
        rng.rng_array_shuffle(levels);
    return levels;
}

}  // namespace

bool start_server_session(AppState& app, std::vector<std::string> level_filenames,
                          std::string user_id, Rng rng) {
    if (session_in_progress(app)) {
        app.services.dialogs->show_message("A session is already running.");
        return false;
    }
    if (level_filenames.empty()) {
        app.services.dialogs->show_message(
            "The configuration lists no levels to play (the key \"levels\").");
        return false;
    }
    if (!session_levels_loadable(app, level_filenames))
        return false;
    auto autosave = create_session_autosave(app, user_id);
    if (!autosave)
        return false;
    const std::string autosave_path = autosave->path();
    app.server_session_context = std::make_unique<ServerSessionContext>(ServerSessionContext{
        .session = SessionContext{app.sim, app.localization, server_session_screens(app)},
        .api = api_client(app),
        .set_loading_status =
            [&app](const std::string& text) {
                if (obj_loading_status* status = loading_status(app))
                    status->set(text);
            },
        .clear_loading_status =
            [&app] {
                if (obj_loading_status* status = loading_status(app))
                    status->clear();
            },
        .show_message = [&app](const std::string& text) { show_stopping_message(app, text); },
        .outbox =
            std::make_shared<Outbox>(outbox_folder(run_files_folder(app.params.log_output_file))),
        .wait_before_retry = [&app] { return wait_milliseconds(app, OUTBOX_RETRY_MS); }});
    app.server_session = make_server_session(std::move(level_filenames), std::move(user_id), rng,
                                             std::move(autosave));
    log("Server session started for \"" + app.server_session->user_id + "\" with " +
        std::to_string(app.server_session->level_filenames.size()) +
        " levels; each result is also kept in \"" + autosave_path + "\".");
    ask_before_leaving_session(app);
    // What an earlier start could not send goes first, so the server's list of submitted
    // levels is complete before the session asks it where to go on.
    server_session_send_waiting(*app.server_session_context, app.server_session->user_id)
        .and_then([&app](std::size_t) {
            server_session_start(*app.server_session_context, app.server_session);
        });
    return true;
}

Promise<bool> start_server_session_for_user(AppState& app, const std::string& user_id) {
    using Total = std::optional<double>;
    return api_client(app)
        .user_exists(user_id)
        .and_then([&app, user_id](const std::optional<bool>& exists) {
            if (!exists) {
                show_stopping_message(app, "Failed to get data from the server.");
                return promise_resolve(Total());
            }
            if (!*exists) {
                show_stopping_message(app, "User ID " + user_id + " is not registered.");
                return promise_resolve(Total());
            }
            return api_client(app).user_get_total_score(user_id).and_then(
                [&app](const Total& total) {
                    if (!total)
                        show_stopping_message(app, "Failed to get data from the server.");
                    return total;
                });
        })
        .and_then([&app, user_id](const Total& total) {
            if (!total)
                return false;
            log("User \"" + user_id + "\" has a total score of " + number_to_string(*total) +
                " on the server.");
            Rng rng(random_seed_value());
            std::vector<std::string> levels = session_levels(app, rng);
            const bool started = start_server_session(app, std::move(levels), user_id, rng);
            if (!started && app.services.headless)
                end_program(app, 1);
            return started;
        });
}

void start_server_user_mode(AppState& app, const std::string& user_id) {
    if (!is_remote_defined(app)) {
        log_error(no_server_configured_text());
        if (app.services.headless)
            return end_program(app, 2);
        return app.services.dialogs->show_message(no_server_configured_text());
    }
    connect_to_server(app)
        .and_then([&app, user_id](bool connected) {
            if (!connected)
                app.services.dialogs->show_message("Failed to connect to the server.");
            return start_server_session_for_user(app, user_id);
        })
        .and_catch([&app](const Value& reason) {
            if (obj_loading_status* status = loading_status(app))
                status->clear();
            show_stopping_message(app, to_string(reason));
        });
}

}  // namespace veldra
