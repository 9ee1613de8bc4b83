#pragma once
// The game's text as triangles of the font atlas, so that it is drawn in order with the other
// commands of a frame (a label behind a sprite drawn later stays behind it).

#include <SDL.h>

#include <string_view>
#include <vector>

#include "runtime/renderer.h"

struct ImFont;

namespace veldra::platform {

// The atlas font nearest to `size` (the line height in pixels): the larger is sharper for titles.
const ImFont& font_for_size(const ImFont& small, const ImFont& large, float size);

// Width and height of `text` at line height `size`, markup not counted; lines break at '\n'.
TextSize measure_markup_text(const ImFont& font, std::string_view text, float size);

// Reused from command to command, so text costs no allocation once the buffers have grown.
class TextMesh {
public:
    // Replaces the mesh with `text`'s glyphs, top-left at (x, y), in `colour` until a tag
    // changes it.
    void build(const ImFont& font, std::string_view text, float x, float y, float size,
               Rgba colour);
    const std::vector<SDL_Vertex>& vertices() const { return vertices_; }
    const std::vector<int>& indices() const { return indices_; }

private:
    std::vector<SDL_Vertex> vertices_;
    std::vector<int> indices_;
};

}  // namespace veldra::platform
