#pragma once
// The game's window. Opening it replaces the headless renderer, input, clock and audio of the
// program's services with ones that draw into the window, read its keyboard and mouse, keep real
// time and play sound; the frame loop then runs unchanged.

#include <cstdint>
#include <memory>
#include <string>

#include "platform/window_options.h"
#include "runtime/services.h"

namespace veldra::platform {

struct WindowSession;

// Owns the SDL window, its renderer and the Dear ImGui context (through a session the backends
// share). Destroy it before the Services it was opened into: it puts headless input, renderer
// and audio back into them, then shuts SDL down once the last backend is gone.
class GameWindow {
public:
    GameWindow(Services& services, std::shared_ptr<WindowSession> session);
    ~GameWindow();
    GameWindow(const GameWindow&) = delete;
    GameWindow& operator=(const GameWindow&) = delete;

    bool fullscreen() const;
    void toggle_fullscreen();
    // The SDL window id, for code that injects events into the window's queue.
    std::uint32_t window_id() const;

    // Events as a person's hand makes them, pushed into the window's own queue, so they pass
    // through the same input and menu code (automation, windowed tests). Positions are in
    // logical pixels.
    void inject_mouse_move(float x, float y);
    void inject_mouse_button(bool down, float x, float y);
    void inject_key(Key key, bool down, bool ctrl_held = false);
    void inject_text(const std::string& utf8);
    // From now on the window takes input only from the inject_ calls: a scripted window must not
    // lose a click, a typed text or a held key because another window on the same display took
    // the keyboard focus or moved the pointer, nor act on input a person at the screen makes.
    void take_only_injected_input();
    // What take_only_injected_input kept out so far, such as "3 pointer, 1 focus"; empty if
    // nothing.
    std::string ignored_input_summary() const;
    // Saves the next frame as it is shown, menus included, as a PNG at `path` (the log says
    // whether it worked).
    void request_screenshot(const std::string& path);
    // Why the last requested screenshot was not saved, once; empty when it was (or when no
    // frame has been shown since the request).
    std::string take_screenshot_error();

private:
    Services& services_;
    std::shared_ptr<WindowSession> session_;
    const Renderer* renderer_;
    const Input* input_;
    const Audio* audio_;
    std::function<void(const std::string&)> headless_open_url_;
};

// Opens the window and puts its renderer, input, clock and audio backends into `services`
// (services.headless = false). nullptr with a clear `error` when no window can open (no display,
// no usable font, a window already open): `services` is then untouched. A missing audio device
// is not an error: the game then plays silently, with one warning in the log.
std::unique_ptr<GameWindow> open_game_window(Services& services, const WindowOptions& options,
                                             std::string& error);

}  // namespace veldra::platform
