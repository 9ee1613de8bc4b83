#pragma once
// Menu texts carry the game's markup ("[pin_center]", "[slant]", "[#ff5555]...[/c]"). Paragraphs
// and headings are drawn as styled text; widget labels (buttons, fields) show the text without
// markup, since Dear ImGui draws those itself.

#include <string>
#include <string_view>

namespace veldra {

// What a widget label shows of `markup`: the text with its tags removed.
std::string menu_plain_text(std::string_view markup);

// Draws `markup` at the cursor of the current Dear ImGui window as styled text, wrapped at
// `width` logical pixels. Needs an open frame.
// `visible_characters` reveals only the text's start (a typed text).
void draw_menu_text(std::string_view markup, float width,
                    std::size_t visible_characters = std::string::npos);

}  // namespace veldra
