#include "platform/window_renderer.h"

#include <cstring>
#include <filesystem>
#include <system_error>

namespace veldra::platform {

namespace {

constexpr unsigned GL_RENDERER_NAME = 0x1F01;  // GL_RENDERER

std::string gl_renderer_name() {
    using GetString = const unsigned char* (*)(unsigned);
    auto get_string = reinterpret_cast<GetString>(SDL_GL_GetProcAddress("glGetString"));
    const unsigned char* name = get_string ? get_string(GL_RENDERER_NAME) : nullptr;
    return name ? reinterpret_cast<const char*>(name) : "";
}

bool uses_gl(SDL_Renderer* renderer) {
    SDL_RendererInfo info{};
    return SDL_GetRendererInfo(renderer, &info) == 0 && info.name &&
           std::strncmp(info.name, "opengl", 6) == 0;
}

// Loading GL only to learn that it runs on the CPU costs a fifth of a second of start-up; a
// machine without a graphics device node has no GPU to find.
bool may_have_gpu() {
#ifdef __linux__
    std::error_code error;
    for (const auto& entry : std::filesystem::directory_iterator("/dev/dri", error)) {
        const std::string name = entry.path().filename().string();
        if (name.rfind("card", 0) == 0 || name.rfind("renderD", 0) == 0)
            return true;
    }
    return false;
#else
    return true;
#endif
}

}  // namespace

bool is_software_gl(const std::string& gl_renderer) {
    for (const char* cpu : {"llvmpipe", "softpipe", "Software Rasterizer", "SWR"})
        if (gl_renderer.find(cpu) != std::string::npos)
            return true;
    return false;
}

SDL_Renderer* create_window_renderer(SDL_Window* window, bool vsync, std::string& error) {
    // Without this SDL shows the software renderer's picture through GL again, which costs
    // more than drawing it. Only the software renderer reads it; the environment may override.
    SDL_SetHintWithPriority(SDL_HINT_FRAMEBUFFER_ACCELERATION, "0", SDL_HINT_DEFAULT);
    const Uint32 flags = SDL_RENDERER_ACCELERATED | (vsync ? SDL_RENDERER_PRESENTVSYNC : 0);
    const bool driver_chosen = SDL_GetHint(SDL_HINT_RENDER_DRIVER) != nullptr;
    SDL_Renderer* renderer =
        driver_chosen || may_have_gpu() ? SDL_CreateRenderer(window, -1, flags) : nullptr;
    if (renderer && !driver_chosen && uses_gl(renderer) && is_software_gl(gl_renderer_name())) {
        SDL_DestroyRenderer(renderer);
        renderer = nullptr;
    }
    if (!renderer)
        renderer = SDL_CreateRenderer(window, -1, SDL_RENDERER_SOFTWARE);
    if (!renderer)
        error = std::string("cannot draw into the window: ") + SDL_GetError();
    return renderer;
}

}  // namespace veldra::platform
