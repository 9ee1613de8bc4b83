#pragma once
// Formulas that give no number. A formula that gives NaN or an infinity for traits the
// configuration offers would quietly sample nonsense (a weight of NaN), make a speed, a range or
// a score meaningless, or overflow where a range becomes a count of cells. So every formula is
// evaluated once the configuration is complete, at every combination of the trait values that
// options_* offer and in the situations the game calls it in:
//
//   ENERGY_LEVEL  0, 0.5 and 1 (keys given it; 0 is the dead player's at scoring)
//   TIME          0.5 and 1 (trial_score: at least one tick has run at the end)
//   DISTANCE      0, 0.5 and 1 (target weights)
//   WEIGHT        each of the nine action weights at the same traits and energy
//
// Only the variables a formula names are varied. A formula may name a variable its key is not
// given (it reads NaN) in a branch those traits never take. Beyond MAX_CHECKED_EVALUATIONS per
// formula, the traits it reads take only their smallest, middle and largest offered values.

#include <cstddef>
#include <string>

#include "config/game_configurations.h"

namespace veldra {

inline constexpr std::size_t MAX_CHECKED_EVALUATIONS = 200000;

// Empty when every formula gives a finite number; else the first formula in table order that
// does not, with its key, its text, the traits and the situation, and the variable it reads
// that its key is not given, if any.
std::string config_formulas_problem(const GameConfigurations& configs);

}  // namespace veldra
