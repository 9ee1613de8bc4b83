// Making personality traits: copies, draws from ranges, permutations, configuration entries.

#include "creatures/personality_sources.h"

#include <fmt/format.h>

#include <algorithm>

#include "config/game_configurations.h"
#include "runtime/log.h"

namespace veldra {

namespace {

using TraitRange = std::array<double, 2>;
using TraitRangeField = TraitRange PersonalityTraitRanges::*;

// The five traits by the names the configuration files use, in field order.
struct TraitRangeName {
    const char* name;
    TraitRangeField field;
};
constexpr std::array<TraitRangeName, 5> TRAIT_RANGE_NAMES{{
    {"openness", &PersonalityTraitRanges::openness},
    {"conscientiousness", &PersonalityTraitRanges::conscientiousness},
    {"extraversion", &PersonalityTraitRanges::extraversion},
    {"agreeableness", &PersonalityTraitRanges::agreeableness},
    {"neuroticism", &PersonalityTraitRanges::neuroticism},
}};

std::optional<TraitRange> range_from_value(const Value& entry, const char* name) {
    const Value* range = entry.find(name);
    if (!range) {
        log_error(fmt::format("Personality trait ranges are missing \"{}\".", name));
        return std::nullopt;
    }
    if (!range->is_array() || range->size() != 2 || !range->at(0).is_number() ||
        !range->at(1).is_number()) {
        log_error(fmt::format(
            "Personality trait range \"{}\" must be an array of two numbers [low, high].", name));
        return std::nullopt;
    }
    return TraitRange{range->at(0).as_number(), range->at(1).as_number()};
}

}  // namespace

PersonalityTraits personality_traits_copied(const PersonalityTraits& traits) {
    return traits;
}

PersonalityTraits personality_traits_from_ranges(const PersonalityTraitRanges& ranges, Rng& rng) {
    auto draw = [&rng](const TraitRange& range) {
        return rng.rng_random_range(range[0], range[1]);
    };
    PersonalityTraits traits;
    // One statement per trait: the draws must happen in field order.
    traits.openness = draw(ranges.openness);
    traits.conscientiousness = draw(ranges.conscientiousness);
    traits.extraversion = draw(ranges.extraversion);
    traits.agreeableness = draw(ranges.agreeableness);
    traits.neuroticism = draw(ranges.neuroticism);
    return traits;
}

std::vector<PersonalityTraits> personality_traits_make_all_permutations(
    const std::vector<double>& values) {
    return personality_traits_make_all_permutations(values, values, values, values, values);
}

std::vector<PersonalityTraits> personality_traits_make_all_permutations(
    const std::vector<double>& o_values, const std::vector<double>& c_values,
    const std::vector<double>& e_values, const std::vector<double>& a_values,
    const std::vector<double>& n_values) {
    std::vector<PersonalityTraits> all;
    all.reserve(o_values.size() * c_values.size() * e_values.size() * a_values.size() *
                n_values.size());
    for (double o : o_values)
        for (double c : c_values)
            for (double e : e_values)
                for (double a : a_values)
                    for (double n : n_values)
                        all.push_back(PersonalityTraits{o, c, e, a, n});
    return all;
}

std::optional<PersonalityTraitRanges> personality_traits_ranges_from_value(const Value& entry) {
    if (!entry.is_struct()) {
        log_error("Personality trait ranges must be a struct with the five trait names.");
        return std::nullopt;
    }
    PersonalityTraitRanges ranges;
    for (const TraitRangeName& trait : TRAIT_RANGE_NAMES) {
        std::optional<TraitRange> range = range_from_value(entry, trait.name);
        if (!range)
            return std::nullopt;
        ranges.*trait.field = *range;
    }
    return ranges;
}

PersonalityTraitRanges personality_trait_ranges_of_options(const ConfigsState& configs) {
    auto span = [&configs](const char* key) {
        const Value options = configs.value(key);
        std::optional<std::array<double, 2>> range;
        for (std::size_t i = 0; i < options.size(); ++i) {
            if (!options.at(i).is_number())
                continue;
            const double v = options.at(i).as_number();
            if (!range)
                range = std::array<double, 2>{v, v};
            (*range)[0] = std::min((*range)[0], v);
            (*range)[1] = std::max((*range)[1], v);
        }
        return range.value_or(std::array<double, 2>{0, 0});
    };
    return PersonalityTraitRanges{span("options_openness"), span("options_conscientiousness"),
                                  span("options_extraversion"), span("options_agreeableness"),
                                  span("options_neuroticism")};
}

}  // namespace veldra
