#include "runtime/renderer.h"

#include <cmath>
#include <utility>

namespace veldra {

namespace {

DrawCommand command(DrawCommand::Kind kind, float x, float y, float w, float h, Rgba color) {
    DrawCommand c;
    c.kind = kind;
    c.x = x;
    c.y = y;
    c.w = w;
    c.h = h;
    c.color = color;
    return c;
}

}  // namespace

void DrawList::rect(float x, float y, float w, float h, Rgba color) {
    commands_.push_back(command(DrawCommand::Kind::rect, x, y, w, h, color));
}

void DrawList::rect_outline(float x, float y, float w, float h, Rgba color) {
    commands_.push_back(command(DrawCommand::Kind::rect_outline, x, y, w, h, color));
}

void DrawList::line(float x1, float y1, float x2, float y2, Rgba color) {
    DrawCommand& c = commands_.emplace_back(command(DrawCommand::Kind::line, x1, y1, 0, 0, color));
    c.x2 = x2;
    c.y2 = y2;
}

void DrawList::circle(float cx, float cy, float radius, Rgba color) {
    commands_.push_back(command(DrawCommand::Kind::circle, cx, cy, radius, radius, color));
}

void DrawList::texture(TextureId texture, float x, float y, float w, float h, Rgba tint,
                       float angle, bool flip_x) {
    DrawCommand& c = commands_.emplace_back(command(DrawCommand::Kind::texture, x, y, w, h, tint));
    c.texture = texture;
    c.angle = angle;
    c.flip_x = flip_x;
}

void DrawList::text(float x, float y, std::string text, Rgba color, float size) {
    text_box(x, y, 0, std::move(text), color, size);
}

void DrawList::text_box(float x, float y, float width, std::string text, Rgba color, float size,
                        TextAlign align) {
    DrawCommand& c =
        commands_.emplace_back(command(DrawCommand::Kind::text, x, y, width, size, color));
    c.text = std::move(text);
    c.align = align;
}

TextureId NullRenderer::create_texture(int, int, std::span<const std::uint32_t>) {
    return next_texture_++;
}

void NullRenderer::present() {
    last_frame = draw_list_.commands();
    draw_list_.clear();
    ++frames_presented;
}

TextSize NullRenderer::measure_text_box(std::string_view text, float size, float width) const {
    const float wide = static_cast<float>(text.size()) * size * 0.5f;
    if (width <= 0 || wide <= width)
        return {wide, size};
    return {width, size * std::ceil(wide / width)};
}

bool NullRenderer::save_screenshot(const std::string&, std::string& error) {
    error = "there is no window to take a screenshot of (headless run)";
    return false;
}

}  // namespace veldra
