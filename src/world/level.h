#pragma once
// A level: the abstract description of where holes, rocks, sand, humans, the player, monsters
// and food are. Dumping it makes it real for one trial: a Terrain plus the entities its cells
// stand for. Dumping never changes the level, so a trial can be rerun from the same level.

#include <span>
#include <string>
#include <vector>

#include "world/level_cell_types.h"
#include "world/terrain.h"

namespace veldra {

struct LevelCell {
    int cx = 0;
    int cy = 0;
    const LevelCellType* type = nullptr;  // shared record of the cell-type table, not owned
};

struct Level {
    Level() = default;
    // Rows shorter than the longest are padded with LCT_empty cells of `types`, so afterwards
    // every row has `width` cells.
    Level(std::string name, std::vector<std::vector<LevelCell>> cells,
          const LevelCellTypeTable& types);

    const LevelCell& cell_at(int cx, int cy) const { return cells[cy][cx]; }

    std::string name;  // file stem for a loaded level; empty for a generated one
    std::vector<std::vector<LevelCell>> cells;  // cells[cy][cx]
    int width = 0;
    int height = 0;
};

int level_get_num_cells_of_type(const Level& level, const LevelCellType* type);
int level_get_num_cells_of_types(const Level& level, std::span<const LevelCellType* const> types);

// The terrain for a trial. Visits the cells row by row, left to right, so entities are spawned
// in that order. The same for automatic and interactive trials: scenery is drawn from the
// terrain, not spawned, so a trial's entities and their ids never depend on a window.
// Cells that stand for an entity call their hook in `spawn`.
Terrain level_dump(const Level& level, const LevelSpawnHooks& spawn);

}  // namespace veldra
