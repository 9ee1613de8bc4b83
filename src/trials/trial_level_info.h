#pragma once
#include <cstdint>
#include <string>

#include "trials/trial_data.h"
#include "world/level.h"

namespace veldra {

// What a level holds at the start, counted from its cells as a session records it: monsters,
// food, random humans ("h"), the ten typed human counts, their sum, and sand.
TrialLevelInfo trial_level_info_from_level(const LevelCellTypeTable& types, const Level& level,
                                           const std::string& filename, std::int64_t play_order);

}  // namespace veldra
