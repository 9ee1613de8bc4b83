#pragma once
// The game's text as triangles of the font atlas, so that it is drawn in order with the other
// commands of a frame (a label behind a sprite drawn later stays behind it).

#include <SDL.h>

#include <vector>

struct ImFont;

namespace veldra {
class TextLayout;
}

namespace veldra::platform {

// The atlas font nearest to `size` (the line height in pixels): the larger is sharper for titles.
const ImFont& font_for_size(const ImFont& small, const ImFont& large, float size);

// Reused from command to command, so text costs no allocation once the buffers have grown.
class TextMesh {
public:
    // Replaces the mesh with the laid-out glyphs, the text box's top-left at (x, y).
    void build(const TextLayout& layout, float x, float y);
    const std::vector<SDL_Vertex>& vertices() const { return vertices_; }
    const std::vector<int>& indices() const { return indices_; }

private:
    std::vector<SDL_Vertex> vertices_;
    std::vector<int> indices_;
};

}  // namespace veldra::platform
