#include "runtime/utf16.h"

namespace veldra {

namespace {

constexpr char32_t REPLACEMENT = 0xFFFD;

// The code point at `text[at]`, moving `at` past it; REPLACEMENT for one byte that does not
// start a valid sequence (overlong forms and surrogates included).
char32_t next_code_point(std::string_view text, std::size_t& at) {
    const auto byte = [&](std::size_t i) { return static_cast<unsigned char>(text[i]); };
    const unsigned char lead = byte(at);
    int length = 0;
    char32_t point = 0;
    if (lead < 0x80) {
        ++at;
        return lead;
    } else if ((lead & 0xE0) == 0xC0) {
        length = 2;
        point = lead & 0x1F;
    } else if ((lead & 0xF0) == 0xE0) {
        length = 3;
        point = lead & 0x0F;
    } else if ((lead & 0xF8) == 0xF0) {
        length = 4;
        point = lead & 0x07;
    } else {
        ++at;
        return REPLACEMENT;
    }
    if (at + length > text.size()) {
        ++at;
        return REPLACEMENT;
    }
    for (int i = 1; i < length; ++i) {
        if ((byte(at + i) & 0xC0) != 0x80) {
            ++at;
            return REPLACEMENT;
        }
        point = (point << 6) | (byte(at + i) & 0x3F);
    }
    constexpr char32_t smallest[] = {0, 0, 0x80, 0x800, 0x10000};
    if (point < smallest[length] || point > 0x10FFFF || (point >= 0xD800 && point <= 0xDFFF)) {
        ++at;
        return REPLACEMENT;
    }
    at += length;
    return point;
}

void append_utf8(std::string& out, char32_t point) {
    if (point < 0x80) {
        out += static_cast<char>(point);
    } else if (point < 0x800) {
        out += static_cast<char>(0xC0 | (point >> 6));
        out += static_cast<char>(0x80 | (point & 0x3F));
    } else if (point < 0x10000) {
        out += static_cast<char>(0xE0 | (point >> 12));
        out += static_cast<char>(0x80 | ((point >> 6) & 0x3F));
        out += static_cast<char>(0x80 | (point & 0x3F));
    } else {
        out += static_cast<char>(0xF0 | (point >> 18));
        out += static_cast<char>(0x80 | ((point >> 12) & 0x3F));
        out += static_cast<char>(0x80 | ((point >> 6) & 0x3F));
        out += static_cast<char>(0x80 | (point & 0x3F));
    }
}

bool is_high_surrogate(char32_t unit) {
    return unit >= 0xD800 && unit <= 0xDBFF;
}

bool is_low_surrogate(char32_t unit) {
    return unit >= 0xDC00 && unit <= 0xDFFF;
}

}  // namespace

std::wstring utf8_to_utf16(std::string_view text) {
    std::wstring out;
    out.reserve(text.size());
    for (std::size_t at = 0; at < text.size();) {
        const char32_t point = next_code_point(text, at);
        if (point < 0x10000) {
            out += static_cast<wchar_t>(point);
        } else {
            out += static_cast<wchar_t>(0xD800 + ((point - 0x10000) >> 10));
            out += static_cast<wchar_t>(0xDC00 + ((point - 0x10000) & 0x3FF));
        }
    }
    return out;
}

std::string utf16_to_utf8(std::wstring_view text) {
    std::string out;
    out.reserve(text.size());
    for (std::size_t at = 0; at < text.size(); ++at) {
        // Only the low 16 bits count: where wchar_t is wider, it still holds one UTF-16 unit.
        const char32_t unit = static_cast<char32_t>(text[at]) & 0xFFFF;
        if (is_high_surrogate(unit) && at + 1 < text.size() &&
            is_low_surrogate(static_cast<char32_t>(text[at + 1]) & 0xFFFF)) {
            const char32_t low = static_cast<char32_t>(text[++at]) & 0xFFFF;
            append_utf8(out, 0x10000 + ((unit - 0xD800) << 10) + (low - 0xDC00));
        } else if (is_high_surrogate(unit) || is_low_surrogate(unit)) {
            append_utf8(out, REPLACEMENT);
        } else {
            append_utf8(out, unit);
        }
    }
    return out;
}

}  // namespace veldra
