#include "runtime/text_tags.h"

#include <cstdint>

#include "runtime/hex_color.h"

namespace veldra {

namespace {

struct NamedTag {
    std::string_view name;
    TextTagKind kind;
    TextAlign align = TextAlign::left;
};

constexpr NamedTag NAMED_TAGS[] = {
    {"/", TextTagKind::end_all},
    {"/c", TextTagKind::colour_end},
    {"b", TextTagKind::bold},
    {"/b", TextTagKind::bold_end},
    {"slant", TextTagKind::slant},
    {"/slant", TextTagKind::slant_end},
    {"pin_left", TextTagKind::align, TextAlign::left},
    {"pin_center", TextTagKind::align, TextAlign::center},
    {"pin_right", TextTagKind::align, TextAlign::right},
};

struct NamedColour {
    std::string_view name;
    std::uint32_t rgb;
};

constexpr NamedColour NAMED_COLOURS[] = {
    {"red", 0xff0000},     {"green", 0x008000},  {"blue", 0x0000ff},   {"yellow", 0xffff00},
    {"orange", 0xffa500},  {"purple", 0x800080}, {"white", 0xffffff},  {"black", 0x000000},
    {"gray", 0x808080},    {"grey", 0x808080},   {"lime", 0x00ff00},   {"aqua", 0x00ffff},
    {"fuchsia", 0xff00ff}, {"silver", 0xc0c0c0}, {"maroon", 0x800000}, {"navy", 0x000080},
    {"olive", 0x808000},   {"teal", 0x008080},
};

// The longest tag, "[pin_center]", and some room: a '[' with no ']' soon after is text without
// searching the rest of a long message for one.
constexpr std::size_t LONGEST_TAG = 16;

}  // namespace

std::optional<TextTag> read_text_tag(std::string_view text) {
    if (text.empty() || text[0] != '[')
        return std::nullopt;
    const std::size_t close = text.substr(0, LONGEST_TAG).find(']');
    if (close == std::string_view::npos)
        return std::nullopt;
    const std::string_view inner = text.substr(1, close - 1);
    TextTag tag;
    tag.length = close + 1;
    if (inner.starts_with('#')) {
        const std::optional<Rgba> colour = parse_hex_digits(inner.substr(1), 255);
        if (!colour)
            return std::nullopt;
        tag.kind = TextTagKind::colour;
        tag.colour = *colour;
        tag.has_alpha = inner.size() == 9;
        return tag;
    }
    for (const NamedTag& named : NAMED_TAGS) {
        if (inner == named.name) {
            tag.kind = named.kind;
            tag.align = named.align;
            return tag;
        }
    }
    for (const NamedColour& named : NAMED_COLOURS) {
        if (inner == named.name) {
            tag.kind = TextTagKind::colour;
            tag.colour = {static_cast<std::uint8_t>(named.rgb >> 16),
                          static_cast<std::uint8_t>(named.rgb >> 8),
                          static_cast<std::uint8_t>(named.rgb), 255};
            return tag;
        }
    }
    return std::nullopt;
}

}  // namespace veldra
