#pragma once
// A level from rows of level-file characters, for tests that lay out small levels by hand.

#include <string>
#include <utility>
#include <vector>

#include "world/level.h"
#include "world/level_cell_types.h"

namespace veldra::testing {

inline Level level_from_rows(const LevelCellTypeTable& types,
                             const std::vector<std::string>& rows) {
    std::vector<std::vector<LevelCell>> cells;
    for (int cy = 0; cy < static_cast<int>(rows.size()); ++cy) {
        cells.emplace_back();
        for (int cx = 0; cx < static_cast<int>(rows[cy].size()); ++cx)
            cells.back().push_back({cx, cy, types.from_char(rows[cy][cx])});
    }
    return Level("test", std::move(cells), types);
}

}  // namespace veldra::testing
