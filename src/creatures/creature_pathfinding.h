#pragma once
// Creature movement: a creature asks every tick to approach a cell; a new grid search runs only
// when that cell changes, the path is shortened to its corner cells where the straight way is
// clear, and the creature moves along it at the speed given. One pathfinder serves every
// search of the simulation, so searching allocates nothing once warmed up but the search grid,
// built once for each new terrain.
//
// Paths and goals are kept per creature id in CreaturePathfinding, which each creature reaches
// through its world; obj_creature's clean-up event forgets them (creature_pathfinding_forget).

#include <cstdint>
#include <optional>
#include <vector>

#include "runtime/flat_id_map.h"
#include "runtime/instance.h"
#include "world/pathfinder.h"

namespace veldra {

class Terrain;
struct TerrainCell;
class obj_creature;

// Cells still to reach, the next one first.
using CreaturePath = std::vector<const TerrainCell*>;

struct CellKey {
    int cx;
    int cy;
    bool operator==(const CellKey&) const = default;
};

struct CreaturePathState {
    std::optional<CellKey> goal;  // the cell last asked for; none at first and after nullptr
    CreaturePath path;
};

// The inlined grid callables and the bucket open set: the same searches as any other form of
// the pathfinder, step for step, at about half the cost of std::function callbacks and a heap.
using GridPathfinder = Pathfinder<int, int, PfDenseNodeMap<int, int>, PfGridEuclidean,
                                  PfGridWeightedNeighbors, PfBucketOpenSet<int>>;

// The cells a flight found, reused by every creature.
struct FlightSearch {
    std::vector<int> queue;  // cell indices in the order reached
};

// One per simulation. The pathfinder is made at the first search and kept: a new terrain only
// replaces its callables (built from the terrain's cells once), so its tables and pools serve
// every search on every terrain.
struct CreaturePathfinding {
    // Ready to search `terrain`.
    GridPathfinder& pathfinder_for(const Terrain& terrain);

    bool called = false;
    // Looked up by id only, every tick for every creature; never walked, so no order decides
    // anything. Nothing holds on to a state across the creation or end of a creature.
    FlatIdMap<CreaturePathState> states;
    std::optional<GridPathfinder> pathfinder;
    // The terrain the callables were built from. By serial, not address: the next trial's
    // terrain lives where the last one did.
    std::uint64_t terrain_serial = 0;
    int width = 0;
    int height = 0;
    std::vector<int> nodes;  // scratch: start cell and the found cells, as indices
    // How many grid searches ran; lets tests see that a search was skipped.
    long search_count = 0;
    const CreaturePath no_path{};
    FlightSearch flight;
};

// Once-only: a second call logs the once-only error with the call stack and changes nothing.
void initialize_creature_pathfinding(CreaturePathfinding& pathfinding);

// Moves the creature one tick toward `target_cell` (pixels per tick). Searches only when the
// goal differs from the last one asked for (by cell coordinates); nullptr clears the path and
// the creature stands.
void creature_approach(obj_creature& creature, const TerrainCell* target_cell, double speed);

// The corner cells of a path from the creature's cell to `target_cell`, ending with it; empty
// when the goal cannot be reached. Asking for the creature's own cell gives just that cell.
CreaturePath creature_find_path(const obj_creature& creature, const TerrainCell& target_cell);

// The corner cells of the way toward `target_cell` as far as it can be reached: the same path as
// creature_find_path when the goal is reachable, else one to the explored cell that looked
// nearest to it (empty when none). For debug views, which show how far a creature gets: it
// leaves the simulation's search count and scratch alone.
CreaturePath creature_find_partial_path(const obj_creature& creature,
                                        const TerrainCell& target_cell);

// Moves the creature toward the centre of path[0]; once within `speed` of it the creature is
// placed on it and the entry is taken off.
void creature_follow_path(obj_creature& creature, CreaturePath& path, double speed);

// A traversable neighbour of cell (cx, cy), for walking up to something that stands in that
// cell: the creature's current goal while it still is one (so a target stepping about does not
// cost a new search every time), else the one nearest to the creature; the cell itself when no
// neighbour is free and it is traversable; else nullptr.
const TerrainCell* creature_find_pathfinding_adjacent_target_cell(const obj_creature& creature,
                                                                  int cx, int cy);

// A cell the creature can reach within a few cells that lies farthest from `target`, for
// flight; nullptr when no reachable cell is farther from the target than the creature's own.
const TerrainCell* creature_find_pathfinding_avoiding_target_cell(const obj_creature& creature,
                                                                  const Instance& target);

// The cell the creature was last asked to approach on the current terrain; nullptr when none.
const TerrainCell* creature_current_goal(const obj_creature& creature);
// The creature's current path (empty when none), for debug views and tests; valid until a
// creature moves for the first time or ends.
const CreaturePath& creature_current_path(const CreaturePathfinding& pathfinding,
                                          InstanceId creature);
// Drops the creature's goal and path; called from the creature's clean-up event.
void creature_pathfinding_forget(CreaturePathfinding& pathfinding, InstanceId creature);

}  // namespace veldra
