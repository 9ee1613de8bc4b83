#pragma once
// Values of command-line parameters that are numbers or switches. Each parser takes the text as
// the user typed it and gives nothing for text that is not such a value, so that every mode
// refuses "nan", "inf", "1.5 runs" or "yes" with one message instead of misreading it.

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "config/personality_traits.h"

namespace veldra {

struct AppState;

// Seeds are whole numbers between -2^53 and 2^53: every such number is exact in a double, and
// two different seeds never silently become the same generator state through rounding.
inline constexpr double MAX_SEED_MAGNITUDE = 9007199254740992.0;  // 2^53

std::optional<double> parse_seed_value(std::string_view text);
inline constexpr std::string_view SEED_PROBLEM =
    "is not a seed: give a whole number between -9007199254740992 and 9007199254740992.";

// "0" or "1".
std::optional<bool> parse_switch_value(std::string_view text);

// Five numbers O,C,E,A,N, each at most MAX_TRAIT_MAGNITUDE either side of 0.
std::optional<PersonalityTraits> parse_traits_value(std::string_view text);

inline constexpr std::string_view TRAITS_PROBLEM =
    "must be five numbers O,C,E,A,N, each from -1000000000 to 1000000000.";

// Logs "<key>=<text> <problem>" and ends the program with status 2 (bad parameters).
void bad_parameter(AppState& app, std::string_view key, std::string_view text,
                   std::string_view problem);

}  // namespace veldra
