#pragma once
// How one trial ended. Counts and ticks stay whole numbers here; the record's text and numbers
// are made where it becomes CSV or JSON (trial_data.h).

#include <cstdint>

#include "util/ticks.h"

namespace veldra {

enum class TrialOutcome {
    survived,  // the time ran out with the player's human alive
    perished,  // the player's human is gone
};

struct TrialResult {
    TrialOutcome outcome = TrialOutcome::survived;
    Ticks time_left = 0;  // not spent
    std::int64_t num_monsters_remaining = 0;
    std::int64_t num_food_remaining = 0;
    std::int64_t num_humans_remaining = 0;
    double energy_remaining = 0;  // the player's energy at the end; 0 without a player
    double trial_score = 0;       // the configuration's trial_score formula
};

}  // namespace veldra
