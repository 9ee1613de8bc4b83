#pragma once
// The window's Input: each poll drains SDL's event queue into this frame's InputFrame, feeds the
// same events to Dear ImGui and starts its frame, so code between poll and present can build
// ImGui windows. F11 toggles fullscreen and F12 saves a screenshot after the next present; both
// still reach the game as key presses.

#include <SDL.h>

#include <memory>
#include <optional>

#include "platform/window_session.h"
#include "runtime/input.h"

namespace veldra::platform {

// The game's key for an SDL key code; none for keys the game does not use.
std::optional<Key> key_for_sdl_keycode(SDL_Keycode code);
// The first SDL key that means `key` (its main key, not a keypad twin).
SDL_Keycode sdl_keycode_for_key(Key key);

class SdlInput final : public Input {
public:
    explicit SdlInput(std::shared_ptr<WindowSession> session);
    void poll() override;

private:
    void handle(const SDL_Event& event);
    void release_everything();
    void start_menu_frame();
    void request_screenshot();

    std::shared_ptr<WindowSession> session_;
    bool mouse_in_window_ = false;
};

}  // namespace veldra::platform
