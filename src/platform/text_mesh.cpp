#include "platform/text_mesh.h"

#include <imgui.h>
#include <imgui_internal.h>

#include <algorithm>

#include "platform/text_markup.h"

namespace veldra::platform {

namespace {

// Walks `text` once for both measuring and drawing: calls `glyph(g, pen_x, pen_y, colour)` for
// every drawn character, skipping markup, and returns the size in pixels.
template <class OnGlyph>
TextSize walk_text(const ImFont& font, std::string_view text, float size, Rgba base,
                   OnGlyph&& glyph) {
    const float scale = size / font.FontSize;
    Rgba colour = base;
    float pen_x = 0;
    float pen_y = 0;
    float widest = 0;
    const char* p = text.data();
    const char* end = p + text.size();
    while (p < end) {
        if (*p == '[') {
            if (std::size_t tag = read_text_tag({p, static_cast<std::size_t>(end - p)}, base, colour)) {
                p += tag;
                continue;
            }
        }
        if (*p == '\n') {
            widest = std::max(widest, pen_x);
            pen_x = 0;
            pen_y += size;
            ++p;
            continue;
        }
        unsigned int c = 0;
        p += std::max(1, ImTextCharFromUtf8(&c, p, end));
        if (c == 0 || c == '\r')
            continue;
        if (c > IM_UNICODE_CODEPOINT_MAX)
            c = IM_UNICODE_CODEPOINT_INVALID;
        const ImFontGlyph* g = font.FindGlyph(static_cast<ImWchar>(c));
        if (!g)
            continue;
        glyph(*g, pen_x, pen_y, scale, colour);
        pen_x += g->AdvanceX * scale;
    }
    widest = std::max(widest, pen_x);
    return {widest, text.empty() ? 0 : pen_y + size};
}

}  // namespace

const ImFont& font_for_size(const ImFont& small, const ImFont& large, float size) {
    // Scaling a font up blurs it sooner than scaling one down: switch below the midpoint.
    return size > 0.7f * large.FontSize ? large : small;
}

TextSize measure_markup_text(const ImFont& font, std::string_view text, float size) {
    return walk_text(font, text, size, Rgba{}, [](const ImFontGlyph&, float, float, float, Rgba) {});
}

void TextMesh::build(const ImFont& font, std::string_view text, float x, float y, float size,
                     Rgba colour) {
    vertices_.clear();
    indices_.clear();
    walk_text(font, text, size, colour,
              [&](const ImFontGlyph& g, float pen_x, float pen_y, float scale, Rgba c) {
                  if (!g.Visible || c.a == 0)
                      return;
                  const float x0 = x + pen_x + g.X0 * scale;
                  const float y0 = y + pen_y + g.Y0 * scale;
                  const float x1 = x + pen_x + g.X1 * scale;
                  const float y1 = y + pen_y + g.Y1 * scale;
                  const SDL_Color col{c.r, c.g, c.b, c.a};
                  const int first = static_cast<int>(vertices_.size());
                  vertices_.push_back({{x0, y0}, col, {g.U0, g.V0}});
                  vertices_.push_back({{x1, y0}, col, {g.U1, g.V0}});
                  vertices_.push_back({{x1, y1}, col, {g.U1, g.V1}});
                  vertices_.push_back({{x0, y1}, col, {g.U0, g.V1}});
                  for (int i : {0, 1, 2, 0, 2, 3})
                      indices_.push_back(first + i);
              });
}

}  // namespace veldra::platform
