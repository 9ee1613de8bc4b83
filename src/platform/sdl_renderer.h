#pragma once
// The window's Renderer: each present() draws the frame's list in order on the 1600 x 900
// logical screen (scaled and letterboxed by SDL), then Dear ImGui's windows on top.

#include <SDL.h>

#include <cstdint>
#include <memory>
#include <vector>

#include "platform/scaled_texture_cache.h"
#include "platform/text_mesh.h"
#include "platform/window_session.h"
#include "runtime/renderer.h"
#include "ui/text_layout.h"

namespace veldra::platform {

class SdlRenderer final : public Renderer {
public:
    explicit SdlRenderer(std::shared_ptr<WindowSession> session);
    ~SdlRenderer() override;
    SdlRenderer(const SdlRenderer&) = delete;
    SdlRenderer& operator=(const SdlRenderer&) = delete;

    TextureId create_texture(int width, int height, std::span<const std::uint32_t> pixels) override;
    void present() override;
    TextSize measure_text_box(std::string_view text, float size, float width) const override;
    // Draws the last frame again at the window's resolution and saves that, so keeping a copy
    // of every frame costs nothing while nobody asks for one.
    bool save_screenshot(const std::string& path, std::string& error) override;

private:
    void draw_frame(const std::vector<DrawCommand>& commands, bool with_menus);
    void draw_texture(const DrawCommand& command);
    void draw_circle(const DrawCommand& command);
    void draw_text(const DrawCommand& command);
    void set_colour(Rgba colour);
    // Draws the line at `first` and the lines after it that go on from its end in its colour;
    // returns the index of the last one drawn.
    std::size_t draw_connected_lines(const std::vector<DrawCommand>& commands, std::size_t first);
    // Lays `text` out in the atlas face for `size`, as drawn and as measured.
    void lay_out_text(TextLayout& layout, std::string_view text, const TextBox& box) const;
    void save_requested_screenshot();

    std::shared_ptr<WindowSession> session_;
    SDL_Renderer* sdl_;
    struct Texture {
        SDL_Texture* sdl;
        bool opaque;  // every pixel's alpha is 255
    };
    std::vector<Texture> textures_;  // id - 1
    ScaledTextureCache scaled_copies_;
    std::vector<DrawCommand> last_frame_;
    bool has_frame_ = false;
    bool last_frame_had_menus_ = false;
    TextLayout text_layout_;
    // Measuring is const for the views that ask; its scratch layout is not part of the state.
    mutable TextLayout measure_layout_;
    TextMesh text_mesh_;
    std::vector<SDL_FRect> circle_rows_;
    std::vector<SDL_FPoint> line_points_;
    std::vector<std::uint8_t> screenshot_pixels_;
};

}  // namespace veldra::platform
