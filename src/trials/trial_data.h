#pragma once
// One record per finished trial: who played, with which configuration and program version, on
// which level with what in it, with which traits, and how it ended. Written as CSV (one header
// line, one line per record, ";" between cells, columns in sorted order of their field paths)
// and as JSON for the research server.

#include <array>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "config/personality_traits.h"
#include "runtime/value.h"
#include "trials/trial_result.h"

namespace veldra {

struct TrialLevelInfo {
    std::string filename;
    std::int64_t play_order = 0;  // the run's index in its batch
    std::int64_t num_monsters = 0;
    std::int64_t num_food = 0;
    std::int64_t num_humans = 0;                         // random humans plus every typed one
    std::int64_t num_humans_h = 0;                       // cells of random humans ("h")
    std::array<std::int64_t, 10> num_humans_per_type{};  // cells "0" to "9"
    std::int64_t num_sand = 0;
};

struct TrialData {
    std::optional<std::string> user_id;  // automatic runs have none
    std::string config_version;
    std::string game_version;
    double seed = 0;
    TrialLevelInfo level_info;
    PersonalityTraits traits;
    TrialResult result;
};

// The result as a struct (the JSON form); the outcome becomes "survived" or "perished".
Value trial_result_to_value(const TrialResult& result);

// The record as a nested struct, fields in record order (the JSON form).
Value trial_data_to_value(const TrialData& data);

// The 33 column names: leaf field paths joined by ".", sorted by character code.
const std::vector<std::string>& trial_data_get_flattened_names();

// The header line and one data line, each ending in "\n".
std::string trial_data_as_csv_headers();
std::string trial_data_as_csv(const TrialData& data);
// The same line from the record's struct form (what a promise of a record carries).
std::string trial_data_value_as_csv(const Value& record);

// "num_food_remaining" -> "numFoodRemaining"; empty parts are dropped ("a__b" -> "aB").
std::string _snake_to_camel_case(std::string_view text);

}  // namespace veldra
