#include "platform/sdl_input.h"

#include <backends/imgui_impl_sdl.h>
#include <imgui.h>

#include <algorithm>
#include <filesystem>
#include <optional>

#include "platform/screenshot_name.h"
#include "runtime/log.h"
#include "runtime/renderer.h"
#include "runtime/utf8_path.h"

namespace veldra::platform {

namespace {

std::size_t index(Key key) {
    return static_cast<std::size_t>(key);
}

std::optional<MouseButton> button_for_sdl(Uint8 button) {
    switch (button) {
        case SDL_BUTTON_LEFT:
            return MouseButton::left;
        case SDL_BUTTON_RIGHT:
            return MouseButton::right;
        case SDL_BUTTON_MIDDLE:
            return MouseButton::middle;
        default:
            return std::nullopt;
    }
}

}  // namespace

std::optional<Key> key_for_sdl_keycode(SDL_Keycode code) {
    switch (code) {
        case SDLK_UP:
            return Key::up;
        case SDLK_DOWN:
            return Key::down;
        case SDLK_LEFT:
            return Key::left;
        case SDLK_RIGHT:
            return Key::right;
        case SDLK_w:
            return Key::w;
        case SDLK_a:
            return Key::a;
        case SDLK_s:
            return Key::s;
        case SDLK_d:
            return Key::d;
        case SDLK_SPACE:
            return Key::space;
        case SDLK_RETURN:
        case SDLK_KP_ENTER:
            return Key::enter;
        case SDLK_ESCAPE:
            return Key::escape;
        case SDLK_TAB:
            return Key::tab;
        case SDLK_BACKSPACE:
            return Key::backspace;
        case SDLK_F11:
            return Key::f11;
        case SDLK_F12:
            return Key::f12;
        // "+" shares its key with "=" on most layouts; the player should not need shift to zoom.
        case SDLK_PLUS:
        case SDLK_EQUALS:
        case SDLK_KP_PLUS:
            return Key::plus;
        case SDLK_MINUS:
        case SDLK_KP_MINUS:
            return Key::minus;
        case SDLK_p:
            return Key::p;
        case SDLK_LCTRL:
        case SDLK_RCTRL:
            return Key::ctrl;
        default:
            return std::nullopt;
    }
}

SDL_Keycode sdl_keycode_for_key(Key key) {
    // The table is the reverse of key_for_sdl_keycode, so the two cannot drift apart.
    static const SDL_Keycode candidates[] = {
        SDLK_UP,  SDLK_DOWN,  SDLK_LEFT,   SDLK_RIGHT,  SDLK_w,    SDLK_a,         SDLK_s,
        SDLK_d,   SDLK_SPACE, SDLK_RETURN, SDLK_ESCAPE, SDLK_TAB,  SDLK_BACKSPACE, SDLK_F11,
        SDLK_F12, SDLK_PLUS,  SDLK_MINUS,  SDLK_p,      SDLK_LCTRL};
    for (SDL_Keycode code : candidates)
        if (key_for_sdl_keycode(code) == key)
            return code;
    return SDLK_UNKNOWN;
}

SdlInput::SdlInput(std::shared_ptr<WindowSession> session) : session_(std::move(session)) {
    frame_.mouse_x = LOGICAL_WIDTH / 2.0;
    frame_.mouse_y = LOGICAL_HEIGHT / 2.0;
}

void SdlInput::release_everything() {
    frame_.keys_released |= frame_.keys_down;
    frame_.keys_down.reset();
    frame_.buttons_released |= frame_.buttons_down;
    frame_.buttons_down.reset();
}

void SdlInput::handle(const SDL_Event& e) {
    const ImGuiIO& io = ImGui::GetIO();
    switch (e.type) {
        case SDL_QUIT:
            frame_.quit_requested = true;
            break;
        case SDL_WINDOWEVENT:
            if (e.window.event == SDL_WINDOWEVENT_CLOSE)
                frame_.quit_requested = true;
            else if (e.window.event == SDL_WINDOWEVENT_FOCUS_LOST)
                release_everything();  // the key-up goes to another window; nothing may stay held
            else if (e.window.event == SDL_WINDOWEVENT_LEAVE)
                mouse_in_window_ = false;
            break;
        case SDL_KEYDOWN:
        case SDL_KEYUP: {
            const auto key = key_for_sdl_keycode(e.key.keysym.sym);
            if (!key)
                break;
            if (e.type == SDL_KEYUP) {
                if (frame_.keys_down[index(*key)])
                    frame_.keys_released.set(index(*key));
                frame_.keys_down.reset(index(*key));
            } else if (!e.key.repeat && (!io.WantCaptureKeyboard || *key == Key::f11 ||
                                         *key == Key::f12 || *key == Key::ctrl ||
                                         (*key == Key::d && (e.key.keysym.mod & KMOD_CTRL) != 0))) {
                // Keys that move through a menu or type into it must not also steer the player;
                // fullscreen, screenshots and Ctrl+D (the developer tools, often toggled while
                // their terminal has the keyboard) work everywhere.
                frame_.keys_pressed.set(index(*key));
                frame_.keys_down.set(index(*key));
            }
            break;
        }
        case SDL_MOUSEMOTION:
            // SDL has already mapped window pixels to the logical screen; the bars map outside it.
            frame_.mouse_x = std::clamp<double>(e.motion.x, 0, LOGICAL_WIDTH);
            frame_.mouse_y = std::clamp<double>(e.motion.y, 0, LOGICAL_HEIGHT);
            mouse_in_window_ = true;
            break;
        case SDL_MOUSEBUTTONDOWN:
        case SDL_MOUSEBUTTONUP: {
            const auto button = button_for_sdl(e.button.button);
            if (!button)
                break;
            const auto b = static_cast<std::size_t>(*button);
            frame_.mouse_x = std::clamp<double>(e.button.x, 0, LOGICAL_WIDTH);
            frame_.mouse_y = std::clamp<double>(e.button.y, 0, LOGICAL_HEIGHT);
            if (e.type == SDL_MOUSEBUTTONUP) {
                if (frame_.buttons_down[b])
                    frame_.buttons_released.set(b);
                frame_.buttons_down.reset(b);
            } else if (!io.WantCaptureMouse) {
                // A click on a menu is the menu's, not the world's.
                frame_.buttons_pressed.set(b);
                frame_.buttons_down.set(b);
            }
            break;
        }
        case SDL_MOUSEWHEEL:
            if (!io.WantCaptureMouse)
                frame_.wheel += (e.wheel.direction == SDL_MOUSEWHEEL_FLIPPED ? -1.0 : 1.0) *
                                static_cast<double>(e.wheel.preciseY);
            break;
        default:
            break;
    }
}

void SdlInput::request_screenshot() {
    const std::filesystem::path folder = session_->options.screenshot_dir.empty()
                                             ? std::filesystem::path(".")
                                             : utf8_path(session_->options.screenshot_dir);
    std::error_code ec;
    std::filesystem::create_directories(folder, ec);
    if (ec) {
        log_warning("The screenshot was not saved: cannot make the folder \"" + path_utf8(folder) +
                    "\": " + ec.message());
        return;
    }
    session_->pending_screenshot = path_utf8(folder / screenshot_file_name_now());
}

void SdlInput::start_menu_frame() {
    session_->ui_frame.open(ImGui_ImplSDL2_NewFrame,
                            mouse_in_window_
                                ? std::optional<ImVec2>(ImVec2(static_cast<float>(frame_.mouse_x),
                                                               static_cast<float>(frame_.mouse_y)))
                                : std::nullopt);
}

void SdlInput::poll() {
    ImGui::SetCurrentContext(session_->imgui);
    frame_.keys_pressed.reset();
    frame_.keys_released.reset();
    frame_.buttons_pressed.reset();
    frame_.buttons_released.reset();
    frame_.wheel = 0;
    frame_.quit_requested = false;
    SDL_Event event;
    while (SDL_PollEvent(&event)) {
        ImGui_ImplSDL2_ProcessEvent(&event);
        handle(event);
    }
    if (frame_.pressed(Key::f11))
        session_->toggle_fullscreen();
    if (frame_.pressed(Key::f12))
        request_screenshot();
    start_menu_frame();
}

}  // namespace veldra::platform
