#pragma once
// Styled text placed glyph by glyph: the one layout behind the draw list's text (drawn by the
// window's renderer) and the menus' styled_text widget, so both wrap, align and style alike and
// measuring agrees with drawing.
//
// Lines break at '\n' and, when the box has a width, between words (a word wider than the box
// breaks between its characters). Each line is aligned as the markup says where its first
// character stands. Runs take their face from the font's family (ui/text_fonts.h): bold,
// slanted or both.

#include <imgui.h>

#include <cstddef>
#include <string_view>
#include <vector>

#include "runtime/renderer.h"
#include "ui/text_markup.h"

namespace veldra {

struct TextBox {
    float size = 20;  // line height in pixels
    float width = 0;  // lines wrap and align within it; 0: no wrapping, the widest line
    Rgba colour;      // the text's own colour
    TextAlign align = TextAlign::left;  // until a tag changes it
};

struct PlacedGlyph {
    const ImFontGlyph* glyph;
    const ImFont* face;
    float x, y;   // pen position (left edge, line top) from the box's top-left, in pixels
    float scale;  // pixels per unit of the face's glyph metrics
    Rgba colour;
    std::size_t character;  // index among the text's characters (markup_character_count)
};

// A glyph's rectangle in pixels and its corners in the font atlas.
struct GlyphQuad {
    float x0, y0, x1, y1;
    float u0, v0, u1, v1;
    Rgba colour;
};

// Reused from text to text: the buffers stop growing once they fit the longest text.
class TextLayout {
public:
    // Lays `markup` out in `font`'s family, the box's top-left at (0, 0).
    void lay_out(const ImFont& font, std::string_view markup, const TextBox& box);

    const std::vector<PlacedGlyph>& glyphs() const { return glyphs_; }
    // The widest line and the height of all lines; nothing for text with no character.
    TextSize size() const { return size_; }
    std::size_t line_count() const { return lines_.size(); }

    // Calls draw(const GlyphQuad&) for every glyph with ink among the first `visible`
    // characters, the box's top-left at (x, y).
    template <class Draw>
    void for_each_quad(float x, float y, std::size_t visible, Draw&& draw) const {
        for (const PlacedGlyph& placed : glyphs_) {
            const ImFontGlyph& g = *placed.glyph;
            if (placed.character >= visible || !g.Visible || placed.colour.a == 0)
                continue;
            const float left = x + placed.x;
            const float top = y + placed.y;
            draw(GlyphQuad{left + g.X0 * placed.scale, top + g.Y0 * placed.scale,
                           left + g.X1 * placed.scale, top + g.Y1 * placed.scale, g.U0, g.V0, g.U1,
                           g.V1, placed.colour});
        }
    }

private:
    struct Line {
        std::size_t first = 0;  // glyphs_[first, next line's first)
        float width = 0;
        TextAlign align = TextAlign::left;
    };

    void place(const ImFont& face, unsigned int c, const TextRun& run, std::size_t character);
    void wrap(TextAlign align);
    void new_line(std::size_t first, TextAlign align);
    void align_lines(const TextBox& box);

    std::vector<TextRun> runs_;
    std::vector<PlacedGlyph> glyphs_;
    std::vector<Line> lines_;
    TextSize size_;
    // While laying out: the box, the pen, and where the line may break.
    float size_px_ = 0;
    float wrap_width_ = 0;
    float pen_x_ = 0;
    float ink_end_ = 0;  // the pen after the line's last glyph that is not a space
    bool line_has_glyph_ = false;
    bool after_space_ = false;
    std::size_t word_start_ = 0;   // first glyph of the line's last word
    float width_before_word_ = 0;  // ink_end_ before the spaces ahead of that word
};

}  // namespace veldra
