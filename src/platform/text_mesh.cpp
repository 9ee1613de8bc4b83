#include "platform/text_mesh.h"

#include <imgui.h>

#include <string>

#include "ui/text_layout.h"

namespace veldra::platform {

const ImFont& font_for_size(const ImFont& small, const ImFont& large, float size) {
    // Scaling a font up blurs it sooner than scaling one down: switch below the midpoint.
    return size > 0.7f * large.FontSize ? large : small;
}

void TextMesh::build(const TextLayout& layout, float x, float y) {
    vertices_.clear();
    indices_.clear();
    layout.for_each_quad(x, y, std::string::npos, [&](const GlyphQuad& q) {
        const SDL_Color col{q.colour.r, q.colour.g, q.colour.b, q.colour.a};
        const int first = static_cast<int>(vertices_.size());
        vertices_.push_back({{q.x0, q.y0}, col, {q.u0, q.v0}});
        vertices_.push_back({{q.x1, q.y0}, col, {q.u1, q.v0}});
        vertices_.push_back({{q.x1, q.y1}, col, {q.u1, q.v1}});
        vertices_.push_back({{q.x0, q.y1}, col, {q.u0, q.v1}});
        for (int i : {0, 1, 2, 0, 2, 3})
            indices_.push_back(first + i);
    });
}

}  // namespace veldra::platform
