#pragma once
// The game's text markup as the window draws it: "[#rrggbb]" (also "#rgb", "#rrggbbaa") and the
// colour names switch the colour, "[/c]" and "[/]" go back to the text's own colour, and layout
// tags such as "[pin_center]" are dropped. Every other bracket is drawn as written; the set is
// the one the log strips (remove_text_tags), so measuring and drawing agree with it.

#include <cstddef>
#include <string_view>

#include "runtime/renderer.h"

namespace veldra::platform {

// `text` starts at a '['. Returns the length of the tag there (0 when it is no tag and the '['
// is text) and sets `colour` when the tag changes it: `base` for the ends. The alpha of a colour
// without one is the base's, so faded text stays faded.
std::size_t read_text_tag(std::string_view text, Rgba base, Rgba& colour);

}  // namespace veldra::platform
