#include "platform/sdl_renderer.h"

#include <imgui.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <numbers>

#include "platform/imgui_drawing.h"
#include "platform/png_file.h"
#include "runtime/log.h"

namespace veldra::platform {

namespace {

constexpr int CIRCLE_TABLE_SIZE = 64;

// The rim of a unit circle, shared by every circle: small ones take every fourth point.
const std::array<SDL_FPoint, CIRCLE_TABLE_SIZE>& unit_circle() {
    static const auto table = [] {
        std::array<SDL_FPoint, CIRCLE_TABLE_SIZE> points{};
        for (int i = 0; i < CIRCLE_TABLE_SIZE; ++i) {
            const double a = 2 * std::numbers::pi * i / CIRCLE_TABLE_SIZE;
            points[static_cast<std::size_t>(i)] = {static_cast<float>(std::cos(a)),
                                                   static_cast<float>(std::sin(a))};
        }
        return points;
    }();
    return table;
}

}  // namespace

SdlRenderer::SdlRenderer(std::shared_ptr<WindowSession> session)
    : session_(std::move(session)), sdl_(session_->renderer) {}

SdlRenderer::~SdlRenderer() {
    for (const Texture& texture : textures_)
        SDL_DestroyTexture(texture.sdl);
}

TextureId SdlRenderer::create_texture(int width, int height,
                                      std::span<const std::uint32_t> pixels) {
    if (width <= 0 || height <= 0 ||
        pixels.size() != static_cast<std::size_t>(width) * static_cast<std::size_t>(height)) {
        log_warning("A texture of " + std::to_string(width) + " x " + std::to_string(height) +
                    " pixels was given " + std::to_string(pixels.size()) +
                    " pixels; it is not made.");
        return 0;
    }
    // 0xRRGGBBAA as a 32-bit value is SDL's packed RGBA8888.
    SDL_Texture* texture =
        SDL_CreateTexture(sdl_, SDL_PIXELFORMAT_RGBA8888, SDL_TEXTUREACCESS_STATIC, width, height);
    if (!texture || SDL_UpdateTexture(texture, nullptr, pixels.data(), width * 4) != 0) {
        log_warning("Cannot make a texture of " + std::to_string(width) + " x " +
                    std::to_string(height) + " pixels: " + SDL_GetError());
        if (texture)
            SDL_DestroyTexture(texture);
        return 0;
    }
    // Blending a full-screen terrain costs the software renderer more than everything else in
    // the frame; an opaque texture is copied instead. Tinting with alpha still needs blending,
    // so those textures switch per draw (draw_texture).
    const bool opaque = std::all_of(pixels.begin(), pixels.end(),
                                    [](std::uint32_t p) { return (p & 0xffu) == 0xffu; });
    SDL_SetTextureBlendMode(texture, opaque ? SDL_BLENDMODE_NONE : SDL_BLENDMODE_BLEND);
    textures_.push_back({texture, opaque});
    return static_cast<TextureId>(textures_.size());
}

void SdlRenderer::set_colour(Rgba c) {
    SDL_SetRenderDrawColor(sdl_, c.r, c.g, c.b, c.a);
}

void SdlRenderer::draw_texture(const DrawCommand& c) {
    if (c.texture == 0 || c.texture > textures_.size())
        return;
    const Texture& t = textures_[c.texture - 1];
    SDL_Texture* texture = t.sdl;
    SDL_SetTextureColorMod(texture, c.color.r, c.color.g, c.color.b);
    SDL_SetTextureAlphaMod(texture, c.color.a);
    if (t.opaque)
        SDL_SetTextureBlendMode(texture,
                                c.color.a == 255 ? SDL_BLENDMODE_NONE : SDL_BLENDMODE_BLEND);
    const SDL_FRect target{c.x, c.y, c.w, c.h};
    // The plain copy is the software renderer's fast path; rotation and flipping are not.
    if (c.angle == 0 && !c.flip_x)
        SDL_RenderCopyF(sdl_, texture, nullptr, &target);
    else
        SDL_RenderCopyExF(sdl_, texture, nullptr, &target, -c.angle, nullptr,
                          c.flip_x ? SDL_FLIP_HORIZONTAL : SDL_FLIP_NONE);
}

void SdlRenderer::draw_circle(const DrawCommand& c) {
    const float radius = c.w;
    if (radius <= 0)
        return;
    const int step = radius < 12 ? 4 : radius < 48 ? 2 : 1;
    const SDL_Color colour{c.color.r, c.color.g, c.color.b, c.color.a};
    circle_vertices_.clear();
    circle_indices_.clear();
    circle_vertices_.push_back({{c.x, c.y}, colour, {0, 0}});
    for (int i = 0; i < CIRCLE_TABLE_SIZE; i += step) {
        const SDL_FPoint p = unit_circle()[static_cast<std::size_t>(i)];
        circle_vertices_.push_back({{c.x + radius * p.x, c.y + radius * p.y}, colour, {0, 0}});
    }
    const int rim = static_cast<int>(circle_vertices_.size()) - 1;
    for (int i = 0; i < rim; ++i) {
        circle_indices_.push_back(0);
        circle_indices_.push_back(1 + i);
        circle_indices_.push_back(1 + (i + 1) % rim);
    }
    SDL_RenderGeometry(sdl_, nullptr, circle_vertices_.data(),
                       static_cast<int>(circle_vertices_.size()), circle_indices_.data(),
                       static_cast<int>(circle_indices_.size()));
}

void SdlRenderer::lay_out_text(TextLayout& layout, std::string_view text,
                               const TextBox& box) const {
    // The faces' families are registered in the session's context.
    ImGui::SetCurrentContext(session_->imgui);
    layout.lay_out(font_for_size(*session_->font_small, *session_->font_large, box.size), text,
                   box);
}

void SdlRenderer::draw_text(const DrawCommand& c) {
    if (c.text.empty() || c.h <= 0)
        return;
    lay_out_text(text_layout_, c.text, {c.h, c.w, c.color, c.align});
    text_mesh_.build(text_layout_, c.x, c.y);
    if (text_mesh_.indices().empty())
        return;
    SDL_RenderGeometry(sdl_, session_->font_texture, text_mesh_.vertices().data(),
                       static_cast<int>(text_mesh_.vertices().size()), text_mesh_.indices().data(),
                       static_cast<int>(text_mesh_.indices().size()));
}

void SdlRenderer::draw_frame(const std::vector<DrawCommand>& commands, bool with_menus) {
    SDL_SetRenderDrawColor(sdl_, 0, 0, 0, 255);
    SDL_RenderClear(sdl_);
    for (const DrawCommand& c : commands) {
        switch (c.kind) {
            case DrawCommand::Kind::rect: {
                set_colour(c.color);
                const SDL_FRect r{c.x, c.y, c.w, c.h};
                SDL_RenderFillRectF(sdl_, &r);
                break;
            }
            case DrawCommand::Kind::rect_outline: {
                set_colour(c.color);
                const SDL_FRect r{c.x, c.y, c.w, c.h};
                SDL_RenderDrawRectF(sdl_, &r);
                break;
            }
            case DrawCommand::Kind::line:
                set_colour(c.color);
                SDL_RenderDrawLineF(sdl_, c.x, c.y, c.x2, c.y2);
                break;
            case DrawCommand::Kind::circle:
                draw_circle(c);
                break;
            case DrawCommand::Kind::texture:
                draw_texture(c);
                break;
            case DrawCommand::Kind::text:
                draw_text(c);
                break;
        }
    }
    if (with_menus)
        render_imgui_draw_data(sdl_, ImGui::GetDrawData());
}

void SdlRenderer::present() {
    ImGui::SetCurrentContext(session_->imgui);
    const bool with_menus = session_->ui_frame.close() != nullptr;
    draw_frame(draw_list_.commands(), with_menus);
    SDL_RenderPresent(sdl_);
    // Assigning into the kept vector reuses its elements' storage: no allocation once warm.
    last_frame_ = draw_list_.commands();
    last_frame_had_menus_ = with_menus;
    has_frame_ = true;
    draw_list_.clear();
    if (!session_->pending_screenshot.empty())
        save_requested_screenshot();
}

void SdlRenderer::save_requested_screenshot() {
    const std::string path = std::move(session_->pending_screenshot);
    session_->pending_screenshot.clear();
    std::string error;
    if (save_screenshot(path, error)) {
        log("Screenshot saved to " + path);
        session_->screenshot_error.clear();
    } else {
        log_warning("The screenshot was not saved: " + error);
        session_->screenshot_error = error;
    }
}

TextSize SdlRenderer::measure_text_box(std::string_view text, float size, float width) const {
    if (size <= 0)
        return {};
    lay_out_text(measure_layout_, text, {size, width, {}, TextAlign::left});
    return measure_layout_.size();
}

bool SdlRenderer::save_screenshot(const std::string& path, std::string& error) {
    if (!has_frame_) {
        error = "no frame has been shown yet";
        return false;
    }
    ImGui::SetCurrentContext(session_->imgui);
    draw_frame(last_frame_, last_frame_had_menus_);
    int width = 0;
    int height = 0;
    SDL_GetRendererOutputSize(sdl_, &width, &height);
    if (width <= 0 || height <= 0) {
        error = "the window has no area to capture (minimised?)";
        return false;
    }
    screenshot_pixels_.resize(static_cast<std::size_t>(width) * static_cast<std::size_t>(height) *
                              4);
    // Reading is limited to the viewport, which is the letterboxed picture; the whole window,
    // black bars included, is what the player sees.
    SDL_RenderSetLogicalSize(sdl_, 0, 0);
    const int read = SDL_RenderReadPixels(sdl_, nullptr, SDL_PIXELFORMAT_RGBA32,
                                          screenshot_pixels_.data(), width * 4);
    SDL_RenderSetLogicalSize(sdl_, LOGICAL_WIDTH, LOGICAL_HEIGHT);
    if (read != 0) {
        error = std::string("cannot read the window's pixels: ") + SDL_GetError();
        return false;
    }
    for (std::size_t i = 3; i < screenshot_pixels_.size(); i += 4)
        screenshot_pixels_[i] = 255;
    return write_png_file(path, width, height, screenshot_pixels_, error);
}

}  // namespace veldra::platform
