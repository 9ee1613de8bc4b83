#pragma once
// Colours written as text: in the configuration and in the text markup.

#include <cstdint>
#include <optional>
#include <string_view>

#include "runtime/renderer.h"

namespace veldra {

// "#rrggbb" (either case); nullopt for anything else.
std::optional<Rgba> parse_hex_color(std::string_view text);
// Hexadecimal digits without the "#": "rgb" (each digit doubled), "rrggbb" with `alpha`, or
// "rrggbbaa"; nullopt for anything else.
std::optional<Rgba> parse_hex_digits(std::string_view digits, std::uint8_t alpha);

}  // namespace veldra
