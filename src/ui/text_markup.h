#pragma once
// The game's text markup read for drawing: runs of plain text, each with the colour, weight,
// slant and alignment in force where it starts. The tags themselves are listed in
// runtime/text_tags.h, shared with the log that strips them. Everything that lays out text
// (the draw list's text, the menus' styled text, the typewriter) reads markup through here, so
// they agree on what a tag does and on what counts as a character.
//
// "[b]" and "[slant]" nest: each end closes one opening, so "[b]a[b]b[/b]c[/b]" is bold to the
// last end; an end with nothing open does nothing. Colours do not nest: "[/c]" returns to the
// text's own colour. An alignment holds until another one or "[/]"; a line is aligned as
// its first character says (TextLayout). A tag left open ends with the text.

#include <cstddef>
#include <string_view>
#include <vector>

#include "runtime/renderer.h"

namespace veldra {

struct TextRun {
    std::string_view text;  // plain text, '\n' included; points into the markup
    Rgba colour;
    bool bold = false;
    bool slant = false;
    TextAlign align = TextAlign::left;
};

// Replaces `runs` with the runs of `markup`, in order; runs with no text are left out.
// `colour` and `align` are the text's own, the ones "[/c]" and "[/]" return to. A colour tag
// without alpha digits keeps `colour`'s alpha, so faded text stays faded.
void read_text_runs(std::string_view markup, Rgba colour, TextAlign align,
                    std::vector<TextRun>& runs);

// Bytes of the character `text` starts with: a UTF-8 lead byte and the continuation bytes after
// it (at most three), so a broken sequence still moves on. 0 for empty text.
std::size_t utf8_character_length(std::string_view text);

// The characters `markup` shows (tags left out, '\n' counted).
std::size_t markup_character_count(std::string_view markup);

// The start of `markup` that shows its first `characters` characters, with every tag up to the
// next character, so the whole markup for `characters` >= markup_character_count(markup).
// Neither a tag nor a character's UTF-8 bytes are ever cut.
std::string_view visible_markup_prefix(std::string_view markup, std::size_t characters);

}  // namespace veldra
