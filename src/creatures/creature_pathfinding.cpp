// Creature pathfinding: per-creature goals and paths, the grid search and path following.

#include "creatures/creature_pathfinding.h"

#include <cmath>
#include <cstdint>
#include <optional>

#include "creatures/creature.h"
#include "creatures/trial_world.h"
#include "runtime/assertion.h"
#include "runtime/callstack.h"
#include "runtime/once.h"
#include "util/geometry.h"
#include "world/pathfinder.h"
#include "world/terrain.h"

namespace veldra {

namespace {

// Entering a sand cell costs this many times its length: creatures cross sand at roughly two
// thirds of their speed, so a detour around a small patch is often quicker.
constexpr double SAND_STEP_COST_FACTOR = 1.5;

// Eight directions; a diagonal step needs both cells beside it open, so no corner is cut.
PfGridWeightedNeighbors terrain_neighbors(const Terrain& terrain) {
    return PfGridWeightedNeighbors(
        terrain.width, terrain.height, PfGridMoves::with_diagonals,
        [&](int cell) { return terrain.cells[static_cast<std::size_t>(cell)].is_traversable; },
        [&](int cell) {
            return terrain.cells[static_cast<std::size_t>(cell)].is_sand ? SAND_STEP_COST_FACTOR
                                                                         : 1.0;
        });
}

int cell_index(const Terrain& terrain, const TerrainCell& cell) {
    return cell.cy * terrain.width + cell.cx;
}

// Drops every cell from which the straight way to the cell after next is clear, keeping only
// the corners. `nodes` starts with the creature's own cell, which is not part of the path.
void shorten_into(const Terrain& terrain, const std::vector<int>& nodes, CreaturePath& out) {
    out.clear();
    auto cell = [&](int index) { return &terrain.cells[static_cast<std::size_t>(index)]; };
    if (nodes.size() == 1) {
        out.push_back(cell(nodes[0]));
        return;
    }
    const TerrainCell* anchor = cell(nodes[0]);
    for (std::size_t i = 1; i + 1 < nodes.size(); ++i) {
        if (terrain_cells_colliding_between_cells(terrain, *anchor, *cell(nodes[i + 1])) == 0)
            continue;
        anchor = cell(nodes[i]);
        out.push_back(anchor);
    }
    out.push_back(cell(nodes.back()));
}

void find_path_into(const obj_creature& creature, const TerrainCell& target_cell,
                    CreaturePath& out) {
    CreaturePathfinding& state = creature.world().pathfinding;
    const Terrain& terrain = creature.world().current_terrain();
    out.clear();
    ++state.search_count;
    const TerrainCell* start = terrain.cell_at_room(creature.x, creature.y);
    if (!start || !target_cell.is_traversable)
        return;
    const GridPathfinder::Path* path = state.pathfinder_for(terrain).find_path(
        cell_index(terrain, *start), cell_index(terrain, target_cell), true);
    if (!path)
        return;
    state.nodes.clear();
    state.nodes.push_back(cell_index(terrain, *start));
    for (const auto* element : *path)
        state.nodes.push_back(element->node);
    shorten_into(terrain, state.nodes, out);
}

}  // namespace

GridPathfinder& CreaturePathfinding::pathfinder_for(const Terrain& terrain) {
    if (pathfinder && terrain.serial.value() == terrain_serial)
        return *pathfinder;
    if (!pathfinder) {
        pathfinder.emplace(PfGridEuclidean(terrain.width, terrain.height),
                           terrain_neighbors(terrain));
    } else {
        // The estimate depends on the grid's size only, and its table is the costlier to build.
        if (terrain.width != width || terrain.height != height)
            pathfinder->heuristic() = PfGridEuclidean(terrain.width, terrain.height);
        pathfinder->neighbor_function() = terrain_neighbors(terrain);
    }
    terrain_serial = terrain.serial.value();
    width = terrain.width;
    height = terrain.height;
    return *pathfinder;
}

void initialize_creature_pathfinding(CreaturePathfinding& pathfinding) {
    VELDRA_SCOPE();
    once_only_first_call(pathfinding.called);
}

void creature_approach(obj_creature& creature, const TerrainCell* target_cell, double speed) {
    CreaturePathState& state = creature.world().pathfinding.states[creature.id()];
    const std::optional<CellKey> goal =
        target_cell ? std::optional<CellKey>(CellKey{target_cell->cx, target_cell->cy})
                    : std::nullopt;
    // Undefined equals undefined, and a path asked for nothing is already empty.
    if (state.goal != goal) {
        state.goal = goal;
        if (target_cell)
            find_path_into(creature, *target_cell, state.path);
        else
            state.path.clear();
    }
    creature_follow_path(creature, state.path, speed);
}

CreaturePath creature_find_path(const obj_creature& creature, const TerrainCell& target_cell) {
    CreaturePath path;
    find_path_into(creature, target_cell, path);
    return path;
}

CreaturePath creature_find_partial_path(const obj_creature& creature,
                                        const TerrainCell& target_cell) {
    CreaturePath out;
    const Terrain& terrain = creature.world().current_terrain();
    const TerrainCell* start = terrain.cell_at_room(creature.x, creature.y);
    if (!start)
        return out;
    const GridPathfinder::Path* path =
        creature.world().pathfinding.pathfinder_for(terrain).find_path(
            cell_index(terrain, *start), cell_index(terrain, target_cell), false);
    if (!path || path->empty())
        return out;
    std::vector<int> nodes{cell_index(terrain, *start)};
    for (const auto* element : *path)
        nodes.push_back(element->node);
    shorten_into(terrain, nodes, out);
    return out;
}

void creature_follow_path(obj_creature& creature, CreaturePath& path, double speed) {
    if (path.empty())
        return;
    const double goal_x = path.front()->room_rect.get_center_x();
    const double goal_y = path.front()->room_rect.get_center_y();
    const double distance = point_distance(creature.x, creature.y, goal_x, goal_y);
    if (distance <= speed) {
        creature.x = goal_x;
        creature.y = goal_y;
        path.erase(path.begin());
        return;
    }
    creature.x += (goal_x - creature.x) / distance * speed;
    creature.y += (goal_y - creature.y) / distance * speed;
}

const TerrainCell* creature_current_goal(const obj_creature& creature) {
    const CreaturePathfinding& state = creature.world().pathfinding;
    const CreaturePathState* found = state.states.find(creature.id());
    if (!found || !found->goal)
        return nullptr;
    return creature.world().current_terrain().cell_at(found->goal->cx, found->goal->cy);
}

const CreaturePath& creature_current_path(const CreaturePathfinding& pathfinding,
                                          InstanceId creature) {
    const CreaturePathState* found = pathfinding.states.find(creature);
    return found ? found->path : pathfinding.no_path;
}

void creature_pathfinding_forget(CreaturePathfinding& pathfinding, InstanceId creature) {
    pathfinding.states.erase(creature);
}

}  // namespace veldra
