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
    const int reach =
        terrain_cells_clamped(std::ceil(range / TERRAIN_CELL_SIZE), terrain.width + terrain.height);

    ExplorationScratch& scratch = human.world().scratch.exploration;
    const int x_first = std::max(0, cx - reach);
    const int x_last = std::min(terrain.width - 1, cx + reach);
    const int y_first = std::max(0, cy - reach);
    const int y_last = std::min(terrain.height - 1, cy + reach);
    // Room for every cell of the square, then trimmed: each cell is appended without a branch,
    // since whether a cell is open and in range follows no pattern the predictor could learn.
    const std::size_t square = x_last < x_first || y_last < y_first
                                   ? 0
                                   : static_cast<std::size_t>(x_last - x_first + 1) *
                                         static_cast<std::size_t>(y_last - y_first + 1);
    scratch.all.resize(square + 1);
    scratch.fresh.resize(square + 1);
    const TerrainCell** all = scratch.all.data();
    const TerrainCell** fresh = scratch.fresh.data();
    std::size_t all_count = 0;
    std::size_t fresh_count = 0;
    const double previous_x = previous_target ? previous_target->room_rect.get_center_x() : 0.0;
    const double previous_y = previous_target ? previous_target->room_rect.get_center_y() : 0.0;
    for (int y = y_first; y <= y_last; ++y) {
        for (int x = x_first; x <= x_last; ++x) {
            const TerrainCell& cell = *terrain.cell_at(x, y);
            const bool taken =
                cell.is_traversable & !(x == cx && y == cy) &
                !(squared_distance_to_centre(human.x, human.y, cell) > range_squared);
            const bool is_fresh =
                taken & (previous_target != nullptr) &
                (squared_distance_to_centre(previous_x, previous_y, cell) >= fresh_squared);
            all[all_count] = &cell;
            all_count += taken;
            fresh[fresh_count] = &cell;
            fresh_count += is_fresh;
        }
    }
    scratch.all.resize(all_count);
    scratch.fresh.resize(fresh_count);
    const auto& pool = scratch.fresh.empty() ? scratch.all : scratch.fresh;
    return rng.rng_array_get_random_element_or_default(pool,
                                                       static_cast<const TerrainCell*>(nullptr));
}

}  // namespace veldra
