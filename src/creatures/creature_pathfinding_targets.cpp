// Where creatures walk to when their goal is a creature: beside it, or away from it.

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <vector>

#include "creatures/creature.h"
#include "creatures/creature_pathfinding.h"
#include "creatures/trial_world.h"
#include "runtime/assertion.h"
#include "world/pathfinder_grid.h"
#include "world/terrain.h"

namespace veldra {

namespace {

// How far a flight looks for a cell, in cells each way: far enough to get out of a monster's
// reach in one plan, near enough that the search stays a few dozen cells.
constexpr int FLIGHT_REACH = 4;

// Squared: these only compare distances, many times a tick, so the root is left out.
double centre_distance_squared(double x, double y, const TerrainCell& cell) {
    const double dx = cell.room_rect.get_center_x() - x;
    const double dy = cell.room_rect.get_center_y() - y;
    return dx * dx + dy * dy;
}

bool is_free_neighbour(const TerrainCell* cell, int cx, int cy) {
    return cell && cell->is_traversable &&
           std::max(std::abs(cell->cx - cx), std::abs(cell->cy - cy)) == 1;
}

bool open(const Terrain& terrain, int cx, int cy) {
    const TerrainCell* cell = terrain.cell_at(cx, cy);
    return cell && cell->is_traversable;
}

void begin_flight_search(FlightSearch& search, const Terrain& terrain) {
    const auto cells = static_cast<std::size_t>(terrain.width) * terrain.height;
    if (search.visited.size() < cells)
        search.visited.resize(cells, 0);
    if (++search.generation == 0) {
        std::fill(search.visited.begin(), search.visited.end(), 0);
        search.generation = 1;
    }
    search.queue.clear();
}

// Breadth-first over the moves a path may take (no cut corners), within FLIGHT_REACH of the
// start; fills search.queue with the reachable cells, nearer ones first.
void flood_reachable(FlightSearch& search, const Terrain& terrain, const TerrainCell& start) {
    begin_flight_search(search, terrain);
    search.queue.push_back(start.cy * terrain.width + start.cx);
    search.visited[static_cast<std::size_t>(search.queue.back())] = search.generation;
    for (std::size_t head = 0; head < search.queue.size(); ++head) {
        const int cx = search.queue[head] % terrain.width;
        const int cy = search.queue[head] / terrain.width;
        for (std::size_t d = 0; d < pf_grid_steps.size(); ++d) {
            const int nx = cx + pf_grid_steps[d].dx;
            const int ny = cy + pf_grid_steps[d].dy;
            if (std::abs(nx - start.cx) > FLIGHT_REACH || std::abs(ny - start.cy) > FLIGHT_REACH ||
                !open(terrain, nx, ny) ||
                (d >= 4 && !(open(terrain, nx, cy) && open(terrain, cx, ny))))
                continue;
            const int index = ny * terrain.width + nx;
            std::uint32_t& stamp = search.visited[static_cast<std::size_t>(index)];
            if (stamp == search.generation)
                continue;
            stamp = search.generation;
            search.queue.push_back(index);
        }
    }
}

}  // namespace

const TerrainCell* creature_find_pathfinding_adjacent_target_cell(const obj_creature& creature,
                                                                  int cx, int cy) {
    const Terrain& terrain = creature.world().current_terrain();
    if (const TerrainCell* goal = creature_current_goal(creature); is_free_neighbour(goal, cx, cy))
        return goal;
    const TerrainCell* best = nullptr;
    double best_distance = 0;
    for (const PfGridStep& step : pf_grid_steps) {
        const TerrainCell* cell = terrain.cell_at(cx + step.dx, cy + step.dy);
        if (!cell || !cell->is_traversable)
            continue;
        const double distance = centre_distance_squared(creature.x, creature.y, *cell);
        if (!best || distance < best_distance) {
            best = cell;
            best_distance = distance;
        }
    }
    if (best)
        return best;
    const TerrainCell* own = terrain.cell_at(cx, cy);
    return own && own->is_traversable ? own : nullptr;
}

const TerrainCell* creature_find_pathfinding_avoiding_target_cell(const obj_creature& creature,
                                                                  const Instance& target) {
    const Terrain& terrain = creature.world().current_terrain();
    const TerrainCell* start = terrain.cell_at_room(creature.x, creature.y);
    if (!start)
        return nullptr;
    FlightSearch& search = creature.world().pathfinding.flight;
    flood_reachable(search, terrain, *start);
    const TerrainCell* best = nullptr;
    const double dx = creature.x - target.x;
    const double dy = creature.y - target.y;
    double best_distance = dx * dx + dy * dy;
    for (int index : search.queue) {
        const TerrainCell& cell = terrain.cells[static_cast<std::size_t>(index)];
        const double distance = centre_distance_squared(target.x, target.y, cell);
        if (distance > best_distance) {
            best = &cell;
            best_distance = distance;
        }
    }
    return best;
}

}  // namespace veldra
