#include "world/terrain.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <random>
#include <utility>

#include "world_test_support.h"

namespace veldra {
namespace {

class TerrainTest : public testing::WorldTest {
protected:
    Terrain terrain_of(const std::vector<std::string>& rows) const {
        return level_dump(level_from_rows(rows), no_spawning);
    }

    static int colliding(const Terrain& terrain, int ax, int ay, int bx, int by) {
        return terrain_cells_colliding_between_cells(terrain, *terrain.cell_at(ax, ay),
                                                     *terrain.cell_at(bx, by));
    }
};

TEST_F(TerrainTest, CellLookupEdges) {
    const Terrain terrain = terrain_of({"    ", "    ", "    "});
    EXPECT_EQ(terrain.cell_at(-1, 0), nullptr);
    EXPECT_EQ(terrain.cell_at(4, 0), nullptr);
    EXPECT_EQ(terrain.cell_at(0, 3), nullptr);
    EXPECT_EQ(terrain.cell_at(3, 2)->cx, 3);
    EXPECT_EQ(terrain.cell_at(3, 2)->cy, 2);

    EXPECT_EQ(terrain.cell_at_room(-0.5, 10), nullptr);
    EXPECT_EQ(terrain.cell_at_room(10, -0.5), nullptr);
    EXPECT_EQ(terrain.cell_at_room(63.9, 0), terrain.cell_at(0, 0));
    EXPECT_EQ(terrain.cell_at_room(64, 64), terrain.cell_at(1, 1));
    EXPECT_EQ(terrain.cell_at_room(64 * 4, 0), nullptr);
    EXPECT_EQ(terrain.cell_at_room(64 * 4 - 0.01, 64 * 3 - 0.01), terrain.cell_at(3, 2));
    EXPECT_EQ(terrain.cell_at_room(std::numeric_limits<double>::quiet_NaN(), 0), nullptr);
}

TEST_F(TerrainTest, RoomRectIsTheFullSquare) {
    const TerrainCell cell(2, 3, true);
    EXPECT_EQ(cell.room_rect.x1, 128);
    EXPECT_EQ(cell.room_rect.y1, 192);
    EXPECT_EQ(cell.room_rect.x2, 192);
    EXPECT_EQ(cell.room_rect.y2, 256);
    EXPECT_EQ(cell.room_rect.get_center_x(), 160);
    EXPECT_FALSE(cell.is_sand || cell.is_rock);
    EXPECT_EQ(euclidean_distance_between_terrain_cells(cell, TerrainCell(5, 7, true)), 5.0);
}

TEST_F(TerrainTest, CollidingCellsInARow) {
    const Terrain terrain = terrain_of({"      ", "  r   ", " r x  ", "r     "});
    EXPECT_EQ(colliding(terrain, 0, 0, 5, 0), 0);  // clear row
    EXPECT_EQ(colliding(terrain, 0, 1, 5, 1), 1);  // one rock between
    EXPECT_EQ(colliding(terrain, 0, 2, 5, 2), 2);  // a rock and a hole
    EXPECT_EQ(colliding(terrain, 0, 3, 5, 3), 1);  // the start itself blocks
    EXPECT_EQ(colliding(terrain, 5, 3, 0, 3), 1);  // and the same from the other end
}

TEST_F(TerrainTest, CollidingCellsOnDiagonals) {
    const Terrain terrain = terrain_of({"    r", " r   ", "     ", "     "});
    EXPECT_EQ(colliding(terrain, 0, 0, 1, 1), 1);  // the end itself
    EXPECT_EQ(colliding(terrain, 2, 0, 1, 1), 1);
    EXPECT_EQ(colliding(terrain, 0, 1, 1, 0), 1);  // past the corner of (1, 1)
    EXPECT_EQ(colliding(terrain, 2, 2, 0, 0), 1);  // straight over (1, 1)
    EXPECT_EQ(colliding(terrain, 2, 0, 4, 2), 0);  // (4, 0) is in the box but beside the sweep
    EXPECT_EQ(colliding(terrain, 0, 3, 4, 0), 2);  // over (1, 1) onto the rock (4, 0)
}

TEST_F(TerrainTest, LineOfSightIsTheSameBothWaysAndInTheMirror) {
    // A rock at (2,1): the line from (2,3) to (4,1) and its mirror image from (2,3) to (0,1)
    // pass it alike.
    const Terrain example = terrain_of({"     ", "  r  ", "     ", "     "});
    EXPECT_EQ(colliding(example, 2, 3, 4, 1), colliding(example, 2, 3, 0, 1));

    std::mt19937 random(2024);
    constexpr int size = 9;
    for (int round = 0; round < 300; ++round) {
        std::vector<std::string> rows(size, std::string(size, ' '));
        for (auto& row : rows)
            for (char& c : row)
                c = random() % 5 == 0 ? 'r' : ' ';
        std::vector<std::string> mirrored = rows;
        for (auto& row : mirrored)
            std::reverse(row.begin(), row.end());
        std::vector<std::string> flipped(rows.rbegin(), rows.rend());
        const Terrain terrain = terrain_of(rows);
        const Terrain mirror = terrain_of(mirrored);
        const Terrain flip = terrain_of(flipped);
        for (int pair = 0; pair < 40; ++pair) {
            const int ax = random() % size, ay = random() % size;
            const int bx = random() % size, by = random() % size;
            const int count = colliding(terrain, ax, ay, bx, by);
            ASSERT_EQ(count, colliding(terrain, bx, by, ax, ay));
            ASSERT_EQ(count, colliding(mirror, size - 1 - ax, ay, size - 1 - bx, by))
                << ax << "," << ay << " to " << bx << "," << by << " round " << round;
            ASSERT_EQ(count, colliding(flip, ax, size - 1 - ay, bx, size - 1 - by));
        }
    }
}

TEST_F(TerrainTest, SerialChangesWheneverTheCellsMayHaveChanged) {
    // Caches of a terrain are keyed by its serial, so each of these must give a number the
    // terrain in question never had, or a stale cache would be taken for the new cells.
    Terrain first = terrain_of({"  "});
    const auto first_serial = first.serial.value();
    const Terrain copy = first;
    EXPECT_NE(copy.serial.value(), first_serial);

    Terrain held;
    const auto held_before = held.serial.value();
    held = std::move(first);
    EXPECT_EQ(held.serial.value(), first_serial);  // the same cells, now here
    EXPECT_NE(held.serial.value(), held_before);
    EXPECT_NE(first.serial.value(), first_serial);  // its cells went with the move

    // Refilled in place, as the trial and the test fixtures do: same address, new number.
    const auto before_refill = held.serial.value();
    held = terrain_of({"x "});
    EXPECT_NE(held.serial.value(), before_refill);
    const auto before_copy = held.serial.value();
    held = copy;
    EXPECT_NE(held.serial.value(), before_copy);
    EXPECT_NE(held.serial.value(), copy.serial.value());
}

}  // namespace
}  // namespace veldra
