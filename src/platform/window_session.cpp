#include "platform/window_session.h"

#include <SDL.h>
#include <backends/imgui_impl_sdl.h>
#include <imgui.h>

#include "platform/font_atlas.h"
#include "platform/window_renderer.h"
#include "runtime/log.h"
#include "runtime/paths.h"
#include "runtime/renderer.h"

namespace veldra::platform {

namespace {

// SDL and Dear ImGui keep process-wide state; a second window would share and then tear it down.
bool g_window_open = false;

std::string default_font_folder() {
    return make_included_file_filename("fonts");
}

}  // namespace

WindowSession::~WindowSession() {
    if (imgui) {
        ImGui::SetCurrentContext(imgui);
        if (imgui_platform_ready)
            ImGui_ImplSDL2_Shutdown();
        ImGui::DestroyContext(imgui);
    }
    if (font_texture)
        SDL_DestroyTexture(font_texture);
    if (renderer)
        SDL_DestroyRenderer(renderer);
    if (window)
        SDL_DestroyWindow(window);
    SDL_Quit();
    g_window_open = false;
}

bool WindowSession::fullscreen() const {
    return (SDL_GetWindowFlags(window) & SDL_WINDOW_FULLSCREEN_DESKTOP) != 0;
}

void WindowSession::toggle_fullscreen() {
    if (SDL_SetWindowFullscreen(window, fullscreen() ? 0 : SDL_WINDOW_FULLSCREEN_DESKTOP) != 0)
        log_warning(std::string("Cannot switch fullscreen: ") + SDL_GetError());
}

std::shared_ptr<WindowSession> open_window_session(const WindowOptions& options,
                                                   std::string& error) {
    if (g_window_open) {
        error = "a game window is already open";
        return nullptr;
    }
    if (options.width <= 0 || options.height <= 0) {
        error = "the window size " + std::to_string(options.width) + " x " +
                std::to_string(options.height) + " is not positive";
        return nullptr;
    }
    // Without a display SDL may still "open" a window on a driver nobody can see; a participant
    // would stare at nothing. Such a driver counts only when asked for by name. A display that
    // is there but busy (a virtual one serving several programs at once) can refuse a
    // connection for a moment, so the display is tried a few times before giving up.
    std::string video;
    for (int attempt = 0;; ++attempt) {
        if (SDL_Init(SDL_INIT_VIDEO | SDL_INIT_EVENTS) != 0) {
            error = std::string("cannot open a window (is there a display?): ") + SDL_GetError();
            SDL_Quit();
            return nullptr;
        }
        const char* driver = SDL_GetCurrentVideoDriver();
        video = driver ? driver : "";
        const bool invisible = video == "offscreen" || video == "dummy" || video == "evdev";
        if (!invisible || SDL_getenv("SDL_VIDEODRIVER"))
            break;
        SDL_Quit();
        if (attempt == 2) {
            error = "there is no display to show a window on (only SDL's \"" + video +
                    "\" video driver works here)";
            return nullptr;
        }
        SDL_Delay(100);
    }
    g_window_open = true;
    // From here on the session's destructor undoes whatever was made.
    auto session = std::make_shared<WindowSession>();
    session->options = options;
    SDL_SetHint(SDL_HINT_RENDER_SCALE_QUALITY, "linear");
    Uint32 flags = SDL_WINDOW_RESIZABLE | SDL_WINDOW_ALLOW_HIGHDPI;
    if (options.fullscreen)
        flags |= SDL_WINDOW_FULLSCREEN_DESKTOP;
    session->window = SDL_CreateWindow("Veldra", SDL_WINDOWPOS_CENTERED, SDL_WINDOWPOS_CENTERED,
                                       options.width, options.height, flags);
    if (!session->window) {
        error = std::string("cannot open a window: ") + SDL_GetError();
        return nullptr;
    }
    session->renderer = create_window_renderer(session->window, options.vsync, error);
    if (!session->renderer)
        return nullptr;
    SDL_RenderSetLogicalSize(session->renderer, LOGICAL_WIDTH, LOGICAL_HEIGHT);
    SDL_SetRenderDrawBlendMode(session->renderer, SDL_BLENDMODE_BLEND);
    // The game draws its own crosshair.
    SDL_ShowCursor(SDL_DISABLE);

    session->imgui = ImGui::CreateContext();
    ImGuiIO& io = ImGui::GetIO();
    io.IniFilename = nullptr;  // window layout is not remembered between runs
    // Otherwise the platform backend shows the system cursor again every frame.
    io.ConfigFlags |= ImGuiConfigFlags_NoMouseCursorChange;
    // Menus work from the keyboard alone: arrows move, Space and Enter press, Escape goes back.
    io.ConfigFlags |= ImGuiConfigFlags_NavEnableKeyboard;
    io.BackendFlags |= ImGuiBackendFlags_RendererHasVtxOffset;
    ImGui::StyleColorsDark();
    session->imgui_platform_ready = ImGui_ImplSDL2_InitForSDLRenderer(session->window);
    if (!session->imgui_platform_ready) {
        error = "cannot connect the menus to the window";
        return nullptr;
    }
    const std::string fonts =
        options.font_folder.empty() ? default_font_folder() : options.font_folder;
    if (!load_font_atlas(*session, fonts, error))
        return nullptr;

    SDL_RendererInfo info{};
    SDL_GetRendererInfo(session->renderer, &info);
    log(std::string("Window open on the ") + video + " video driver, drawing with the " +
        (info.name ? info.name : "unknown") + " renderer.");
    return session;
}

}  // namespace veldra::platform
