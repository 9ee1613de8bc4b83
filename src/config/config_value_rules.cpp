#include "config/config_value_rules.h"

#include <array>
#include <cmath>

#include "config/personality_traits.h"

namespace veldra {

namespace {

using Json = nlohmann::ordered_json;

bool is_number_between(const Json& value, double low, double high) {
    if (!value.is_number())
        return false;
    const double number = value.get<double>();
    return std::isfinite(number) && number >= low && number <= high;
}

std::string trait_ranges_problem(const Json& value) {
    constexpr std::array<const char*, 5> traits = {"openness", "conscientiousness", "extraversion",
                                                   "agreeableness", "neuroticism"};
    for (std::size_t i = 0; i < value.size(); ++i) {
        const Json& entry = value[i];
        const std::string where = "entry " + std::to_string(i) + " ";
        if (!entry.is_object())
            return where + "must be an object with the five trait names";
        for (const char* trait : traits) {
            const auto range = entry.find(trait);
            if (range == entry.end() || !range->is_array() || range->size() != 2 ||
                !is_number_between((*range)[0], -MAX_TRAIT_MAGNITUDE, MAX_TRAIT_MAGNITUDE) ||
                !is_number_between((*range)[1], -MAX_TRAIT_MAGNITUDE, MAX_TRAIT_MAGNITUDE))
                return where + "must give \"" + std::string(trait) +
                       "\" as [low, high] with two numbers";
        }
    }
    return {};
}

}  // namespace

std::string config_rule_problem(ConfigRule rule, const Json& value) {
    const double huge = 1e300;
    switch (rule) {
        case ConfigRule::ANY:
            return {};
        case ConfigRule::FINITE:
            return is_number_between(value, -huge, huge) ? "" : "must be a number";
        case ConfigRule::NON_NEGATIVE:
            return is_number_between(value, 0, huge) ? "" : "must be 0 or more";
        case ConfigRule::POSITIVE:
            return is_number_between(value, 0, huge) && value.get<double>() > 0
                       ? ""
                       : "must be more than 0";
        case ConfigRule::FRACTION:
            return is_number_between(value, 0, 1) ? "" : "must be from 0 to 1";
        case ConfigRule::FREQUENCY:
            return is_number_between(value, 0.0001, 1e6) ? ""
                                                         : "must be from 0.0001 to 1000000 "
                                                           "(times per second)";
        case ConfigRule::TRIAL_TIME:
            // A trial of no time is allowed: it ends at its first tick, survived.
            return is_number_between(value, 0, 86400) ? "" : "must be from 0 to 86400 (seconds)";
        case ConfigRule::GAME_SPEED:
            return is_number_between(value, -huge, -1e-300) || is_number_between(value, 0.01, 1000)
                       ? ""
                       : "must be from 0.01 to 1000 ticks per frame, or negative (the whole "
                         "trial in one frame)";
        case ConfigRule::MEMORY_SLOTS:
            return is_number_between(value, 1, 1000) &&
                           value.get<double>() == std::floor(value.get<double>())
                       ? ""
                       : "must be a whole number from 1 to 1000";
        case ConfigRule::TRAIT_OPTIONS:
            if (!value.is_array() || value.empty() || value.size() > 100)
                return "must list from 1 to 100 trait values";
            for (const Json& option : value)
                if (!is_number_between(option, -MAX_TRAIT_MAGNITUDE, MAX_TRAIT_MAGNITUDE))
                    return "must list numbers only";
            return {};
        case ConfigRule::TRAIT_RANGES:
            return value.is_array() ? trait_ranges_problem(value) : "must be an array";
        case ConfigRule::LEVEL_LIST:
            if (!value.is_array() || value.size() > 10000)
                return "must list at most 10000 level file names";
            for (const Json& level : value)
                if (!level.is_string() || level.get_ref<const std::string&>().empty())
                    return "must list level file names (non-empty strings) only";
            return {};
    }
    return {};
}

std::string_view config_rule_text(ConfigRule rule) {
    switch (rule) {
        case ConfigRule::ANY:
            return "";
        case ConfigRule::FINITE:
            return "any number";
        case ConfigRule::NON_NEGATIVE:
            return "0 or more";
        case ConfigRule::POSITIVE:
            return "more than 0";
        case ConfigRule::FRACTION:
            return "0 to 1";
        case ConfigRule::FREQUENCY:
            return "0.0001 to 1000000";
        case ConfigRule::TRIAL_TIME:
            return "0 to 86400";
        case ConfigRule::GAME_SPEED:
            return "0.01 to 1000, or negative";
        case ConfigRule::MEMORY_SLOTS:
            return "whole number, 1 to 1000";
        case ConfigRule::TRAIT_OPTIONS:
            return "1 to 100 numbers";
        case ConfigRule::TRAIT_RANGES:
            return "objects with the five traits, each [low, high]";
        case ConfigRule::LEVEL_LIST:
            return "at most 10000 non-empty file names";
    }
    return "";
}

}  // namespace veldra
