#pragma once
// What the window's backends share: the SDL window and renderer, the Dear ImGui context and its
// fonts. The backends hold it by shared_ptr, so SDL shuts down only after the last of them.

#include <memory>
#include <string>

#include "platform/window_options.h"
#include "ui/ui_frame.h"

struct SDL_Window;
struct SDL_Renderer;
struct SDL_Texture;
struct ImGuiContext;
struct ImFont;

namespace veldra::platform {

struct WindowSession {
    WindowSession() = default;
    ~WindowSession();
    WindowSession(const WindowSession&) = delete;
    WindowSession& operator=(const WindowSession&) = delete;

    void toggle_fullscreen();
    bool fullscreen() const;

    WindowOptions options;
    SDL_Window* window = nullptr;
    SDL_Renderer* renderer = nullptr;
    ImGuiContext* imgui = nullptr;
    bool imgui_platform_ready = false;
    SDL_Texture* font_texture = nullptr;
    // The regular faces; their bold and oblique siblings are in their families (ui/text_fonts.h).
    ImFont* font_small = nullptr;  // body text, about 20 px
    ImFont* font_large = nullptr;  // titles, about 40 px
    // Opened by the input's poll, closed by the renderer's present.
    UiFrame ui_frame;
    // Where the next presented frame is to be saved (F12); empty: nowhere.
    std::string pending_screenshot;
    // Why the last requested screenshot was not saved; empty once it was, or once taken.
    std::string screenshot_error;
};

// SDL video, the window, an accelerated renderer (software when none), Dear ImGui and the font
// atlas. nullptr with the reason in `error` when any of them fails; SDL is then shut down again.
std::shared_ptr<WindowSession> open_window_session(const WindowOptions& options,
                                                   std::string& error);

}  // namespace veldra::platform
