#include "world/level.h"

#include <algorithm>
#include <utility>

namespace veldra {

Level::Level(std::string name, std::vector<std::vector<LevelCell>> rows,
             const LevelCellTypeTable& types)
    : name(std::move(name)), cells(std::move(rows)), height(static_cast<int>(cells.size())) {
    for (const auto& row : cells)
        width = std::max(width, static_cast<int>(row.size()));
    for (int cy = 0; cy < height; ++cy) {
        auto& row = cells[cy];
        for (int cx = static_cast<int>(row.size()); cx < width; ++cx) {
            row.push_back(LevelCell{cx, cy, types.LCT_empty});
        }
    }
}

int level_get_num_cells_of_type(const Level& level, const LevelCellType* type) {
    return level_get_num_cells_of_types(level, std::span<const LevelCellType* const>(&type, 1));
}

int level_get_num_cells_of_types(const Level& level, std::span<const LevelCellType* const> types) {
    int count = 0;
    for (const auto& row : level.cells) {
        for (const LevelCell& cell : row) {
            count += std::find(types.begin(), types.end(), cell.type) != types.end();
        }
    }
    return count;
}

namespace {

// The terrain cell for one level cell, after its type's dump behaviour has run.
TerrainCell level_cell_dump(const LevelCell& cell, const LevelSpawnHooks& spawn) {
    TerrainCell terrain_cell(cell.cx, cell.cy, cell.type->is_traversable);
    cell.type->dump_callback(*cell.type, terrain_cell, spawn);
    return terrain_cell;
}

}  // namespace

Terrain level_dump(const Level& level, const LevelSpawnHooks& spawn) {
    std::vector<TerrainCell> cells;
    cells.reserve(static_cast<std::size_t>(level.width) * level.height);
    for (const auto& row : level.cells) {
        for (const LevelCell& cell : row)
            cells.push_back(level_cell_dump(cell, spawn));
    }
    return Terrain(level.width, level.height, std::move(cells));
}

}  // namespace veldra
