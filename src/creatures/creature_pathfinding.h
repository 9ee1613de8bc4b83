#pragma once
// Creature movement: a creature asks every tick to approach a cell; a new grid search runs only
// when that cell changes, the path is shortened to its corner cells where the straight way is
// clear, and the creature moves along it at the speed given. One pathfinder serves every
// search of the context, so searching allocates nothing once warmed up but the search grid,
// built once for each new terrain.
//
// Paths and goals are kept per creature id in a context slot; obj_creature's clean-up event
// forgets them (creature_pathfinding_forget).

#include <vector>

#include "runtime/instance.h"

namespace veldra {

struct TerrainCell;
class obj_creature;

// Cells still to reach, the next one first.
using CreaturePath = std::vector<const TerrainCell*>;

// Once-only: sets up the per-creature maps. A second call logs the once-only error with the
// call stack and changes nothing.
void initialize_creature_pathfinding();

// Moves the creature one tick toward `target_cell` (pixels per tick). Searches only when the
// goal differs from the last one asked for (by cell coordinates); nullptr clears the path and
// the creature stands.
void creature_approach(obj_creature& creature, const TerrainCell* target_cell, double speed);

// The corner cells of a path from the creature's cell to `target_cell`, ending with it; empty
// when the goal cannot be reached. Asking for the creature's own cell gives just that cell.
CreaturePath creature_find_path(const obj_creature& creature, const TerrainCell& target_cell);

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
const CreaturePath& creature_current_path(InstanceId creature);
// How many grid searches ran in this context; lets tests see that a search was skipped.
long creature_pathfinding_search_count();
// Drops the creature's goal and path; called from the creature's clean-up event.
void creature_pathfinding_forget(InstanceId creature);

}  // namespace veldra
