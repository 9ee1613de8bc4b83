#include "platform/sdl_renderer.h"

#include <imgui.h>

#include <algorithm>
#include <cmath>

#include "platform/imgui_drawing.h"
#include "platform/png_file.h"
#include "runtime/log.h"

namespace veldra::platform {

SdlRenderer::SdlRenderer(std::shared_ptr<WindowSession> session)
    : session_(std::move(session)), sdl_(session_->renderer), scaled_copies_(sdl_) {}

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
    // The software renderer blends every pixel of a blended fill, even an opaque one, and
    // opaque fills were half of a plain frame; an opaque colour gives the same pixels copied.
    SDL_SetRenderDrawBlendMode(sdl_, c.a == 255 ? SDL_BLENDMODE_NONE : SDL_BLENDMODE_BLEND);
}

void SdlRenderer::draw_texture(const DrawCommand& c) {
    if (c.texture == 0 || c.texture > textures_.size())
        return;
    const Texture& t = textures_[c.texture - 1];
    // The plain copy is the software renderer's fast path, fastest when nothing is scaled;
    // rotation and flipping take the slow path anyway. A window larger or smaller than the
    // logical screen scales every copy once more: there a copy would be scaled twice, softer.
    const bool plain = c.angle == 0 && !c.flip_x;
    float scale_x = 1;
    float scale_y = 1;
    SDL_RenderGetScale(sdl_, &scale_x, &scale_y);
    SDL_Texture* texture =
        plain && scale_x == 1 && scale_y == 1
            ? scaled_copies_.at_size(c.texture, t.sdl, static_cast<int>(c.w), static_cast<int>(c.h))
            : t.sdl;
    SDL_SetTextureColorMod(texture, c.color.r, c.color.g, c.color.b);
    SDL_SetTextureAlphaMod(texture, c.color.a);
    SDL_SetTextureBlendMode(
        texture, t.opaque && c.color.a == 255 ? SDL_BLENDMODE_NONE : SDL_BLENDMODE_BLEND);
    const SDL_FRect target{c.x, c.y, c.w, c.h};
    if (plain)
        SDL_RenderCopyF(sdl_, texture, nullptr, &target);
    else
        SDL_RenderCopyExF(sdl_, texture, nullptr, &target, -c.angle, nullptr,
                          c.flip_x ? SDL_FLIP_HORIZONTAL : SDL_FLIP_NONE);
}

void SdlRenderer::draw_circle(const DrawCommand& c) {
    const float radius = c.w;
    if (radius <= 0)
        return;
    // One row of pixels after another: the software renderer fills rows fast, while a fan of
    // triangles cost it a millisecond per large disc.
    circle_rows_.clear();
    const float top = std::floor(c.y - radius);
    const float bottom = std::ceil(c.y + radius);
    for (float row = top; row < bottom; ++row) {
        const float dy = row + 0.5f - c.y;
        const float squared = radius * radius - dy * dy;
        if (squared <= 0)
            continue;
        const float half = std::sqrt(squared);
        const float left = std::round(c.x - half);
        const float right = std::round(c.x + half);
        if (right > left)
            circle_rows_.push_back({left, row, right - left, 1});
    }
    set_colour(c.color);
    SDL_RenderFillRectsF(sdl_, circle_rows_.data(), static_cast<int>(circle_rows_.size()));
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
    for (std::size_t i = 0; i < commands.size(); ++i) {
        const DrawCommand& c = commands[i];
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
                i = draw_connected_lines(commands, i);
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
    // Blending is what everything else drawn on this renderer expects.
    SDL_SetRenderDrawBlendMode(sdl_, SDL_BLENDMODE_BLEND);
    if (with_menus)
        render_imgui_draw_data(sdl_, ImGui::GetDrawData());
}

std::size_t SdlRenderer::draw_connected_lines(const std::vector<DrawCommand>& commands,
                                              std::size_t first) {
    // A ring or a path is many short lines end to end; one call for all of them spares the
    // software renderer a command per segment.
    const DrawCommand& start = commands[first];
    line_points_.clear();
    line_points_.push_back({start.x, start.y});
    line_points_.push_back({start.x2, start.y2});
    std::size_t last = first;
    while (last + 1 < commands.size()) {
        const DrawCommand& next = commands[last + 1];
        if (next.kind != DrawCommand::Kind::line || next.color != start.color ||
            next.x != line_points_.back().x || next.y != line_points_.back().y)
            break;
        line_points_.push_back({next.x2, next.y2});
        ++last;
    }
    set_colour(start.color);
    SDL_RenderDrawLinesF(sdl_, line_points_.data(), static_cast<int>(line_points_.size()));
    return last;
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
    scaled_copies_.end_frame();
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
