#include "startup/run_program.h"

#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <limits>
#include <memory>
#include <system_error>

#include "async/promise_event_loop.h"
#include "config/program_parameters.h"
#include "platform/console.h"
#include "platform/curl_http.h"
#include "platform/executable_path.h"
#include "platform/game_window.h"
#include "platform/interrupt.h"
#include "platform/local_time.h"
#include "platform/program_arguments.h"
#include "platform/ui_script_player.h"
#include "runtime/frame_loop.h"
#include "runtime/gc.h"
#include "runtime/log.h"
#include "runtime/paths.h"
#include "runtime/process_state.h"
#include "runtime/runtime.h"
#include "runtime/services.h"
#include "runtime/utf8_path.h"
#include "startup/app_state.h"
#include "startup/frame_times.h"
#include "startup/obj_init.h"
#include "startup/rooms.h"
#include "startup/window_setup.h"
#include "util/text.h"
#include "veldra_version.h"

namespace veldra {

namespace {

void print_help() {
    std::printf("Usage: veldra [key=value ...]\n\nParameters:\n");
    for (const auto& info : program_parameter_table())
        std::printf("  %-18s %.*s\n", std::string(info.name).c_str(),
                    static_cast<int>(info.help.size()), info.help.data());
    std::printf(
        "\nOther options:\n  --help             print this text\n  --version          print the "
        "version\n");
    std::printf("\nEnvironment:\n  VeldraProjectDir   data directory override: <dir>/datafiles/\n");
}

std::filesystem::path program_directory(const char* argv0) {
    if (const auto self = platform::executable_path())
        return self->parent_path();
    std::error_code error;
    return std::filesystem::absolute(utf8_path(argv0), error).parent_path();
}

// frames= as a count of frames; nullopt when not given. The limit is what the frame counter holds.
std::optional<long long> parse_frames(const std::optional<std::string>& text,
                                      std::string& problem) {
    if (!text)
        return std::nullopt;
    constexpr auto most = static_cast<std::uint64_t>(std::numeric_limits<long long>::max());
    problem = whole_number_problem(*text, 0, most);
    if (!problem.empty())
        return std::nullopt;
    return static_cast<long long>(*try_string_to_whole_number(*text, 0, most));
}

bool write_screenshot(AppState& app, const std::string& path) {
    std::string error;
    if (app.services.renderer->save_screenshot(path, error))
        return true;
    std::fprintf(stderr, "Cannot write the screenshot \"%s\": %s.\n", path.c_str(), error.c_str());
    return false;
}

bool start_ui_script(AppState& app, platform::GameWindow* window, const std::string& path) {
    if (!window) {
        std::fprintf(stderr, "ui_script=%s plays into the window; it cannot run with headless=1.\n",
                     path.c_str());
        return false;
    }
    const std::string resolved = resolve_user_path(path);
    const FileText text = app.services.files->read(resolved, 1 << 20);
    if (!text) {
        std::fprintf(stderr, "Cannot read ui_script=%s: %s.\n", resolved.c_str(),
                     text.error.c_str());
        return false;
    }
    std::string error;
    auto commands = parse_ui_script(*text.text, error);
    if (!commands) {
        std::fprintf(stderr, "ui_script=%s: %s.\n", resolved.c_str(), error.c_str());
        return false;
    }
    window->take_only_injected_input();
    platform::UiScriptHooks hooks;
    hooks.end = [&app](int status) { end_program(app, status); };
    hooks.quit = [&app] {
        if (app.on_quit_requested)
            app.on_quit_requested(true);
        else
            end_program(app, 0);
    };
    app.runtime.instance_create<platform::obj_ui_script>(0, 0, "", std::move(hooks), *window,
                                                         std::move(*commands));
    return true;
}

// Ctrl-C or SIGTERM: the mode keeps what it has, as when the window is closed with no time to
// ask, and the program ends as an interrupted run. A batch stops itself after its trial.
void stop_on_interrupt(AppState& app) {
    log(std::string("Stopped by ") + interrupt_signal_name() + ".");
    if (app.on_quit_requested)
        app.on_quit_requested(false);
    end_program(app, EXIT_INTERRUPTED);
}

}  // namespace

void end_program(AppState& app, int status) {
    app.exit_status = status;
    app.runtime.game_end();
}

int run_program(int argc, char** argv) {
    FrameTimes frame_times(FrameTimes::Clock::now());
    platform::use_parent_console();
    std::vector<std::string> arguments = platform::program_arguments(argc, argv);
    for (const auto& argument : arguments) {
        if (argument == "--help" || argument == "-h") {
            print_help();
            return 0;
        }
        if (argument == "--version") {
            std::printf("%s\n", BUILD_VERSION);
            return 0;
        }
    }
    const ProgramParameters early = get_program_parameters(arguments);
    std::string frames_problem;
    const auto frames = parse_frames(early.frames, frames_problem);
    if (!frames_problem.empty()) {
        std::fprintf(stderr, "frames=%s %s.\n", early.frames->c_str(), frames_problem.c_str());
        return 2;
    }

    std::string request_error;
    const auto window_request = read_window_request(early, request_error);
    if (!window_request) {
        std::fprintf(stderr, "%s\n", request_error.c_str());
        return 2;
    }

    // Before the window opens: the window's library leaves handlers it finds in place alone.
    install_interrupt_handler();
    process_state().program_directory = program_directory(argv[0]);
    GcScope collector;
    AppState app(arguments);
    app.services.clock = std::make_unique<FrameClock>(platform::local_time_now);
    std::unique_ptr<platform::GameWindow> window;
    if (window_request->wanted) {
        std::string error;
        window = open_window(app, *window_request, error);
        if (!window) {
            std::fprintf(stderr,
                         "The game window cannot open: %s.\nTo run without a window, add "
                         "headless=1.\n",
                         error.c_str());
            return 1;
        }
    }

    app.make_http = [headless = !window](const ApiEnv& env) -> std::unique_ptr<Http> {
        platform::CurlHttpOptions options;
        options.ca_file = env.ca_file;
        if (options.ca_file)
            options.ca_file = resolve_user_path(*options.ca_file);
        options.poll_wait_ms = headless ? 1 : 0;
        return std::make_unique<platform::CurlHttp>(std::move(options));
    };

    Runtime& runtime = app.runtime;
    start_promise_event_loop(runtime);
    runtime.start(add_rooms(app));
    if (early.ui_script && !start_ui_script(app, window.get(), *early.ui_script)) {
        runtime.shutdown();
        return 2;
    }
    while (!runtime.end_requested() && (!frames || runtime.frame_count() < *frames)) {
        frame_times.frame_started();
        frame_times.frame_finished(run_program_frame(runtime, app.services) > 0);
        if (interrupt_requested() && !app.mode_stops_on_interrupt && !runtime.end_requested()) {
            stop_on_interrupt(app);
            break;
        }
        // Each close may ask again: a participant who cancelled can still close later.
        if (app.services.input->frame().quit_requested) {
            if (app.on_quit_requested)
                app.on_quit_requested(true);
            else
                end_program(app, 0);
        }
    }
    // Frames ran out before the mode was done: it keeps what it has, as if the window closed.
    if (!runtime.end_requested() && app.on_quit_requested)
        app.on_quit_requested(false);
    if (auto* script = runtime.instance_find<platform::obj_ui_script>(0);
        script && !script->report_unfinished() && app.exit_status == 0)
        app.exit_status = 1;
    if (early.screenshot && !write_screenshot(app, *early.screenshot))
        app.exit_status = app.exit_status ? app.exit_status : 1;
    if (early.frame_times) {
        const std::string error = frame_times.write(*early.frame_times);
        if (!error.empty())
            std::fprintf(stderr, "Cannot write frame_times=%s: %s.\n", early.frame_times->c_str(),
                         error.c_str());
        std::fprintf(stderr, "%s\n", frame_times.summary().c_str());
    }
    runtime.shutdown();
    return app.exit_status;
}

}  // namespace veldra
