#pragma once
// Working memory of the creatures' searches, shared by every creature of a world and only ever
// grown, so that deciding and moving allocate nothing once the largest population and the
// widest search have been seen. No search calls another of the same kind, so sharing is safe.

#include <vector>

#include "runtime/instance_id.h"
#include "util/weighted_random_sampler.h"

namespace veldra {

struct TerrainCell;

// obj_human::choose_action_target.
struct TargetChoiceScratch {
    std::vector<double> distances;  // per instance index; NaN for "not a candidate"
    WeightedRandomSampler<InstanceId> sampler;
};

// human_find_exploration_pathfinding_target: the candidate cells of the last search.
struct ExplorationScratch {
    std::vector<const TerrainCell*> all;
    std::vector<const TerrainCell*> fresh;  // the ones far enough from the previous target
};

struct CreatureScratch {
    TargetChoiceScratch target_choice;
    ExplorationScratch exploration;
    std::vector<const TerrainCell*> monster_cells;  // a monster's candidate cells
};

}  // namespace veldra
