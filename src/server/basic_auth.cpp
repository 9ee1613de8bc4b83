#include "server/basic_auth.h"

#include <array>
#include <cctype>
#include <cstdint>

namespace veldra {

namespace {

// 64 for characters outside the alphabet.
constexpr std::array<std::uint8_t, 256> make_decoding_table() {
    std::array<std::uint8_t, 256> table{};
    for (auto& entry : table)
        entry = 64;
    constexpr std::string_view alphabet =
        "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
    for (std::size_t i = 0; i < alphabet.size(); ++i)
        table[static_cast<unsigned char>(alphabet[i])] = static_cast<std::uint8_t>(i);
    return table;
}

constexpr auto DECODING = make_decoding_table();

bool equals_ignoring_case(std::string_view a, std::string_view b) {
    if (a.size() != b.size())
        return false;
    for (std::size_t i = 0; i < a.size(); ++i)
        if (std::tolower(static_cast<unsigned char>(a[i])) !=
            std::tolower(static_cast<unsigned char>(b[i])))
            return false;
    return true;
}

}  // namespace

std::optional<std::string> base64_decode(std::string_view text) {
    if (text.size() % 4 != 0)
        return std::nullopt;
    std::size_t padding = 0;
    while (padding < 2 && padding < text.size() && text[text.size() - 1 - padding] == '=')
        ++padding;
    std::string out;
    out.reserve(text.size() / 4 * 3);
    std::uint32_t bits = 0;
    int bit_count = 0;
    for (std::size_t i = 0; i < text.size() - padding; ++i) {
        const std::uint8_t sextet = DECODING[static_cast<unsigned char>(text[i])];
        if (sextet == 64)
            return std::nullopt;
        bits = (bits << 6) | sextet;
        bit_count += 6;
        if (bit_count >= 8) {
            bit_count -= 8;
            out.push_back(static_cast<char>((bits >> bit_count) & 0xFF));
        }
    }
    return out;
}

bool constant_time_equals(std::string_view given, std::string_view expected) {
    // Every byte of `expected` is looked at whatever `given` holds; a shorter guess is compared
    // against zeros rather than stopping early.
    unsigned difference = given.size() == expected.size() ? 0U : 1U;
    for (std::size_t i = 0; i < expected.size(); ++i) {
        const unsigned char guess = i < given.size() ? static_cast<unsigned char>(given[i]) : 0;
        difference |= guess ^ static_cast<unsigned char>(expected[i]);
    }
    return difference == 0;
}

bool basic_auth_matches(std::string_view authorization, const BasicCredentials& expected) {
    const std::size_t space = authorization.find(' ');
    if (space == std::string_view::npos ||
        !equals_ignoring_case(authorization.substr(0, space), "Basic"))
        return false;
    std::string_view encoded = authorization.substr(space + 1);
    while (!encoded.empty() && encoded.front() == ' ')
        encoded.remove_prefix(1);
    const std::optional<std::string> decoded = base64_decode(encoded);
    if (!decoded)
        return false;
    return constant_time_equals(*decoded, expected.username + ":" + expected.password);
}

}  // namespace veldra
