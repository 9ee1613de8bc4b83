// Events pushed into the window's queue as if a person had made them.
#include <SDL.h>

#include <algorithm>
#include <cstring>

#include "platform/game_window.h"
#include "platform/sdl_input.h"
#include "platform/window_session.h"

namespace veldra::platform {

namespace {

// SDL maps window pixels to the logical screen on the way in; pushed events take the same way,
// so they start in window pixels.
SDL_Point window_point(SDL_Renderer* renderer, float x, float y) {
    int wx = 0;
    int wy = 0;
    SDL_RenderLogicalToWindow(renderer, x, y, &wx, &wy);
    return {wx, wy};
}

int drop_focus_changes(void*, SDL_Event* e) {
    if (e->type != SDL_WINDOWEVENT)
        return 1;
    switch (e->window.event) {
        case SDL_WINDOWEVENT_FOCUS_LOST:
        case SDL_WINDOWEVENT_FOCUS_GAINED:
        case SDL_WINDOWEVENT_LEAVE:
        case SDL_WINDOWEVENT_ENTER:
            return 0;
        default:
            return 1;
    }
}

}  // namespace

void GameWindow::ignore_focus_changes() {
    SDL_SetEventFilter(drop_focus_changes, nullptr);
}

void GameWindow::inject_mouse_move(float x, float y) {
    const SDL_Point p = window_point(session_->renderer, x, y);
    SDL_WarpMouseInWindow(session_->window, p.x, p.y);
    SDL_Event e{};
    e.type = SDL_MOUSEMOTION;
    e.motion.windowID = window_id();
    e.motion.x = p.x;
    e.motion.y = p.y;
    SDL_PushEvent(&e);
}

void GameWindow::inject_mouse_button(bool down, float x, float y) {
    const SDL_Point p = window_point(session_->renderer, x, y);
    SDL_Event e{};
    e.type = down ? SDL_MOUSEBUTTONDOWN : SDL_MOUSEBUTTONUP;
    e.button.windowID = window_id();
    e.button.button = SDL_BUTTON_LEFT;
    e.button.state = down ? SDL_PRESSED : SDL_RELEASED;
    e.button.clicks = 1;
    e.button.x = p.x;
    e.button.y = p.y;
    SDL_PushEvent(&e);
}

void GameWindow::inject_key(Key key, bool down) {
    SDL_Event e{};
    e.type = down ? SDL_KEYDOWN : SDL_KEYUP;
    e.key.windowID = window_id();
    e.key.state = down ? SDL_PRESSED : SDL_RELEASED;
    e.key.keysym.sym = sdl_keycode_for_key(key);
    e.key.keysym.scancode = SDL_GetScancodeFromKey(e.key.keysym.sym);
    SDL_PushEvent(&e);
}

void GameWindow::request_screenshot(const std::string& path) {
    session_->pending_screenshot = path;
}

void GameWindow::inject_text(const std::string& utf8) {
    // One event carries at most 31 bytes; longer text goes in pieces, never inside a character.
    std::size_t at = 0;
    while (at < utf8.size()) {
        std::size_t n = std::min<std::size_t>(utf8.size() - at, SDL_TEXTINPUTEVENT_TEXT_SIZE - 1);
        while (at + n < utf8.size() && n > 0 &&
               (static_cast<unsigned char>(utf8[at + n]) & 0xC0) == 0x80)
            --n;
        SDL_Event e{};
        e.type = SDL_TEXTINPUT;
        e.text.windowID = window_id();
        std::memcpy(e.text.text, utf8.data() + at, n);
        SDL_PushEvent(&e);
        at += n;
    }
}

}  // namespace veldra::platform
