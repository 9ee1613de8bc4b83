#include "startup/window_setup.h"

#include <charconv>
#include <cmath>

#include "config/game_configurations.h"
#include "devtools/debug_tools.h"
#include "platform/game_window.h"
#include "startup/app_state.h"
#include "startup/parameter_values.h"
#include "trials/trial.h"
#include "ui/dialog_host.h"
#include "ui/sprites.h"
#include "ui/traits_menu.h"
#include "ui/trial_views.h"
#include "veldra_version.h"

namespace veldra {

namespace {

std::optional<double> parse_number(std::string_view text) {
    double v = 0;
    auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), v);
    if (error != std::errc() || end != text.data() + text.size() || !std::isfinite(v))
        return std::nullopt;
    return v;
}

}  // namespace

std::optional<WindowRequest> read_window_request(const ProgramParameters& params,
                                                 std::string& error) {
    WindowRequest request;
    bool headless = false;
    if (params.headless) {
        const auto value = parse_switch_value(*params.headless);
        if (!value) {
            error = "headless=" + *params.headless + " must be 0 or 1.";
            return std::nullopt;
        }
        headless = *value;
    }
    // Shell modes print and exit; everything else is for a person at the window: a played or
    // replayed trial, a server session, a demo, the developer menu. A server session wins over
    // every shell mode, so it asks for the window even beside one.
    const bool shell_mode = params.generate_levels || params.auto_run_merge ||
                            params.auto_run_config || params.trial_level || params.submit_outbox;
    request.wanted =
        !headless && (params.play_level || params.replay || params.user_id || !shell_mode);
    request.replaying = params.replay.has_value();
    if (params.volume) {
        const auto value = parse_number(*params.volume);
        if (!value || *value < 0 || *value > 1) {
            error = "volume=" + *params.volume + " must be a number from 0 to 1.";
            return std::nullopt;
        }
        request.volume = *value;
    }
    if (params.camera_zoom) {
        const auto value = *params.camera_zoom == "fit" ? std::optional<double>(0)
                                                        : parse_number(*params.camera_zoom);
        if (!value || (*value != 0 && (*value < 0.25 || *value > 2))) {
            error = "camera_zoom=" + *params.camera_zoom +
                    " must be a number from 0.25 to 2, or \"fit\".";
            return std::nullopt;
        }
        request.camera_zoom = value;
    }
    request.developer_keys = DEBUG_BUILD;
    if (params.developer_keys) {
        const auto value = parse_switch_value(*params.developer_keys);
        if (!value) {
            error = "developer_keys=" + *params.developer_keys + " must be 0 or 1.";
            return std::nullopt;
        }
        request.developer_keys = *value;
    }
    if (params.window_size) {
        const std::string& text = *params.window_size;
        const std::size_t x = text.find('x');
        int width = 0;
        int height = 0;
        const bool ok =
            x != std::string::npos &&
            std::from_chars(text.data(), text.data() + x, width).ptr == text.data() + x &&
            std::from_chars(text.data() + x + 1, text.data() + text.size(), height).ptr ==
                text.data() + text.size() &&
            width >= MIN_WINDOW_WIDTH && height >= MIN_WINDOW_HEIGHT && width <= MAX_WINDOW_WIDTH &&
            height <= MAX_WINDOW_HEIGHT;
        if (!ok) {
            error = "window_size=" + text + " must be WIDTHxHEIGHT in pixels, from " +
                    std::to_string(MIN_WINDOW_WIDTH) + "x" + std::to_string(MIN_WINDOW_HEIGHT) +
                    " to " + std::to_string(MAX_WINDOW_WIDTH) + "x" +
                    std::to_string(MAX_WINDOW_HEIGHT) + ".";
            return std::nullopt;
        }
        request.width = width;
        request.height = height;
    }
    // Measured frames must show the work, not the wait for the next one.
    request.pace_frames = !params.frame_times;
    return request;
}

std::unique_ptr<platform::GameWindow> open_window(AppState& app, const WindowRequest& request,
                                                  std::string& error) {
    platform::WindowOptions options;
    options.pace_frames = request.pace_frames;
    options.width = request.width;
    options.height = request.height;
    options.vsync = request.pace_frames;
    auto window = platform::open_game_window(app.services, options, error);
    if (!window)
        return nullptr;
    app.services.audio->set_volume(request.volume);
    // Questions are asked in the window from now on; the host is persistent, so it is in place
    // before the first room starts and stays through every room change.
    app.window_dialogs = &install_window_dialogs(app.runtime);
    app.sprites = std::make_unique<Sprites>(make_sprites(*app.services.renderer));
    app.sim.create_trial_views = [&app, request](obj_trial& trial) {
        const bool replaying = request.replaying;
        TrialViewOptions views;
        views.developer_keys = request.developer_keys;
        views.show_keyboard_prompts = app.sim.configs->show_keyboard_prompts && !replaying;
        views.player_input = !replaying;
        views.start_zoom = request.camera_zoom;
        return create_trial_views(app.sim, trial, app.localization, *app.sprites, views);
    };
    if (request.developer_keys)
        create_debug_tools(app.runtime, {app.sim, app.debugs, *app.services.files});
    app.sim.ask_personality_traits = [&app](const PersonalityTraits& traits,
                                            const std::string& heading) {
        return get_personality_traits_via_menu(
            app.runtime, traits, heading, app.sim.configs, app.localization,
            app.sim.configs->leave_traits_menu_open_when_playing);
    };
    return window;
}

}  // namespace veldra
