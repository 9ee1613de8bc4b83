#pragma once
// The tags of the game's text markup: the one list of what counts as a tag. The log strips
// exactly these (remove_text_tags) and the window's text reads their meaning
// (ui/text_markup.h). Every other bracket is text, so a message's "[localization]" section or a
// formula's "a[i]" is shown as written.
//
//   [#rgb] [#rrggbb] [#rrggbbaa]   colour; without alpha digits the text keeps its own alpha
//   [red] [green] ... [teal]       a named colour (the list in text_tags.cpp)
//   [/c]                           back to the text's own colour
//   [b] ... [/b]                   bold
//   [slant] ... [/slant]           slanted (the oblique face)
//   [pin_left] [pin_center] [pin_right]
//                                  aligns the lines from where it stands: a line takes the
//                                  alignment in force at its first character
//   [/]                            ends every open style, colour and alignment

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string_view>

#include "runtime/renderer.h"

namespace veldra {

enum class TextTagKind : std::uint8_t {
    colour,
    colour_end,
    bold,
    bold_end,
    slant,
    slant_end,
    align,
    end_all,
};

struct TextTag {
    TextTagKind kind = TextTagKind::end_all;
    std::size_t length = 0;             // bytes, both brackets included
    Rgba colour;                        // TextTagKind::colour
    bool has_alpha = false;             // the colour names its alpha ("[#rrggbbaa]")
    TextAlign align = TextAlign::left;  // TextTagKind::align
};

// The tag that `text` starts with; nullopt when `text` does not start with one (its '[' is then
// text).
std::optional<TextTag> read_text_tag(std::string_view text);

}  // namespace veldra
