#pragma once
// Behaviour formulas of the kinds researchers write in configurations.json, used by the
// expression benchmark; the shipped configuration can take them as its defaults.

namespace veldra::bench {

struct BenchFormula {
    const char* name;
    const char* source;
};

// An action weight: conscientious humans act more as their energy drops, nervous ones less.
inline constexpr BenchFormula FORMULA_ACTION_WEIGHT = {
    "action_weight", "clamp(1 + 2*C*(1 - ENERGY_LEVEL) - 0.5*N, 0, 5)"};
// The same with two more traits, for a longer program.
inline constexpr BenchFormula FORMULA_ACTION_WEIGHT_LONG = {
    "action_weight_long", "clamp(1 + 2*C*(1 - ENERGY_LEVEL) - 0.5*N + 0.25*O*E, 0, 5)"};
// target_weight_*: nearer candidates count more, agreeable humans care more.
inline constexpr BenchFormula FORMULA_TARGET_WEIGHT = {"target_weight",
                                                       "(1 - DISTANCE) * (0.5 + 0.5*A)"};
// A weight that switches on the energy level.
inline constexpr BenchFormula FORMULA_ENERGY_SWITCH = {"energy_switch",
                                                       "ENERGY_LEVEL > 0.5 ? 1 + E : 0.2"};
// current_action_weight_modifier: conscientious humans stick with what they are doing.
inline constexpr BenchFormula FORMULA_CURRENT_ACTION = {"current_action", "WEIGHT * (1 + C)"};
// trial_score: time survived, with a bonus for ending with energy to spare.
inline constexpr BenchFormula FORMULA_TRIAL_SCORE = {"trial_score",
                                                     "0.7*TIME + 0.3*max(0, ENERGY_LEVEL - 0.2)"};

}  // namespace veldra::bench
