#pragma once
// Chooses what draws into the window: the GPU where there is one, else SDL's software renderer.
// A GL that rasterises on the CPU (a virtual display, a machine without a GPU) is slower than
// the software renderer at our kind of frame by a factor of three, so it counts as no GPU.

#include <SDL.h>

#include <string>

namespace veldra::platform {

// nullptr with the reason in `error` when nothing can draw into `window`. SDL_RENDER_DRIVER in
// the environment still decides when it is set.
SDL_Renderer* create_window_renderer(SDL_Window* window, bool vsync, std::string& error);

// Whether a GL_RENDERER string names a CPU rasteriser.
bool is_software_gl(const std::string& gl_renderer);

}  // namespace veldra::platform
