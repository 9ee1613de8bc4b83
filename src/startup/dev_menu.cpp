#include "startup/dev_menu.h"

#include <chrono>
#include <cmath>

#include "async/dialog_promises.h"
#include "config/game_configurations.h"
#include "config/logger.h"
#include "runtime/log.h"
#include "runtime/number_format.h"
#include "runtime/paths.h"
#include "runtime/random_source.h"
#include "runtime/runtime.h"
#include "runtime/services.h"
#include "startup/app_state.h"
#include "startup/parameter_values.h"
#include "startup/server_connection.h"
#include "startup/server_session_mode.h"
#include "startup/session_mode.h"
#include "trials/auto_runner.h"
#include "ui/loading_status.h"
#include "world/level_file.h"
#include "world/level_set_generator.h"

namespace veldra {

namespace {

constexpr const char* DEV_MENU_NAME = "developer_menu";

void message(AppState& app, const std::string& text) {
    app.services.dialogs->show_message(text);
}

obj_loading_status* loading_status(AppState& app) {
    return app.runtime.find_as<obj_loading_status>(app.loading_status);
}

// A session takes the screen: the developer menu goes, and comes back after nothing (the
// session ends with its own end menu).
void start_session_from_menu(AppState& app, std::vector<std::string> levels, std::string user,
                             bool repeat = false) {
    Rng rng(random_seed_value());
    if (start_local_session(app, std::move(levels), std::move(user), rng, repeat))
        close_popup_menus(app.runtime, DEV_MENU_NAME);
}

MenuDefinition server_session_page(AppState& app, bool is_remote_defined) {
    auto user_id = std::make_shared<MenuField>();
    MenuDefinition page;
    page.entries.push_back(menu_heading("START SESSION (SERVER)"));
    page.entries.push_back(
        menu_text("[pin_center]You're about to start a session of one or more trials. The "
                  "results of the trials will be submitted to the server."));
    page.entries.push_back(menu_text_field("User ID", user_id));
    page.entries.push_back(menu_text("[pin_center]Continue?"));
    page.entries.push_back(menu_function("Continue", [&app, user_id, is_remote_defined] {
        if (user_id->text.empty())
            return message(app, "Enter a user ID first.");
        if (!is_remote_defined)
            return message(app, no_server_configured_text());
        start_server_session_for_user(app, user_id->text).and_then([&app](bool started) {
            if (started)
                close_popup_menus(app.runtime, DEV_MENU_NAME);
        });
    }));
    return page;
}

MenuDefinition local_session_page(AppState& app) {
    MenuDefinition page;
    page.entries.push_back(menu_heading("START SESSION (LOCAL)"));
    page.entries.push_back(
        menu_text("[pin_center]You're about to start a session of one or more trials. At the end "
                  "of the session, you will get to save the trial results as a CSV-file on your "
                  "computer."));
    page.entries.push_back(menu_text("[pin_center]Continue?"));
    page.entries.push_back(menu_function("Continue", [&app] {
        start_session_from_menu(app, configured_levels(app), "LOCAL_USER");
    }));
    return page;
}

void generate_levels(AppState& app) {
    auto generator = std::make_shared<std::string>();
    dialog_get_open_filename(*app.services.dialogs, "*.json", "", "Select a generator file.")
        .and_then([&app, generator](const std::string& file) {
            if (file.empty())
                return promise_cancelled<std::string>();
            *generator = file;
            return dialog_get_string(
                *app.services.dialogs,
                "The levels will be generated under a directory.\nEnter "
                "directory name:",
                "levels_" + make_file_name_stamp(app.services.clock->local_now(), '_'));
        })
        .and_then([&app, generator](const std::string& output) {
            if (output.empty())
                return;
            if (!generate_level_set(*app.services.files, app.sim.cell_types,
                                    resolve_user_path(*generator), output, std::nullopt))
                return message(app, "Failed to read generator configurations.");
            message(app, "The levels were generated under \"" + output + "\".");
        });
}

void auto_run(AppState& app) {
    struct Answers {
        std::string config;
        double seed = 0;
    };
    auto answers = std::make_shared<Answers>();
    auto reopen_menu = [&app] {
        if (obj_loading_status* status = loading_status(app))
            status->clear();
        if (popup_menus_open(app.runtime, DEV_MENU_NAME) == 0)
            open_dev_menu(app);
    };
    dialog_get_open_filename(*app.services.dialogs, "*.json", "",
                             "Select an auto-run configuration file.")
        .and_then([&app, answers](const std::string& file) {
            if (file.empty())
                return promise_cancelled<std::string>();
            answers->config = file;
            return dialog_get_string(*app.services.dialogs,
                                     "Random seed\n(the default here is a randomized number)",
                                     number_to_string(random_seed_value()));
        })
        .and_then([&app, answers](const std::string& seed) {
            const auto value = parse_seed_value(seed);
            if (!value) {
                message(app, "\"" + seed + "\" " + std::string(SEED_PROBLEM));
                return promise_cancelled<std::string>();
            }
            answers->seed = *value;
            return dialog_get_save_filename(*app.services.dialogs, "*.csv", "trials.csv",
                                            "Save results as");
        })
        .and_then([&app, answers](const std::string& output) {
            if (output.empty())
                return promise_cancelled<void>();
            app.auto_run.rng.emplace(answers->seed);
            AutoRunOptions options;
            options.on_progress = [&app](std::size_t done, std::size_t total) {
                if (obj_loading_status* status = loading_status(app))
                    status->set("Auto-run: " + std::to_string(done) + "/" + std::to_string(total),
                                total ? static_cast<double>(done) / static_cast<double>(total) : 1);
            };
            const auto started = std::chrono::steady_clock::now();
            // The progress shows where the menu was, and no second run can start meanwhile.
            close_popup_menus(app.runtime, DEV_MENU_NAME);
            return auto_run_trials(app.sim, resolve_user_path(answers->config), output,
                                   *app.auto_run.rng, answers->seed, std::move(options))
                .and_then([&app, started](bool completed) {
                    if (obj_loading_status* status = loading_status(app))
                        status->clear();
                    open_dev_menu(app);
                    if (!completed)
                        return message(app, "The auto run stopped before its end; see the log.");
                    const double seconds =
                        std::chrono::duration<double>(std::chrono::steady_clock::now() - started)
                            .count();
                    message(app, "Auto-run completed in " +
                                     number_to_string(std::round(seconds * 100) / 100) +
                                     " seconds.");
                });
        })
        .and_catch([&app, reopen_menu](const Value& reason) {
            reopen_menu();
            // Without a reason the auto runner has logged why the run could not start.
            message(app, reason.is_undefined()
                             ? std::string("Failed to read auto-run configurations.")
                             : to_string(reason));
        })
        // A question left unanswered: back to the menu, nothing to report.
        .and_cancelled(reopen_menu);
}

MenuDefinition level_list_page(AppState& app) {
    MenuDefinition page;
    page.entries.push_back(menu_heading("Select level"));
    for (const std::string& level : configured_levels(app))
        page.entries.push_back(menu_function(
            level, [&app, level] { start_session_from_menu(app, {level}, "LOCAL_USER"); }));
    return page;
}

void play_level_from_file(AppState& app) {
    dialog_get_open_filename(*app.services.dialogs, "*.txt", "", "Select a level file")
        .and_then([&app](const std::string& path) {
            if (path.empty())
                return;
            if (!level_load_for_trial(*app.services.files, app.sim.cell_types,
                                      resolve_user_path(path)))
                return message(app, "Failed to load level from file.");
            start_session_from_menu(app, {path}, "LOCAL_USER", true);
        });
}

}  // namespace

MenuDefinition make_dev_menu(AppState& app, bool is_remote_defined) {
    MenuDefinition menu;
    menu.entries.push_back(menu_heading("DEVELOPER MENU"));
    menu.entries.push_back(
        menu_page("Start session (server)", server_session_page(app, is_remote_defined)));
    if (!is_remote_defined)
        menu.entries.push_back(menu_text("[pin_center][slant](not connected to a server)"));
    menu.entries.push_back(menu_page("Start session (local)", local_session_page(app)));
    menu.entries.push_back(menu_function("Generate levels", [&app] { generate_levels(app); }));
    menu.entries.push_back(menu_function("Auto-run", [&app] { auto_run(app); }));
    menu.entries.push_back(menu_page("Play one level from the list", level_list_page(app)));
    menu.entries.push_back(menu_function("Play one level from a file repeatedly",
                                         [&app] { play_level_from_file(app); }));
    return menu;
}

void open_dev_menu(AppState& app) {
    const bool remote = is_remote_defined(app);
    connect_to_server(app).and_then([&app, remote](bool connected) {
        if (!connected && remote)
            message(app, "Failed to connect to the server.");
        PopupOptions options;
        options.persistent = true;
        options.behind_others = true;
        options.name = DEV_MENU_NAME;
        create_popup_menu(app.runtime, make_dev_menu(app, remote), options);
    });
}

}  // namespace veldra
