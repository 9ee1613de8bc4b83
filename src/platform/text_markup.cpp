#include "platform/text_markup.h"

#include <cstdint>

namespace veldra::platform {

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

bool parse_hex_colour(std::string_view digits, std::uint8_t alpha, Rgba& out) {
    if (digits.size() != 3 && digits.size() != 6 && digits.size() != 8)
        return false;
    int values[8];
    for (std::size_t i = 0; i < digits.size(); ++i)
        if ((values[i] = hex_digit(digits[i])) < 0)
            return false;
    auto pair = [&](std::size_t i) { return static_cast<std::uint8_t>(values[i] * 16 + values[i + 1]); };
    if (digits.size() == 3) {
        out = {static_cast<std::uint8_t>(values[0] * 17), static_cast<std::uint8_t>(values[1] * 17),
               static_cast<std::uint8_t>(values[2] * 17), alpha};
    } else {
        out = {pair(0), pair(2), pair(4), digits.size() == 8 ? pair(6) : alpha};
    }
    return true;
}

struct NamedColour {
    std::string_view name;
    std::uint32_t rgb;
};

constexpr NamedColour NAMED[] = {
    {"red", 0xff0000},   {"green", 0x008000}, {"blue", 0x0000ff},    {"yellow", 0xffff00},
    {"orange", 0xffa500}, {"purple", 0x800080}, {"white", 0xffffff},  {"black", 0x000000},
    {"gray", 0x808080},  {"grey", 0x808080},  {"lime", 0x00ff00},    {"aqua", 0x00ffff},
    {"fuchsia", 0xff00ff}, {"silver", 0xc0c0c0}, {"maroon", 0x800000}, {"navy", 0x000080},
    {"olive", 0x808000}, {"teal", 0x008080},
};

constexpr std::string_view LAYOUT[] = {"pin_left", "pin_center", "pin_right",
                                       "slant",    "bold",       "italic"};

}  // namespace

std::size_t read_text_tag(std::string_view text, Rgba base, Rgba& colour) {
    const std::size_t end = text.find(']');
    if (text.empty() || text[0] != '[' || end == std::string_view::npos)
        return 0;
    const std::string_view inner = text.substr(1, end - 1);
    const std::size_t length = end + 1;
    if (inner == "/c" || inner == "/") {
        colour = base;
        return length;
    }
    if (!inner.empty() && inner[0] == '#')
        return parse_hex_colour(inner.substr(1), base.a, colour) ? length : 0;
    for (const NamedColour& named : NAMED) {
        if (inner == named.name) {
            colour = {static_cast<std::uint8_t>(named.rgb >> 16),
                      static_cast<std::uint8_t>(named.rgb >> 8),
                      static_cast<std::uint8_t>(named.rgb), base.a};
            return length;
        }
    }
    for (std::string_view layout : LAYOUT)
        if (inner == layout)
            return length;
    return 0;
}

}  // namespace veldra::platform
