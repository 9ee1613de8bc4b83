#include "platform/game_window.h"

#include <SDL.h>

#include "platform/realtime_clock.h"
#include "platform/sdl_audio.h"
#include "platform/sdl_input.h"
#include "platform/sdl_renderer.h"
#include "platform/window_session.h"
#include "runtime/log.h"

namespace veldra::platform {

GameWindow::GameWindow(Services& services, std::shared_ptr<WindowSession> session)
    : services_(services), session_(std::move(session)) {
    services_.renderer = std::make_unique<SdlRenderer>(session_);
    services_.input = std::make_unique<SdlInput>(session_);
    services_.audio = std::make_unique<SdlAudio>();
    services_.clock = std::make_unique<RealtimeClock>(session_->options.pace_frames);
    headless_open_url_ = std::move(services_.open_url);
    services_.open_url = [](const std::string& url) {
        log("Opening " + url + " in the browser.");
        if (SDL_OpenURL(url.c_str()) != 0)
            log_warning("The browser did not open " + url + ": " + SDL_GetError() +
                        ". Open the address by hand.");
    };
    services_.headless = false;
    renderer_ = services_.renderer.get();
    input_ = services_.input.get();
    audio_ = services_.audio.get();
}

GameWindow::~GameWindow() {
    // Only what is still ours goes back; the clock stays, since SDL is not in it and time
    // running backwards would confuse every waiting alarm.
    if (services_.renderer.get() == renderer_)
        services_.renderer = std::make_unique<NullRenderer>();
    if (services_.input.get() == input_)
        services_.input = std::make_unique<ScriptedInput>();
    if (services_.audio.get() == audio_) {
        const double volume = services_.audio->volume();
        services_.audio = std::make_unique<SilentAudio>();
        services_.audio->set_volume(volume);
    }
    services_.open_url = std::move(headless_open_url_);
    services_.headless = true;
}

bool GameWindow::fullscreen() const {
    return session_->fullscreen();
}

void GameWindow::toggle_fullscreen() {
    session_->toggle_fullscreen();
}

std::uint32_t GameWindow::window_id() const {
    return SDL_GetWindowID(session_->window);
}

std::unique_ptr<GameWindow> open_game_window(Services& services, const WindowOptions& options,
                                             std::string& error) {
    auto session = open_window_session(options, error);
    if (!session)
        return nullptr;
    return std::make_unique<GameWindow>(services, std::move(session));
}

}  // namespace veldra::platform
