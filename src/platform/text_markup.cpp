#include "platform/text_markup.h"

#include "ui/hex_color.h"

#include <cstdint>

namespace veldra::platform {

namespace {

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
    if (!inner.empty() && inner[0] == '#') {
        const auto parsed = parse_hex_digits(inner.substr(1), base.a);
        if (!parsed)
            return 0;
        colour = *parsed;
        return length;
    }
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
