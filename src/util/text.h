#pragma once
// Small string helpers shared by the whole game.

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace veldra {

std::string string_trim(std::string_view text);
std::string string_replace_all(std::string_view text, std::string_view from, std::string_view to);
std::vector<std::string> string_split(std::string_view text, char delimiter);
// The whole text as a finite number (surrounding white space allowed); nullopt when it is not
// one, for NaN and infinities too.
std::optional<double> try_string_to_real(std::string_view text);
// The whole text as a whole number written in decimal digits only, between low and high.
std::optional<std::uint64_t> try_string_to_whole_number(std::string_view text, std::uint64_t low,
                                                        std::uint64_t high);
// Why `text` is not such a whole number: empty when it is one, else "is not a whole number",
// "is too large: at most <high>" or "is too small: at least <low>", to follow the parameter's
// name in a message.
std::string whole_number_problem(std::string_view text, std::uint64_t low, std::uint64_t high);
// `text` without the UTF-8 byte order mark that editors on some systems put at the start of a
// file; an invisible mark would otherwise turn the first word into one nobody can see is wrong.
std::string_view string_without_utf8_bom(std::string_view text);
bool string_starts_with(std::string_view text, std::string_view prefix);
bool string_ends_with(std::string_view text, std::string_view suffix);

}  // namespace veldra
