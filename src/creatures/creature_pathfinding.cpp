// Creature pathfinding: per-creature goals and paths, the grid search and path following.

#include "creatures/creature_pathfinding.h"

#include <cmath>
#include <optional>
#include <unordered_map>

#include "creatures/creature.h"
#include "creatures/trial_world.h"
#include "runtime/assertion.h"
#include "runtime/callstack.h"
#include "runtime/context.h"
#include "runtime/once.h"
#include "util/geometry.h"
#include "world/pathfinder.h"
#include "world/terrain.h"

namespace veldra {

namespace {

// Entering a sand cell costs this many times its length: creatures cross sand at roughly two
// thirds of their speed, so a detour around a small patch is often quicker.
constexpr double SAND_STEP_COST_FACTOR = 1.5;

struct CellKey {
    int cx;
    int cy;
    bool operator==(const CellKey&) const = default;
};

struct CreaturePathState {
    std::optional<CellKey> goal;  // the cell last asked for; none at first and after nullptr
    CreaturePath path;
};

using GridPathfinder = Pathfinder<int, int, PfDenseNodeMap<int, int>>;

// One per context. The pathfinder's callbacks read `terrain`, set before each search, so one
// pathfinder (and its pools) serves every search on every terrain.
struct CreaturePathfinding {
    CreaturePathfinding()
        : pathfinder(
              [this](const int& a, const int& b) { return pf_grid_euclidean(width(), a, b); },
              [this](const int& cell, std::vector<PfNeighbor<int, int>*>& out,
                     StructPool<PfNeighbor<int, int>>& pool) {
                  return neighbors(cell, out, pool);
              }) {}
    CreaturePathfinding(const CreaturePathfinding&) = delete;
    CreaturePathfinding& operator=(const CreaturePathfinding&) = delete;

    int width() const { return terrain->width; }
    bool open(int cx, int cy) const {
        const TerrainCell* cell = terrain->cell_at(cx, cy);
        return cell && cell->is_traversable;
    }
    int neighbors(int cell, std::vector<PfNeighbor<int, int>*>& out,
                  StructPool<PfNeighbor<int, int>>& pool) const;

    bool called = false;
    // Looked up by id only, never walked, so hash order decides nothing.
    std::unordered_map<InstanceId, CreaturePathState> states;
    const Terrain* terrain = nullptr;  // of the search under way
    GridPathfinder pathfinder;
    std::vector<int> nodes;  // scratch: start cell and the found cells, as indices
    long search_count = 0;
    const CreaturePath no_path;
};

CreaturePathfinding& pathfinding() {
    return ctx().slot<CreaturePathfinding>();
}

// Eight directions; a diagonal step needs both cells beside it open, so no corner is cut.
int CreaturePathfinding::neighbors(int cell, std::vector<PfNeighbor<int, int>*>& out,
                                   StructPool<PfNeighbor<int, int>>& pool) const {
    const int cx = cell % terrain->width;
    const int cy = cell / terrain->width;
    int count = 0;
    for (int d = 0; d < static_cast<int>(pf_grid_steps.size()); ++d) {
        const auto [dx, dy] = pf_grid_steps[static_cast<std::size_t>(d)];
        if (!open(cx + dx, cy + dy) || (d >= 4 && !(open(cx + dx, cy) && open(cx, cy + dy))))
            continue;
        const int to = cell + dy * terrain->width + dx;
        const bool sand = terrain->cells[static_cast<std::size_t>(to)].is_sand;
        const double cost = pf_grid_step_cost(d) * (sand ? SAND_STEP_COST_FACTOR : 1.0);
        count = pf_add_neighbor(out, count, pool, to, cost, d);
    }
    return count;
}

const Terrain& current_terrain() {
    const Terrain* terrain = trial_world().terrain;
    VELDRA_ASSERT(terrain, "creature pathfinding before the trial set trial_world().terrain?");
    return *terrain;
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
    CreaturePathfinding& state = pathfinding();
    const Terrain& terrain = current_terrain();
    out.clear();
    ++state.search_count;
    const TerrainCell* start = terrain.cell_at_room(creature.x, creature.y);
    if (!start || !target_cell.is_traversable)
        return;
    state.terrain = &terrain;
    const GridPathfinder::Path* path = state.pathfinder.find_path(
        cell_index(terrain, *start), cell_index(terrain, target_cell), true);
    state.terrain = nullptr;
    if (!path)
        return;
    state.nodes.clear();
    state.nodes.push_back(cell_index(terrain, *start));
    for (const auto* element : *path)
        state.nodes.push_back(element->node);
    shorten_into(terrain, state.nodes, out);
}

}  // namespace

void initialize_creature_pathfinding() {
    VELDRA_SCOPE();
    once_only_first_call(pathfinding().called);
}

void creature_approach(obj_creature& creature, const TerrainCell* target_cell, double speed) {
    CreaturePathState& state = pathfinding().states[creature.id()];
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
    const CreaturePathfinding& state = pathfinding();
    const auto it = state.states.find(creature.id());
    if (it == state.states.end() || !it->second.goal)
        return nullptr;
    return current_terrain().cell_at(it->second.goal->cx, it->second.goal->cy);
}

const CreaturePath& creature_current_path(InstanceId creature) {
    const CreaturePathfinding& state = pathfinding();
    const auto it = state.states.find(creature);
    return it == state.states.end() ? state.no_path : it->second.path;
}

long creature_pathfinding_search_count() {
    return pathfinding().search_count;
}

void creature_pathfinding_forget(InstanceId creature) {
    if (has_ctx())
        pathfinding().states.erase(creature);
}

}  // namespace veldra
