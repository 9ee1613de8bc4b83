#include "creatures/human_exploration.h"

#include <algorithm>
#include <cmath>
#include <vector>

#include "creatures/human.h"
#include "creatures/human_trial.h"

namespace veldra {

namespace {

// Squared, to spare the square root in a scan of up to a few hundred cells per decision.
double squared_distance_to_centre(double x, double y, const TerrainCell& cell) {
    const double dx = cell.room_rect.get_center_x() - x;
    const double dy = cell.room_rect.get_center_y() - y;
    return dx * dx + dy * dy;
}

}  // namespace

// The square of cells around the human's own cell that can hold a centre within range, clamped
// to the terrain, scanned row by row so the draw only depends on the generator.
const TerrainCell* human_find_exploration_pathfinding_target(const obj_human& human, Rng& rng,
                                                             const TerrainCell* previous_target) {
    const Terrain& terrain = human.world().current_terrain();
    const double range = human.exploration_range;
    const double range_squared = range * range;
    const double fresh_squared = range_squared / 4;  // half the range, squared
    const int cx = detail::room_to_cell(human.x);
    const int cy = detail::room_to_cell(human.y);
    const int reach = static_cast<int>(std::max(0.0, std::ceil(range / TERRAIN_CELL_SIZE)));

    ExplorationScratch& scratch = human.world().scratch.exploration;
    scratch.all.clear();
    scratch.fresh.clear();
    for (int y = std::max(0, cy - reach); y <= std::min(terrain.height - 1, cy + reach); ++y) {
        for (int x = std::max(0, cx - reach); x <= std::min(terrain.width - 1, cx + reach); ++x) {
            const TerrainCell& cell = *terrain.cell_at(x, y);
            if (!cell.is_traversable || (x == cx && y == cy) ||
                squared_distance_to_centre(human.x, human.y, cell) > range_squared)
                continue;
            scratch.all.push_back(&cell);
            if (previous_target &&
                squared_distance_to_centre(previous_target->room_rect.get_center_x(),
                                           previous_target->room_rect.get_center_y(),
                                           cell) >= fresh_squared)
                scratch.fresh.push_back(&cell);
        }
    }
    const auto& pool = scratch.fresh.empty() ? scratch.all : scratch.fresh;
    return rng.rng_array_get_random_element_or_default(pool,
                                                       static_cast<const TerrainCell*>(nullptr));
}

}  // namespace veldra
