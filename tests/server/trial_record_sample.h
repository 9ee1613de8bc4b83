#pragma once
// Records as the game sends them: a TrialData made into its JSON form by the game's own code, so
// the server is tested against what the client really posts.

#include <string>

#include "serial/json.h"
#include "trials/trial_data.h"

namespace veldra::testing {

inline TrialData sample_trial_data(const std::string& user_id, const std::string& level_file,
                                   double seed, double trial_score) {
    TrialData data;
    data.user_id = user_id;
    data.config_version = "c7";
    data.game_version = "1.0.0.0";
    data.seed = seed;
    data.level_info.filename = level_file;
    data.level_info.play_order = 2;
    data.level_info.num_monsters = 3;
    data.level_info.num_food = 9;
    data.level_info.num_humans = 4;
    data.level_info.num_humans_h = 1;
    data.level_info.num_humans_per_type = {0, 1, 0, 2, 0, 0, 0, 0, 0, 0};
    data.level_info.num_sand = 17;
    data.traits = PersonalityTraits{.openness = 1,
                                    .conscientiousness = -2,
                                    .extraversion = 0.5,
                                    .agreeableness = 3,
                                    .neuroticism = -0.25};
    data.result = TrialResult{.outcome = TrialOutcome::perished,
                              .time_left = 120,
                              .num_monsters_remaining = 1,
                              .num_food_remaining = 4,
                              .num_humans_remaining = 2,
                              .energy_remaining = 12.5,
                              .trial_score = trial_score};
    return data;
}

inline std::string record_json(const TrialData& data) {
    return json_stringify(trial_data_to_value(data), false);
}

}  // namespace veldra::testing
