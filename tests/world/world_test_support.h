#pragma once
// Shared by the world tests: a cell-type table of the test's own, levels written as rows of
// characters, and a scratch directory removed afterwards.

#include <gtest/gtest.h>

#include <filesystem>
#include <optional>
#include <string>
#include <vector>

#include "runtime/files.h"
#include "support/scratch_directory.h"
#include "world/level.h"
#include "world/level_cell_types.h"

namespace veldra::testing {

class WorldTest : public ::testing::Test {
protected:
    WorldTest() { initialize_level_cell_types(types); }

    // A directory of this test's own, made on first use.
    const std::filesystem::path& scratch() {
        if (!scratch_)
            scratch_.emplace("veldra_world");
        return scratch_->path();
    }

    // Each string a row, each character a cell; unknown characters are a test mistake.
    Level level_from_rows(const std::vector<std::string>& rows) const {
        std::vector<std::vector<LevelCell>> cells(rows.size());
        for (std::size_t cy = 0; cy < rows.size(); ++cy) {
            for (std::size_t cx = 0; cx < rows[cy].size(); ++cx) {
                const LevelCellType* type = types.from_char(rows[cy][cx]);
                EXPECT_NE(type, nullptr) << "no cell type for '" << rows[cy][cx] << "'";
                cells[cy].push_back(LevelCell{int(cx), int(cy), type});
            }
        }
        return Level("test", std::move(cells), types);
    }

    static std::vector<std::string> rows_of(const Level& level) {
        std::vector<std::string> rows;
        for (const auto& row : level.cells) {
            std::string text;
            for (const LevelCell& cell : row)
                text.push_back(cell.type->character);
            rows.push_back(text);
        }
        return rows;
    }

    LevelCellTypeTable types;
    DiskFiles files;
    LevelSpawnHooks no_spawning;  // levels dumped here create no entities

private:
    std::optional<ScratchDirectory> scratch_;
};

}  // namespace veldra::testing
