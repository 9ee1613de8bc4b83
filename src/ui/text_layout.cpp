#include "ui/text_layout.h"

#include <imgui.h>

#include <algorithm>
#include <cmath>

#include "ui/imgui_adapter.h"
#include "ui/text_fonts.h"

namespace veldra {

void TextLayout::lay_out(const ImFont& font, std::string_view markup, const TextBox& box) {
    glyphs_.clear();
    lines_.clear();
    size_ = {};
    read_text_runs(markup, box.colour, box.align, runs_);
    if (runs_.empty())
        return;
    // Text set in the bold face is bold throughout; "[slant]" then takes the bold-italic face.
    const TextFontFamily family = text_font_style_family(font);
    const bool font_bold = &font == family.bold || &font == family.bold_italic;
    const bool font_slant = &font == family.italic || &font == family.bold_italic;
    size_px_ = box.size;
    wrap_width_ = box.width;
    pen_x_ = 0;
    ink_end_ = 0;
    new_line(0, box.align);
    std::size_t character = 0;
    for (const TextRun& run : runs_) {
        const ImFont& face = family.face(font_bold || run.bold, font_slant || run.slant);
        const char* text = run.text.data();
        for (std::size_t at = 0; at < run.text.size(); ++character) {
            const std::size_t length = utf8_character_length(run.text.substr(at));
            int bytes = 0;
            const unsigned int c = imgui_adapter::decode_utf8(text + at, text + at + length, bytes);
            at += length;
            if (c != '\n') {
                place(face, c, run, character);
                continue;
            }
            lines_.back().width = pen_x_;
            new_line(glyphs_.size(), run.align);
            pen_x_ = 0;
            ink_end_ = 0;
        }
    }
    lines_.back().width = pen_x_;
    align_lines(box);
}

void TextLayout::place(const ImFont& face, unsigned int c, const TextRun& run,
                       std::size_t character) {
    if (c == 0 || c == '\r')
        return;
    if (c > IM_UNICODE_CODEPOINT_MAX)
        c = IM_UNICODE_CODEPOINT_INVALID;
    const ImFontGlyph* glyph = face.FindGlyph(static_cast<ImWchar>(c));
    if (!glyph)
        return;
    const float scale = size_px_ / face.FontSize;
    const float advance = glyph->AdvanceX * scale;
    const bool space = c == ' ';
    if (!space) {
        if (after_space_) {
            word_start_ = glyphs_.size();
            width_before_word_ = ink_end_;
            after_space_ = false;
        }
        if (wrap_width_ > 0 && line_has_glyph_ && pen_x_ + advance > wrap_width_)
            wrap(run.align);
    }
    if (!line_has_glyph_) {
        lines_.back().align = run.align;
        line_has_glyph_ = true;
    }
    const float y = static_cast<float>(lines_.size() - 1) * size_px_;
    glyphs_.push_back({glyph, &face, pen_x_, y, scale, run.colour, character});
    pen_x_ += advance;
    if (space)
        after_space_ = true;
    else
        ink_end_ = pen_x_;
}

void TextLayout::wrap(TextAlign align) {
    Line& line = lines_.back();
    if (word_start_ > line.first && width_before_word_ > 0) {
        // The word so far moves down whole; the spaces before it stay behind, unseen.
        line.width = width_before_word_;
        const std::size_t first = word_start_;
        const float shift = first < glyphs_.size() ? glyphs_[first].x : pen_x_;
        new_line(first, align);
        const float y = static_cast<float>(lines_.size() - 1) * size_px_;
        for (std::size_t i = first; i < glyphs_.size(); ++i) {
            glyphs_[i].x -= shift;
            glyphs_[i].y = y;
        }
        pen_x_ -= shift;
        ink_end_ = pen_x_;
        return;
    }
    // One word fills the line: it breaks where it overflows.
    line.width = ink_end_;
    new_line(glyphs_.size(), align);
    pen_x_ = 0;
    ink_end_ = 0;
}

void TextLayout::new_line(std::size_t first, TextAlign align) {
    lines_.push_back({first, 0, align});
    word_start_ = first;
    width_before_word_ = 0;
    after_space_ = false;
    line_has_glyph_ = first < glyphs_.size();
}

void TextLayout::align_lines(const TextBox& box) {
    float widest = 0;
    for (const Line& line : lines_)
        widest = std::max(widest, line.width);
    const float box_width = box.width > 0 ? box.width : widest;
    for (std::size_t i = 0; i < lines_.size(); ++i) {
        const Line& line = lines_[i];
        const float room = std::max(0.0f, box_width - line.width);
        // Whole pixels keep centred text as crisp as text on the left.
        const float offset = line.align == TextAlign::center  ? std::round(room / 2)
                             : line.align == TextAlign::right ? std::round(room)
                                                              : 0;
        if (offset == 0)
            continue;
        const std::size_t end = i + 1 < lines_.size() ? lines_[i + 1].first : glyphs_.size();
        for (std::size_t g = line.first; g < end; ++g)
            glyphs_[g].x += offset;
    }
    size_ = {widest, static_cast<float>(lines_.size()) * size_px_};
}

}  // namespace veldra
