#include "startup/obj_init.h"

#include "async/promise.h"
#include "config/configuration_choice.h"
#include "config/debug_settings.h"
#include "config/game_configurations.h"
#include "config/localization.h"
#include "config/logger.h"
#include "config/program_parameters.h"
#include "net/api_env.h"
#include "platform/os_name.h"
#include "runtime/callstack.h"
#include "runtime/log.h"
#include "runtime/number_format.h"
#include "runtime/random_source.h"
#include "runtime/services.h"
#include "startup/app_state.h"
#include "startup/run_mode.h"
#include "startup/run_program.h"
#include "startup/server_connection.h"
#include "trials/game_systems.h"
#include "ui/dialog_texts.h"
#include "ui/imgui_dialogs.h"
#include "ui/loading_status.h"
#include "ui/watermark.h"
#include "util/text.h"
#include "veldra_version.h"

#ifndef VELDRA_BUILD_CONFIGURATION
#define VELDRA_BUILD_CONFIGURATION "Default"
#endif

namespace veldra {

namespace {

// A desktop program runs in no browser; the runtime reports that as -1.
std::string os_browser_to_string() {
    return "not_a_browser -1";
}

void log_start_up_lines() {
    log("Program started.");
    log(std::string("Build version: ") + BUILD_VERSION);
    log(std::string("Build configuration: ") + VELDRA_BUILD_CONFIGURATION);
    log("Debug mode: true");
    log("os_type: " + platform::os_name());
    log("os_browser: " + os_browser_to_string());
}

// The start-up questions are the developer's: a release build in a window, where a participant
// may sit, never stops to ask. Headless, scripted dialogs answer (or cancel) either way.
bool developer_asked(const AppState& app) {
    return DEBUG_BUILD || app.services.headless;
}

// Fulfilled once a language is active: the `lang` parameter, else (debug) asked for, else en.
Promise<void> choose_language(AppState& app) {
    initialize_localization(app.localization);
    using Code = std::optional<std::string>;
    Promise<Code> code =
        app.params.lang ? promise_resolve(Code(*app.params.lang))
        : developer_asked(app)
            ? _debug_ask_localization(app.debugs, *app.services.dialogs, *app.services.files)
            : promise_resolve(Code());
    return code.and_then([&app](const Code& language) {
        load_and_set_localization(*app.services.files, app.localization, language.value_or("en"));
        if (app.window_dialogs)
            app.window_dialogs->set_texts(dialog_texts_from(app.localization));
    });
}

// The watermark (release builds, when the configuration asks) and the loading status.
void create_status_displays(AppState& app) {
    if (!DEBUG_BUILD && app.sim.configs.loaded() && app.sim.configs->show_build_info_watermark)
        app.runtime.instance_create<obj_watermark>(
            0, 0, "",
            std::string("Veldra ") + BUILD_VERSION + " (" + VELDRA_BUILD_CONFIGURATION + ")");
    app.loading_status = app.runtime.instance_create<obj_loading_status>(0, 0, "").id();
}

}  // namespace

void obj_init::on_create() {
    VELDRA_SCOPE();
    randomize();
    promises_set_uncaught_handler(log_uncaught_rejection);
    AppState& app = app_;
    app.params = get_program_parameters(app.arguments);
    app.services.terminal->verbose = app.params.verbose == "1";
    app.sim.log_automatic_trial_events = app.params.auto_run_output || app.params.trial_level;
    initialize_log(app.runtime, app.logger, app.params.log_output_file);
    initialize_api_env(*app.services.files, app.api_env);
    if (app.make_http)
        app.services.http = app.make_http(app.api_env);
    log_start_up_lines();
    app.debugs = load_active_debug_settings(*app.services.files);
    // The questions may stay open over many frames in a window, so the rest of start-up follows
    // their answers; headless, scripted answers come a frame later, as a window's would.
    choose_language(app)
        .and_then([&app] {
            initialize_game_systems(app.sim);
            if (!app.params.config && !developer_asked(app))
                return promise_resolve(std::string());
            return ask_custom_configuration_name(app.params, app.debugs, *app.services.dialogs,
                                                 *app.services.files);
        })
        .and_then([&app](const std::string& custom_name) {
            create_api_client(app);
            reload_game_configurations(app.sim.configs, *app.services.files, custom_name);
            create_status_displays(app);
            choose_run_mode(app);
        })
        .and_catch([&app](const Value& reason) {
            log_error("Start-up failed: " + to_string(reason));
            end_program(app, 1);
        });
}

}  // namespace veldra
