#pragma once
// Dear ImGui's menus and developer windows on the game's logical screen. The stock SDL_Renderer
// backend resets the viewport to the whole window, which puts menus beside the letterboxed
// picture when the window's shape differs from 16:9; this draws them in logical pixels instead.

struct SDL_Renderer;
struct ImDrawData;

namespace veldra::platform {

void render_imgui_draw_data(SDL_Renderer* renderer, const ImDrawData* data);

}  // namespace veldra::platform
