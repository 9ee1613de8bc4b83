#include "runtime/hex_color.h"

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

std::optional<Rgba> parse_hex_digits(std::string_view digits, std::uint8_t alpha) {
    if (digits.size() != 3 && digits.size() != 6 && digits.size() != 8)
        return std::nullopt;
    int values[8];
    for (std::size_t i = 0; i < digits.size(); ++i)
        if ((values[i] = hex_digit(digits[i])) < 0)
            return std::nullopt;
    if (digits.size() == 3)
        return Rgba{static_cast<std::uint8_t>(values[0] * 17),
                    static_cast<std::uint8_t>(values[1] * 17),
                    static_cast<std::uint8_t>(values[2] * 17), alpha};
    auto pair = [&](std::size_t i) {
        return static_cast<std::uint8_t>(values[i] * 16 + values[i + 1]);
    };
    return Rgba{pair(0), pair(2), pair(4), digits.size() == 8 ? pair(6) : alpha};
}

std::optional<Rgba> parse_hex_color(std::string_view text) {
    if (text.size() != 7 || text[0] != '#')
        return std::nullopt;
    return parse_hex_digits(text.substr(1), 255);
}

}  // namespace veldra
