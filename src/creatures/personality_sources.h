#pragma once
// Ways to make the five personality traits of a human (the record itself lives in
// config/personality_traits.h, since the configuration's formulas take it): copied, drawn from
// ranges, every combination of a list of values, read from a configuration entry; and the
// diagnostic print-out of a personality with the weights it gives.

#include <array>
#include <optional>
#include <string>
#include <vector>

#include "config/personality_traits.h"
#include "runtime/value.h"
#include "util/rng.h"

namespace veldra {

struct ConfigsState;

struct GameConfigurations;
struct HumanActionTypes;

// [low, high] per trait, in the record's field order.
struct PersonalityTraitRanges {
    std::array<double, 2> openness{};
    std::array<double, 2> conscientiousness{};
    std::array<double, 2> extraversion{};
    std::array<double, 2> agreeableness{};
    std::array<double, 2> neuroticism{};
};

PersonalityTraits personality_traits_copied(const PersonalityTraits& traits);

// Draws every trait with rng_random_range(low, high) in field order, openness first, also when
// low equals high, so later draws never shift with the ranges.
PersonalityTraits personality_traits_from_ranges(const PersonalityTraitRanges& ranges, Rng& rng);

// The span, smallest to largest, of the values the configuration offers for each trait
// (options_openness, ...): the traits menu's ranges, and the fallback ranges of AI humans, so a
// custom file's scale is respected. A trait without numeric options spans [0, 0].
PersonalityTraitRanges personality_trait_ranges_of_options(const ConfigsState& configs);

// Every combination of the five traits over `values`: values.size()^5 records, openness
// outermost and neuroticism innermost, each over the values in order.
std::vector<PersonalityTraits> personality_traits_make_all_permutations(
    const std::vector<double>& values);
// The same with one list of values per trait.
std::vector<PersonalityTraits> personality_traits_make_all_permutations(
    const std::vector<double>& o_values, const std::vector<double>& c_values,
    const std::vector<double>& e_values, const std::vector<double>& a_values,
    const std::vector<double>& n_values);

// One entry of Configs.ai_human_traits: a struct with the five trait names, each [low, high].
// Logs an error naming the fault and returns nullopt when the entry is malformed.
std::optional<PersonalityTraitRanges> personality_traits_ranges_from_value(const Value& entry);

// The three tables of the print-out (traits; action weights of a full human; exchange weights)
// as text, one table after the other.
std::string personality_traits_format_data(const PersonalityTraits& traits,
                                           const GameConfigurations& configs,
                                           const HumanActionTypes& types);
// Writes personality_traits_format_data to the log.
void personality_traits_print_data(const PersonalityTraits& traits,
                                   const GameConfigurations& configs,
                                   const HumanActionTypes& types);

}  // namespace veldra
