#include "world/level_generator.h"

#include <vector>

#include "util/geometry.h"
#include "world_test_support.h"

namespace veldra {
namespace {

class LevelGenerator : public testing::WorldTest {
protected:
    // Traversable cells 4-connected to the first one found.
    static int connected_traversable(const Level& level) {
        std::vector<std::vector<bool>> seen(level.height, std::vector<bool>(level.width, false));
        std::vector<std::pair<int, int>> stack;
        for (const auto& row : level.cells) {
            for (const LevelCell& cell : row) {
                if (stack.empty() && cell.type->is_traversable)
                    stack.push_back({cell.cx, cell.cy});
            }
        }
        if (stack.empty())
            return 0;
        seen[stack[0].second][stack[0].first] = true;
        int count = 0;
        while (!stack.empty()) {
            const auto [cx, cy] = stack.back();
            stack.pop_back();
            ++count;
            for (const auto& [dx, dy] : {std::pair{1, 0}, {-1, 0}, {0, 1}, {0, -1}}) {
                const int nx = cx + dx, ny = cy + dy;
                if (nx < 0 || ny < 0 || nx >= level.width || ny >= level.height)
                    continue;
                if (seen[ny][nx] || !level.cell_at(nx, ny).type->is_traversable)
                    continue;
                seen[ny][nx] = true;
                stack.push_back({nx, ny});
            }
        }
        return count;
    }

    static int traversable(const Level& level) {
        int count = 0;
        for (const auto& row : level.cells) {
            for (const LevelCell& cell : row)
                count += cell.type->is_traversable;
        }
        return count;
    }
};

TEST_F(LevelGenerator, SameStateSameLevel) {
    Rng a(101), b(101);
    const auto first = generate_level(types, 32, 24, 3, 4, 5, 20, a);
    const auto second = generate_level(types, 32, 24, 3, 4, 5, 20, b);
    ASSERT_TRUE(first && second);
    EXPECT_EQ(rows_of(*first), rows_of(*second));
    EXPECT_EQ(a.seed, b.seed);
    EXPECT_TRUE(first->name.empty());
    const auto third = generate_level(types, 32, 24, 3, 4, 5, 20, a);
    ASSERT_TRUE(third);
    EXPECT_NE(rows_of(*first), rows_of(*third));
}

TEST_F(LevelGenerator, IslandWithRocksInsideAndHolesOutside) {
    for (const auto& [width, height, seed] : {std::tuple{24, 24, 1}, {40, 18, 2}, {17, 31, 3}}) {
        Rng rng(seed);
        const auto level = generate_level(types, width, height, 2, 3, 4, 15, rng);
        ASSERT_TRUE(level) << width << " x " << height;
        EXPECT_EQ(level->width, width);
        EXPECT_EQ(level->height, height);
        const double radius = std::max(width, height) / 2.0;
        for (const auto& row : level->cells) {
            for (const LevelCell& cell : row) {
                const double distance = point_distance(cell.cx, cell.cy, width / 2.0, height / 2.0);
                ASSERT_EQ(cell.type == types.LCT_hole, distance >= radius)
                    << "cell " << cell.cx << ", " << cell.cy;
            }
        }
        EXPECT_EQ(connected_traversable(*level), traversable(*level));
    }
}

TEST_F(LevelGenerator, PlacesRequestedThings) {
    Rng rng(7);
    const auto level = generate_level(types, 30, 30, 3, 4, 5, 25, rng);
    ASSERT_TRUE(level);
    EXPECT_EQ(level_get_num_cells_of_type(*level, types.LCT_player), 1);
    EXPECT_EQ(level_get_num_cells_of_type(*level, types.LCT_monster), 3);
    EXPECT_EQ(level_get_num_cells_of_type(*level, types.LCT_food), 4);
    EXPECT_EQ(level_get_num_cells_of_type(*level, types.LCT_human_random), 5);
    EXPECT_EQ(level_get_num_cells_of_type(*level, types.LCT_sand), 25);
    EXPECT_GT(level_get_num_cells_of_type(*level, types.LCT_rock), 0);
}

TEST_F(LevelGenerator, MoreMonstersThanRoomFillsEveryFreeCell) {
    Rng rng(8);
    const auto level = generate_level(types, 16, 16, 10000, 5, 5, 0, rng);
    ASSERT_TRUE(level);
    EXPECT_EQ(level_get_num_cells_of_type(*level, types.LCT_empty), 0);
    EXPECT_EQ(level_get_num_cells_of_type(*level, types.LCT_food), 0);
    EXPECT_EQ(level_get_num_cells_of_type(*level, types.LCT_human_random), 0);
    EXPECT_EQ(level_get_num_cells_of_type(*level, types.LCT_player), 1);
    EXPECT_EQ(level_get_num_cells_of_type(*level, types.LCT_monster), traversable(*level) - 1);
}

TEST_F(LevelGenerator, ImpossibleRequestsEndWithNothing) {
    Rng rng(9);
    const double before = rng.seed;
    EXPECT_FALSE(generate_level(types, 2, 2, 1, 1, 1, 0, rng));
    EXPECT_NE(rng.seed, before);  // all attempts ran, each drawing its noise
    EXPECT_FALSE(generate_level(types, 0, 5, 1, 1, 1, 0, rng));
    // Sand asked for every empty cell leaves no room for the player; growth must still stop.
    EXPECT_FALSE(generate_level(types, 12, 12, 0, 0, 0, 100000, rng));
}

}  // namespace
}  // namespace veldra
