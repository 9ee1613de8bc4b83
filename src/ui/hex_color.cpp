#include "ui/hex_color.h"

namespace veldra {

namespace {

int hex_digit(char c) {
    if (c >= '0' && c <= '9')
        return c - '0';
    if (c >= 'a' && c <= 'f')
        return c - 'a' + 10;
    if (c >= 'A' && c <= 'F')
        return c - 'A' + 10;
    return -1;
}

}  // namespace

std::optional<Rgba> parse_hex_color(std::string_view text) {
    if (text.size() != 7 || text[0] != '#')
        return std::nullopt;
    std::uint8_t channels[3];
    for (int i = 0; i < 3; ++i) {
        const int high = hex_digit(text[1 + 2 * i]), low = hex_digit(text[2 + 2 * i]);
        if (high < 0 || low < 0)
            return std::nullopt;
        channels[i] = static_cast<std::uint8_t>(high * 16 + low);
    }
    return Rgba{channels[0], channels[1], channels[2], 255};
}

}  // namespace veldra
