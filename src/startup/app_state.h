#pragma once
// The application: everything the program holds from main() to exit, as named members
// constructed in the order written here. The command line and the services come first
// (everything else may log, draw or ask through them), then the globals start-up fills
// (ProgramParams, Debugs, the logger's switch, API_ENV, ActiveLanguage), the entity runtime,
// the simulation that plays in it, the rooms and what the chosen mode keeps between frames.
// Start-up code gets the whole of it; systems below get the members they need.

#include <cstddef>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "config/debug_settings.h"
#include "config/localization.h"
#include "config/logger.h"
#include "config/program_parameters.h"
#include "net/api_env.h"
#include "platform/progress_line.h"
#include "runtime/runtime.h"
#include "runtime/services.h"
#include "startup/rooms.h"
#include "trials/server_session.h"
#include "trials/session.h"
#include "trials/simulation_state.h"
#include "ui/sprites.h"
#include "util/rng.h"

namespace veldra {

class ImGuiDialogs;

// What an auto run started from the shell keeps while its batch runs.
struct AutoRunModeState {
    std::optional<Rng> rng;
    std::unique_ptr<ProgressLine> progress;
    std::size_t runs_done = 0;
};

struct AppState {
    explicit AppState(std::vector<std::string> arguments) : arguments(std::move(arguments)) {}
    AppState(const AppState&) = delete;
    AppState& operator=(const AppState&) = delete;

    std::vector<std::string> arguments;  // the command line, the program's own path first
    Services services;
    ProgramParameters params;
    DebugSettings debugs;
    LoggerState logger;
    ApiEnv api_env;
    // Makes the network transport once API_ENV is read (it names the certificate authorities);
    // unset, the services keep theirs (tests without a network).
    std::function<std::unique_ptr<Http>(const ApiEnv& env)> make_http;
    Localization localization;
    Runtime runtime{services};
    SimulationState sim{runtime};
    Rooms rooms;
    AutoRunModeState auto_run;
    // The window's pictures, made when it opens (ui/sprites.h); none in headless runs.
    std::unique_ptr<Sprites> sprites;
    // The window's dialogs, also the services' dialogs once the window is open; null headless.
    ImGuiDialogs* window_dialogs = nullptr;
    int exit_status = 0;  // what the program returns; set by end_program
    // LoadingStatus: the loading-status display, made at start-up.
    InstanceId loading_status = NO_INSTANCE;
    // The local session being played (none before one starts) and what its chain refers to.
    std::unique_ptr<SessionContext> session_context;
    std::shared_ptr<LocalSession> local_session;
    // API: the research server's client, made at start-up; and the server session being played.
    InstanceId api = NO_INSTANCE;
    std::unique_ptr<ServerSessionContext> server_session_context;
    std::shared_ptr<ServerSession> server_session;
    // What closing the window does; unset, it ends the program. `can_ask` is false when the
    // program ends anyway (frames ran out): nothing may wait for an answer then.
    std::function<void(bool can_ask)> on_quit_requested;
    // Set by a mode that watches for Ctrl-C and SIGTERM itself (a batch stops after its trial in
    // progress); any other ends through on_quit_requested when one arrives.
    bool mode_stops_on_interrupt = false;
};

}  // namespace veldra
