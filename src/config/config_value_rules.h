#pragma once
// What a configuration value may be beyond its type, one rule per key in the key table
// (game_configuration_keys.h). A value outside its rule would not crash the game but quietly
// make a study meaningless: a rate of 0 that never fires, a game speed at which a trial never
// ends, an empty list of trait values that gives an empty batch. The loader refuses such a
// value with the key, the value and the rule.

#include <nlohmann/json.hpp>
#include <string>
#include <string_view>

namespace veldra {

enum class ConfigRule {
    ANY,            // the type says it all
    FINITE,         // any number
    NON_NEGATIVE,   // 0 or more
    POSITIVE,       // more than 0
    FRACTION,       // 0 to 1
    FREQUENCY,      // times per second: 0.0001 to 1000000
    TRIAL_TIME,     // seconds: more than 0, up to 86400 (a day)
    GAME_SPEED,     // ticks per frame: negative (the whole trial at once), or 0.01 to 1000
    MEMORY_SLOTS,   // a whole number from 1 to 1000
    TRAIT_OPTIONS,  // 1 to 100 numbers
    TRAIT_RANGES,   // objects naming the five traits, each [low, high] with numbers
    LEVEL_LIST,     // file names (strings), at most 10000
};

// Empty when `value` keeps the rule; else what it must be ("must be more than 0").
std::string config_rule_problem(ConfigRule rule, const nlohmann::ordered_json& value);

// The rule as the documentation states it.
std::string_view config_rule_text(ConfigRule rule);

}  // namespace veldra
