#include "world/level.h"

#include <optional>
#include <string>
#include <vector>

#include "world_test_support.h"

namespace veldra {
namespace {

using LevelModel = testing::WorldTest;

TEST_F(LevelModel, ShortRowsArePaddedWithEmptyCells) {
    const Level level = level_from_rows({"xx", "xxxx", ""});
    EXPECT_EQ(level.width, 4);
    EXPECT_EQ(level.height, 3);
    EXPECT_EQ(rows_of(level), (std::vector<std::string>{"xx  ", "xxxx", "    "}));
    for (int cy = 0; cy < level.height; ++cy) {
        for (int cx = 0; cx < level.width; ++cx) {
            EXPECT_EQ(level.cell_at(cx, cy).cx, cx);
            EXPECT_EQ(level.cell_at(cx, cy).cy, cy);
        }
    }
}

TEST_F(LevelModel, CountsOfTypes) {
    const Level level = level_from_rows({"xxxx", "xhpx", "x0sx", "xxxx"});
    EXPECT_EQ(level_get_num_cells_of_type(level, types.LCT_hole), 12);
    EXPECT_EQ(level_get_num_cells_of_type(level, types.LCT_rock), 0);
    const std::vector<const LevelCellType*> humans{types.LCT_human_random,
                                                   types.all_typed_human_ai_level_cell_types[0]};
    EXPECT_EQ(level_get_num_cells_of_types(level, humans), 2);
    EXPECT_EQ(level_get_num_cells_of_types(level, {}), 0);

    const Level holes = level_from_rows({"xxx", "xxx"});
    const Terrain terrain = level_dump(holes, no_spawning);
    for (const TerrainCell& cell : terrain.cells)
        EXPECT_FALSE(cell.is_traversable);
}

// Records every hook call as "kind@cx,cy".
class LevelDump : public testing::WorldTest {
protected:
    LevelDump() {
        const auto recorder = [this](const char* kind) {
            return [this, kind](const TerrainCell& cell) { record(kind, cell); };
        };
        hooks.spawn_player = recorder("player");
        hooks.spawn_monster = recorder("monster");
        hooks.spawn_food = recorder("food");
        hooks.spawn_human_ai = [this](const TerrainCell& cell, std::optional<int> type_number) {
            record(type_number ? "human" + std::to_string(*type_number) : "human", cell);
        };
    }

    void record(const std::string& kind, const TerrainCell& cell) {
        calls.push_back(kind + "@" + std::to_string(cell.cx) + "," + std::to_string(cell.cy));
    }

    LevelSpawnHooks hooks;
    std::vector<std::string> calls;
};

TEST_F(LevelDump, SpawnsInRowMajorOrder) {
    const Level level = level_from_rows({"xrp", "m3s", "hfx"});
    const Terrain terrain = level_dump(level, hooks);
    EXPECT_EQ(calls, (std::vector<std::string>{"player@2,0", "monster@0,1", "human3@1,1",
                                               "human@0,2", "food@1,2"}));
    EXPECT_EQ(terrain.width, 3);
    EXPECT_EQ(terrain.height, 3);
    EXPECT_TRUE(terrain.cell_at(1, 0)->is_rock);
    EXPECT_FALSE(terrain.cell_at(1, 0)->is_traversable);
    EXPECT_TRUE(terrain.cell_at(2, 1)->is_sand);
    EXPECT_TRUE(terrain.cell_at(2, 1)->is_traversable);
    EXPECT_FALSE(terrain.cell_at(0, 0)->is_traversable);
}

TEST_F(LevelDump, RocksAndSandAreTerrainOnly) {
    const Level level = level_from_rows({"rs", "sp"});
    const Terrain terrain = level_dump(level, hooks);
    EXPECT_EQ(calls, (std::vector<std::string>{"player@1,1"}));
    EXPECT_TRUE(terrain.cell_at(0, 0)->is_rock);
    EXPECT_TRUE(terrain.cell_at(1, 0)->is_sand);
    EXPECT_TRUE(terrain.cell_at(0, 1)->is_sand);
    EXPECT_FALSE(terrain.cell_at(1, 1)->is_sand || terrain.cell_at(1, 1)->is_rock);
}

TEST_F(LevelDump, UnsetHooksDoNothingAndLevelIsUnchanged) {
    const Level level = level_from_rows({"hp", "mf"});
    const Terrain first = level_dump(level, no_spawning);
    const Terrain second = level_dump(level, no_spawning);
    EXPECT_TRUE(calls.empty());
    EXPECT_EQ(rows_of(level), (std::vector<std::string>{"hp", "mf"}));
    EXPECT_EQ(first.cells.size(), second.cells.size());
}

}  // namespace
}  // namespace veldra
