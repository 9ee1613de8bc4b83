#pragma once
// Drawing. Views fill the frame's draw list during the draw events; the frame loop hands it to
// the renderer once per frame with present(). The simulation never draws: only views in ui/ add
// commands, so a headless run with no views attached leaves the list empty.

#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace veldra {

// The game draws on a logical screen of this size; windows of any size show it scaled and
// letterboxed.
inline constexpr int LOGICAL_WIDTH = 1600;
inline constexpr int LOGICAL_HEIGHT = 900;

struct Rgba {
    std::uint8_t r = 0, g = 0, b = 0, a = 255;
    bool operator==(const Rgba&) const = default;
};

// How the lines of a text sit in its box; the markup's "[pin_center]" and kin switch it.
enum class TextAlign : std::uint8_t { left, center, right };

// Textures are made once, at start-up, from pixels drawn by code; 0 means none.
using TextureId = std::uint32_t;

struct DrawCommand {
    enum class Kind : std::uint8_t { rect, rect_outline, line, circle, texture, text };
    Kind kind = Kind::rect;
    // Logical pixels (1600 x 900 on screen, world pixels under a camera): the rectangle's or the
    // texture's top-left corner and size, the line's end points (x2, y2), the circle's centre
    // and radius (w and h), or the text's top-left corner, line height in pixels (h) and the
    // width its lines wrap and align in (w; 0: no wrapping, aligned within the widest line).
    float x = 0, y = 0, w = 0, h = 0, x2 = 0, y2 = 0;
    Rgba color;
    TextureId texture = 0;
    float angle = 0;  // degrees, counter-clockwise, about the texture's centre
    bool flip_x = false;
    std::string text;  // for Kind::text, with the game's markup (runtime/text_tags.h)
    TextAlign align = TextAlign::left;  // for Kind::text, until a tag changes it
};

class DrawList {
public:
    void rect(float x, float y, float w, float h, Rgba color);
    void rect_outline(float x, float y, float w, float h, Rgba color);
    void line(float x1, float y1, float x2, float y2, Rgba color);
    void circle(float cx, float cy, float radius, Rgba color);
    void texture(TextureId texture, float x, float y, float w, float h, Rgba tint = {255, 255, 255},
                 float angle = 0, bool flip_x = false);
    void text(float x, float y, std::string text, Rgba color, float size = 20);
    // Text wrapped between words to `width` and aligned in it; "[pin_...]" tags override
    // `align` from where they stand.
    void text_box(float x, float y, float width, std::string text, Rgba color, float size = 20,
                  TextAlign align = TextAlign::left);

    const std::vector<DrawCommand>& commands() const { return commands_; }
    void clear() { commands_.clear(); }

private:
    std::vector<DrawCommand> commands_;
};

struct TextSize {
    float width = 0;
    float height = 0;
};

class Renderer {
public:
    virtual ~Renderer() = default;
    // Makes a texture of `width` x `height` pixels, row by row, each 0xRRGGBBAA.
    virtual TextureId create_texture(int width, int height,
                                     std::span<const std::uint32_t> pixels) = 0;
    // The list the views of this frame draw into.
    DrawList& draw_list() { return draw_list_; }
    // Shows the frame's list and starts an empty one.
    virtual void present() = 0;
    // Width and height in logical pixels that `text` takes at line height `size`, so views can
    // centre and right-align it.
    TextSize measure_text(std::string_view text, float size) const {
        return measure_text_box(text, size, 0);
    }
    // The same for text drawn by text_box with `width`: the widest line as wrapped, and the
    // height of all lines.
    virtual TextSize measure_text_box(std::string_view text, float size, float width) const = 0;
    // Writes the last presented frame as a PNG at the window's resolution. False, with the
    // reason in `error`, when there is no frame or the file cannot be written.
    virtual bool save_screenshot(const std::string& path, std::string& error) = 0;

protected:
    DrawList draw_list_;
};

// No window: textures get ids and nothing else; each frame's list is dropped. Keeps the last
// frame's commands so tests can see what views drew.
class NullRenderer final : public Renderer {
public:
    TextureId create_texture(int width, int height, std::span<const std::uint32_t> pixels) override;
    void present() override;
    // A fixed-width estimate: good enough for layout that nobody sees.
    TextSize measure_text_box(std::string_view text, float size, float width) const override;
    // There is no picture without a window.
    bool save_screenshot(const std::string& path, std::string& error) override;

    std::vector<DrawCommand> last_frame;
    std::int64_t frames_presented = 0;

private:
    TextureId next_texture_ = 1;
};

}  // namespace veldra
