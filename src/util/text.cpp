#include "util/text.h"

#include <charconv>
#include <cmath>

namespace veldra {

std::string string_trim(std::string_view text) {
    constexpr std::string_view space = " \t\r\n\v\f";
    auto first = text.find_first_not_of(space);
    if (first == std::string_view::npos)
        return {};
    auto last = text.find_last_not_of(space);
    return std::string(text.substr(first, last - first + 1));
}

std::string string_replace_all(std::string_view text, std::string_view from, std::string_view to) {
    if (from.empty())
        return std::string(text);
    std::string out;
    out.reserve(text.size());
    std::size_t pos = 0;
    while (true) {
        auto hit = text.find(from, pos);
        if (hit == std::string_view::npos)
            break;
        out.append(text.substr(pos, hit - pos));
        out.append(to);
        pos = hit + from.size();
    }
    out.append(text.substr(pos));
    return out;
}

std::vector<std::string> string_split(std::string_view text, char delimiter) {
    std::vector<std::string> parts;
    std::size_t start = 0;
    while (true) {
        auto hit = text.find(delimiter, start);
        parts.emplace_back(text.substr(
            start, hit == std::string_view::npos ? std::string_view::npos : hit - start));
        if (hit == std::string_view::npos)
            break;
        start = hit + 1;
    }
    return parts;
}

std::optional<double> try_string_to_real(std::string_view text) {
    const std::string trimmed = string_trim(text);
    if (trimmed.empty())
        return std::nullopt;
    double value = 0;
    const char* begin = trimmed.data();
    if (*begin == '+')
        ++begin;  // from_chars takes no plus sign
    auto [end, error] = std::from_chars(begin, trimmed.data() + trimmed.size(), value);
    // "nan" and "inf" are numbers to from_chars, but no setting of the game means either.
    if (error != std::errc() || end != trimmed.data() + trimmed.size() || !std::isfinite(value))
        return std::nullopt;
    return value;
}

std::optional<std::uint64_t> try_string_to_whole_number(std::string_view text, std::uint64_t low,
                                                        std::uint64_t high) {
    const std::string trimmed = string_trim(text);
    std::uint64_t value = 0;
    const char* end = trimmed.data() + trimmed.size();
    // Digits only: no sign, exponent or fraction, and a number beyond 64 bits is reported
    // instead of wrapped.
    auto [stop, error] = std::from_chars(trimmed.data(), end, value);
    if (trimmed.empty() || error != std::errc() || stop != end || value < low || value > high)
        return std::nullopt;
    return value;
}

std::string whole_number_problem(std::string_view text, std::uint64_t low, std::uint64_t high) {
    if (try_string_to_whole_number(text, low, high))
        return {};
    const std::string trimmed = string_trim(text);
    const bool digits_only =
        !trimmed.empty() && trimmed.find_first_not_of("0123456789") == std::string::npos;
    if (!digits_only)
        return "is not a whole number";
    // Digits beyond 64 bits are too large as surely as a value above `high`.
    if (!try_string_to_whole_number(trimmed, 0, low))
        return "is too large: at most " + std::to_string(high);
    return "is too small: at least " + std::to_string(low);
}

std::string_view string_without_utf8_bom(std::string_view text) {
    constexpr std::string_view bom = "\xEF\xBB\xBF";
    return text.starts_with(bom) ? text.substr(bom.size()) : text;
}

bool string_starts_with(std::string_view text, std::string_view prefix) {
    return text.starts_with(prefix);
}
bool string_ends_with(std::string_view text, std::string_view suffix) {
    return text.ends_with(suffix);
}

}  // namespace veldra
