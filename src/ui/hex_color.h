#pragma once
// Colours the configuration gives as text.

#include <optional>
#include <string_view>

#include "runtime/renderer.h"

namespace veldra {

// "#rrggbb" (either case); nullopt for anything else.
std::optional<Rgba> parse_hex_color(std::string_view text);

}  // namespace veldra
