#pragma once
// Where a human goes when it explores.

#include "util/rng.h"
#include "world/terrain.h"

namespace veldra {

class obj_human;

// A traversable cell other than the human's own, whose centre lies within the human's
// exploration_range, drawn uniformly with `rng`; nullptr when there is none. When
// `previous_target` (the cell of the human's last exploration) is given, cells at least half
// the range away from it are preferred, so that a human does not keep exploring one corner.
const TerrainCell* human_find_exploration_pathfinding_target(
    const obj_human& human, Rng& rng, const TerrainCell* previous_target = nullptr);

}  // namespace veldra
