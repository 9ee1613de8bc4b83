#pragma once
// Menu texts carry the game's markup ("[pin_center]", "[slant]", "[#ff5555]...[/c]"). Every text
// a menu shows as a paragraph goes through draw_menu_text, so a richer text widget takes over by
// replacing that one function; widget labels (buttons, fields) show the text without markup.

#include <string>
#include <string_view>

namespace veldra {

// What a widget label shows of `markup`: the text with its tags removed.
std::string menu_plain_text(std::string_view markup);

// Draws `markup` at the cursor of the current Dear ImGui window, wrapped at `width` logical
// pixels; each line is centred in `width` when the text holds [pin_center]. Needs an open frame.
void draw_menu_text(std::string_view markup, float width);

}  // namespace veldra
