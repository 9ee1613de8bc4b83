#pragma once
// Styled text as a Dear ImGui widget, for menus and dialogs: the game's markup (colours, "[b]",
// "[slant]", "[pin_center]", ...) laid out like the draw list's text (ui/text_layout.h) in the
// current window's font and text colour.

#include <cstddef>
#include <string>
#include <string_view>

namespace veldra {

// Draws `markup` at the cursor of the current window, wrapped and aligned within `wrap_width`
// pixels (0 or less: the rest of the window's content width), and moves the cursor below it
// like any item, so entries stack. Only the first `visible_characters` characters are drawn
// (see Typewriter); the layout is the whole text's, so revealed words never move.
void styled_text(std::string_view markup, float wrap_width,
                 std::size_t visible_characters = std::string::npos);

}  // namespace veldra
