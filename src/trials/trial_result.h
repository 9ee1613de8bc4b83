#pragma once
// How one trial ended.

#include <string>

namespace veldra {

inline constexpr const char* TRES_SURVIVED = "survived";
inline constexpr const char* TRES_PERISHED = "perished";

struct TrialResult {
    std::string type;      // TRES_SURVIVED or TRES_PERISHED
    double time_left = 0;  // ticks not spent
    double num_monsters_remaining = 0;
    double num_food_remaining = 0;
    double num_humans_remaining = 0;
    double energy_remaining = 0;  // the player's energy at the end; 0 without a player
    double trial_score = 0;       // the configuration's trial_score formula
};

}  // namespace veldra
