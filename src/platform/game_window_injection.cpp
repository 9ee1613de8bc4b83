// Events pushed into the window's queue as if a person had made them.
#include <SDL.h>

#include <algorithm>
#include <array>
#include <cstring>
#include <string>
#include <utility>

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

// Set only while an inject_ call pushes its event: SDL runs the event filter inside
// SDL_PushEvent, so the filter can tell the script's events from the display's.
bool injecting = false;

void push_injected(SDL_Event& e) {
    injecting = true;
    SDL_PushEvent(&e);
    injecting = false;
}

enum class InputKind { none, keys, pointer, focus, count };

InputKind input_kind(const SDL_Event& e) {
    switch (e.type) {
        case SDL_KEYDOWN:
        case SDL_KEYUP:
        case SDL_TEXTINPUT:
        case SDL_TEXTEDITING:
            return InputKind::keys;
        case SDL_MOUSEMOTION:
        case SDL_MOUSEBUTTONDOWN:
        case SDL_MOUSEBUTTONUP:
        case SDL_MOUSEWHEEL:
        case SDL_FINGERDOWN:
        case SDL_FINGERUP:
        case SDL_FINGERMOTION:
            return InputKind::pointer;
        case SDL_WINDOWEVENT:
            // Focus and pointer crossings decide where the display sends keys; a focus loss
            // releases every held key and clears what the menus were typing.
            switch (e.window.event) {
                case SDL_WINDOWEVENT_FOCUS_LOST:
                case SDL_WINDOWEVENT_FOCUS_GAINED:
                case SDL_WINDOWEVENT_LEAVE:
                case SDL_WINDOWEVENT_ENTER:
                    return InputKind::focus;
                default:
                    return InputKind::none;
            }
        default:
            return InputKind::none;
    }
}

std::array<long, static_cast<std::size_t>(InputKind::count)> ignored{};

int only_injected_input(void*, SDL_Event* e) {
    const InputKind kind = input_kind(*e);
    if (injecting || kind == InputKind::none)
        return 1;
    ++ignored[static_cast<std::size_t>(kind)];
    return 0;
}

}  // namespace

void GameWindow::take_only_injected_input() {
    SDL_SetEventFilter(only_injected_input, nullptr);
}

std::string GameWindow::ignored_input_summary() const {
    std::string summary;
    const std::pair<InputKind, const char*> names[] = {{InputKind::keys, "keyboard"},
                                                       {InputKind::pointer, "pointer"},
                                                       {InputKind::focus, "focus"}};
    for (const auto& [kind, name] : names) {
        const long n = ignored[static_cast<std::size_t>(kind)];
        if (n > 0)
            summary += (summary.empty() ? "" : ", ") + std::to_string(n) + " " + name;
    }
    return summary;
}

void GameWindow::inject_mouse_move(float x, float y) {
    // The display's pointer stays where it is: moving it would move it for every window there.
    const SDL_Point p = window_point(session_->renderer, x, y);
    SDL_Event e{};
    e.type = SDL_MOUSEMOTION;
    e.motion.windowID = window_id();
    e.motion.x = p.x;
    e.motion.y = p.y;
    push_injected(e);
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
    push_injected(e);
}

void GameWindow::inject_key(Key key, bool down, bool ctrl_held) {
    SDL_Event e{};
    if (ctrl_held)
        e.key.keysym.mod = KMOD_LCTRL;
    e.type = down ? SDL_KEYDOWN : SDL_KEYUP;
    e.key.windowID = window_id();
    e.key.state = down ? SDL_PRESSED : SDL_RELEASED;
    e.key.keysym.sym = sdl_keycode_for_key(key);
    e.key.keysym.scancode = SDL_GetScancodeFromKey(e.key.keysym.sym);
    push_injected(e);
}

void GameWindow::request_screenshot(const std::string& path) {
    session_->pending_screenshot = path;
    session_->screenshot_error.clear();
}

std::string GameWindow::take_screenshot_error() {
    return std::exchange(session_->screenshot_error, std::string());
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
        push_injected(e);
        at += n;
    }
}

}  // namespace veldra::platform
