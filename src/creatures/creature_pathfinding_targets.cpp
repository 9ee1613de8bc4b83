// Where creatures walk to when their goal is a creature: beside it, or away from it.

#include <algorithm>
#include <array>
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

// The flight's square of cells with a closed ring around it, so that a step out of the square
// needs no bounds test: a flight searches a few dozen cells once a second per fleeing human, and
// asking the terrain for each of the eight neighbours of each cell was most of its cost.
constexpr int FLIGHT_SIDE = 2 * FLIGHT_REACH + 1;
constexpr int FLIGHT_WINDOW = FLIGHT_SIDE + 2;

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

// Breadth-first over the moves a path may take (no cut corners), within FLIGHT_REACH of the
// start; fills `queue` with the reachable cells, nearer ones first. The start itself need not be
// open: the search leaves it all the same.
void flood_reachable(std::vector<int>& queue, const Terrain& terrain, const TerrainCell& start) {
    // Window coordinates (wx, wy) are terrain cell (left + wx, top + wy).
    const int left = start.cx - FLIGHT_REACH - 1;
    const int top = start.cy - FLIGHT_REACH - 1;
    std::array<std::uint8_t, FLIGHT_WINDOW * FLIGHT_WINDOW> open{};
    for (int wy = 1; wy <= FLIGHT_SIDE; ++wy) {
        const int cy = top + wy;
        if (cy < 0 || cy >= terrain.height)
            continue;
        for (int wx = 1; wx <= FLIGHT_SIDE; ++wx) {
            const int cx = left + wx;
            if (cx >= 0 && cx < terrain.width)
                open[wy * FLIGHT_WINDOW + wx] =
                    terrain.cells[static_cast<std::size_t>(cy) * terrain.width + cx].is_traversable;
        }
    }
    // Each of the eight steps is settled without a branch: which neighbours are open and new
    // follows no pattern, and mispredicted tests were what this loop spent its time on.
    std::array<std::uint8_t, FLIGHT_WINDOW * FLIGHT_WINDOW> reached{};
    std::array<int, FLIGHT_SIDE * FLIGHT_SIDE + 1> order;  // window indices in the order reached
    std::size_t count = 0;
    const int origin = (FLIGHT_REACH + 1) * FLIGHT_WINDOW + FLIGHT_REACH + 1;
    order[count++] = origin;
    reached[origin] = 1;
    for (std::size_t head = 0; head < count; ++head) {
        const int from = order[head];
        // Unrolled, the step offsets become constants.
#pragma GCC unroll 8
        for (std::size_t d = 0; d < pf_grid_steps.size(); ++d) {
            const int to = from + pf_grid_steps[d].dy * FLIGHT_WINDOW + pf_grid_steps[d].dx;
            const unsigned corner_clear =
                d < 4 ? 1u
                      : open[from + pf_grid_steps[d].dx] &
                            open[from + pf_grid_steps[d].dy * FLIGHT_WINDOW];
            const unsigned step = open[to] & (reached[to] ^ 1u) & corner_clear;
            reached[to] |= static_cast<std::uint8_t>(step);
            order[count] = to;  // kept only when the step counts
            count += step;
        }
    }
    queue.clear();
    for (std::size_t i = 0; i < count; ++i) {
        const int cx = left + order[i] % FLIGHT_WINDOW;
        const int cy = top + order[i] / FLIGHT_WINDOW;
        queue.push_back(cy * terrain.width + cx);
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
    flood_reachable(search.queue, terrain, *start);
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
