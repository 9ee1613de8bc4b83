#include "creatures/creature_pathfinding.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <random>
#include <string>
#include <vector>

#include "creature_test_fixture.h"
#include "creatures/monster.h"
#include "world/pathfinder_grid.h"
#include "world/terrain.h"

namespace veldra {
namespace {

class CreaturePathfindingTest : public testing::CreatureTest {
protected:
    // A walker that nothing else moves: its own tick would wander off.
    obj_monster& walker(int cx, int cy) {
        return create_unticked<obj_monster>(centre(cx), centre(cy));
    }

    std::vector<std::pair<int, int>> cells_of(const CreaturePath& path) {
        std::vector<std::pair<int, int>> cells;
        for (const TerrainCell* cell : path)
            cells.emplace_back(cell->cx, cell->cy);
        return cells;
    }
    using Cells = std::vector<std::pair<int, int>>;
};

// The flight cell worked out the plain way, cell by cell through Terrain::cell_at with a
// visited flag per terrain cell: breadth-first within four cells, no cut corners, and the first
// cell reached wins a tie. The flight search's own window must agree with it everywhere,
// borders and blocked start cells included.
const TerrainCell* plain_flight_cell(const Terrain& t, double x, double y, const Instance& from) {
    const TerrainCell* start = t.cell_at_room(x, y);
    if (!start)
        return nullptr;
    auto open = [&](int cx, int cy) {
        const TerrainCell* cell = t.cell_at(cx, cy);
        return cell && cell->is_traversable;
    };
    std::vector<bool> seen(t.cells.size());
    std::vector<const TerrainCell*> queue{start};
    seen[start->cy * t.width + start->cx] = true;
    for (std::size_t head = 0; head < queue.size(); ++head) {
        const int cx = queue[head]->cx;
        const int cy = queue[head]->cy;
        for (std::size_t d = 0; d < pf_grid_steps.size(); ++d) {
            const int nx = cx + pf_grid_steps[d].dx;
            const int ny = cy + pf_grid_steps[d].dy;
            if (std::abs(nx - start->cx) > 4 || std::abs(ny - start->cy) > 4 || !open(nx, ny) ||
                (d >= 4 && !(open(nx, cy) && open(cx, ny))) || seen[ny * t.width + nx])
                continue;
            seen[ny * t.width + nx] = true;
            queue.push_back(t.cell_at(nx, ny));
        }
    }
    const TerrainCell* best = nullptr;
    double best_distance = (x - from.x) * (x - from.x) + (y - from.y) * (y - from.y);
    for (const TerrainCell* cell : queue) {
        const double dx = cell->room_rect.get_center_x() - from.x;
        const double dy = cell->room_rect.get_center_y() - from.y;
        if (dx * dx + dy * dy > best_distance) {
            best = cell;
            best_distance = dx * dx + dy * dy;
        }
    }
    return best;
}

TEST_F(CreaturePathfindingTest, ShorteningKeepsOnlyTheCorners) {
    const Terrain& t = load({
        "     ",
        "xxxx ",
        "     ",
    });
    auto& m = walker(0, 0);
    // Along the top row and down the right side: the top-right corner, then straight down.
    EXPECT_EQ(cells_of(creature_find_path(m, *t.cell_at(4, 2))), (Cells{{4, 0}, {4, 2}}));
    // A clear straight line needs no corner at all.
    EXPECT_EQ(cells_of(creature_find_path(m, *t.cell_at(3, 0))), (Cells{{3, 0}}));
    // Round the wall's end and back along the bottom: a whole cell cannot pass the wall's
    // corner diagonally, so the corner kept is the one below it.
    m.x = centre(4);
    m.y = centre(0);
    EXPECT_EQ(cells_of(creature_find_path(m, *t.cell_at(0, 2))), (Cells{{4, 2}, {0, 2}}));
}

TEST_F(CreaturePathfindingTest, OwnCellIsOneEntryAndTheCreatureStopsAtItsCentre) {
    const Terrain& t = load({"   "});
    auto& m = walker(1, 0);
    m.x += 10;
    EXPECT_EQ(cells_of(creature_find_path(m, *t.cell_at(1, 0))), (Cells{{1, 0}}));
    for (int i = 0; i < 20; ++i)
        creature_approach(m, t.cell_at(1, 0), 3);
    EXPECT_EQ(m.x, centre(1));
    EXPECT_EQ(m.y, centre(0));
    EXPECT_TRUE(creature_current_path(pathfinding, m.id()).empty());
}

TEST_F(CreaturePathfindingTest, SearchesOnlyWhenTheGoalCellChanges) {
    const Terrain& t = load({"       ", "       "});
    auto& m = walker(0, 0);
    const long before = pathfinding.search_count;
    creature_approach(m, t.cell_at(6, 0), 2);
    creature_approach(m, t.cell_at(6, 0), 2);
    creature_approach(m, &t.cells[6], 2);  // the same cell by another pointer
    EXPECT_EQ(pathfinding.search_count, before + 1);
    EXPECT_EQ(m.x, centre(0) + 6);
    creature_approach(m, t.cell_at(6, 1), 2);
    EXPECT_EQ(pathfinding.search_count, before + 2);
}

TEST_F(CreaturePathfindingTest, PushedCreatureKeepsWalkingToTheNextCentre) {
    const Terrain& t = load({"     ", "     ", "     "});
    auto& m = walker(0, 1);
    creature_approach(m, t.cell_at(4, 1), 4);
    const long searches = pathfinding.search_count;
    m.x = centre(2);
    m.y = centre(2) + 20;  // knocked into the row below
    for (int i = 0; i < 100; ++i)
        creature_approach(m, t.cell_at(4, 1), 4);
    EXPECT_EQ(pathfinding.search_count, searches);
    EXPECT_EQ(m.x, centre(4));
    EXPECT_EQ(m.y, centre(1));
}

TEST_F(CreaturePathfindingTest, UnreachableGoalGivesNoPathAndNoMovement) {
    const Terrain& t = load({"  x  ", "  x  "});
    auto& m = walker(0, 0);
    EXPECT_TRUE(creature_find_path(m, *t.cell_at(4, 0)).empty());
    EXPECT_TRUE(creature_find_path(m, *t.cell_at(2, 0)).empty());  // a blocked goal
    creature_approach(m, t.cell_at(4, 1), 5);
    EXPECT_EQ(m.x, centre(0));
    EXPECT_EQ(m.y, centre(0));
}

TEST_F(CreaturePathfindingTest, DiagonalStepsNeverCutABlockedCorner) {
    const Terrain& t = load({
        " x",
        "  ",
    });
    auto& m = walker(0, 0);
    // (0,0) to (1,1) passes beside the hole at (1,0): the way goes through (0,1).
    EXPECT_EQ(cells_of(creature_find_path(m, *t.cell_at(1, 1))), (Cells{{0, 1}, {1, 1}}));
}

TEST_F(CreaturePathfindingTest, SandIsWalkedRoundWhenTheWayRoundIsCheaper) {
    // Two ways past the wall, equally long, one of them over three sand cells: the other is
    // taken, whichever side the sand lies on.
    auto rows_of = [](const CreaturePath& path) {
        std::vector<int> rows;
        for (const TerrainCell* cell : path)
            rows.push_back(cell->cy);
        return rows;
    };
    const Terrain& sand_above = load({" sss ", " xxx ", "     "});
    auto& m = walker(0, 1);
    const CreaturePath below = creature_find_path(m, *sand_above.cell_at(4, 1));
    EXPECT_EQ(rows_of(below), (std::vector<int>{2, 2, 1}))
        << ::testing::PrintToString(cells_of(below));
    const Terrain& sand_below = load({"     ", " xxx ", " sss "});
    const CreaturePath above = creature_find_path(m, *sand_below.cell_at(4, 1));
    EXPECT_EQ(rows_of(above), (std::vector<int>{0, 0, 1}))
        << ::testing::PrintToString(cells_of(above));
}

TEST_F(CreaturePathfindingTest, SandIsCrossedWhenTheWayRoundIsLonger) {
    // Over the one sand cell costs 4.5, round the wall 8.
    const Terrain& t = load({"  s  ", " xxx ", "     "});
    auto& m = walker(0, 0);
    EXPECT_EQ(cells_of(creature_find_path(m, *t.cell_at(4, 0))), (Cells{{4, 0}}));
}

TEST_F(CreaturePathfindingTest, ANewTerrainWhereTheOldOneWasIsSearchedAsItIs) {
    // The search grid is built once per terrain; a trial's next terrain (here the fixture's)
    // takes the place of the last one, so the address must not be what tells them apart.
    const Terrain& first = load({"     ", "     "});
    auto& m = walker(0, 0);
    EXPECT_EQ(cells_of(creature_find_path(m, *first.cell_at(4, 0))), (Cells{{4, 0}}));
    const Terrain& walled = load({"  x  ", "  x  "});
    ASSERT_EQ(&walled, &first);
    EXPECT_TRUE(creature_find_path(m, *walled.cell_at(4, 0)).empty());
    // A larger grid after a smaller one: its longer distances must be estimated too.
    const Terrain& larger = load({"         ", "xxxxxxxx ", "         "});
    EXPECT_EQ(cells_of(creature_find_path(m, *larger.cell_at(0, 2))),
              (Cells{{8, 0}, {8, 2}, {0, 2}}));
}

TEST_F(CreaturePathfindingTest, UndefinedTargetClearsThePath) {
    const Terrain& t = load({"      "});
    auto& m = walker(0, 0);
    creature_approach(m, t.cell_at(5, 0), 1);
    EXPECT_FALSE(creature_current_path(pathfinding, m.id()).empty());
    const double x = m.x;
    creature_approach(m, nullptr, 1);
    EXPECT_TRUE(creature_current_path(pathfinding, m.id()).empty());
    EXPECT_EQ(m.x, x);
    // Asking for the old goal again is a change of goal, so it searches again.
    const long searches = pathfinding.search_count;
    creature_approach(m, t.cell_at(5, 0), 1);
    EXPECT_EQ(pathfinding.search_count, searches + 1);
}

TEST_F(CreaturePathfindingTest, DestroyedCreatureForgetsItsPath) {
    const Terrain& t = load({"      "});
    auto& m = walker(0, 0);
    const InstanceId id = m.id();
    creature_approach(m, t.cell_at(5, 0), 1);
    runtime.instance_destroy(id);
    EXPECT_TRUE(creature_current_path(pathfinding, id).empty());
}

TEST_F(CreaturePathfindingTest, AdjacentCellIsTheFreeNeighbourNearestTheCreature) {
    const Terrain& t = load({
        "     ",
        " x x ",
        " xxx ",
    });
    auto& m = walker(4, 0);
    EXPECT_EQ(creature_find_pathfinding_adjacent_target_cell(m, 2, 1), t.cell_at(3, 0));
    m.x = centre(0);
    EXPECT_EQ(creature_find_pathfinding_adjacent_target_cell(m, 2, 1), t.cell_at(1, 0));
    // Shut in on all sides: its own cell when walkable, else nothing.
    const Terrain& shut = load({"xx ", "xxx"});
    EXPECT_EQ(creature_find_pathfinding_adjacent_target_cell(m, 2, 0), shut.cell_at(2, 0));
    EXPECT_EQ(creature_find_pathfinding_adjacent_target_cell(m, 0, 0), nullptr);
}

TEST_F(CreaturePathfindingTest, AdjacentCellStaysTheGoalWhileItIsStillBesideTheTarget) {
    const Terrain& t = load({"      ", "      ", "      ", "      "});
    auto& m = walker(0, 1);
    const TerrainCell* goal = creature_find_pathfinding_adjacent_target_cell(m, 3, 1);
    EXPECT_EQ(goal, t.cell_at(2, 1));
    creature_approach(m, goal, 1);
    EXPECT_EQ(creature_current_goal(m), goal);
    // The target steps down a cell: (2, 1) is still beside it, though (2, 2) is as near.
    EXPECT_EQ(creature_find_pathfinding_adjacent_target_cell(m, 3, 2), goal);
    // Two cells away from the goal: the nearest neighbour again.
    EXPECT_EQ(creature_find_pathfinding_adjacent_target_cell(m, 4, 3), t.cell_at(3, 2));
}

TEST_F(CreaturePathfindingTest, FlightGoesToTheReachableCellFarthestFromThePursuer) {
    load({
        "          ",
        "    x     ",
        "    x     ",
    });
    auto& runner = walker(3, 1);
    auto& pursuer = walker(2, 1);
    // Right, beyond the wall, at the edge of the flight's reach (four cells).
    const TerrainCell* cell = creature_find_pathfinding_avoiding_target_cell(runner, pursuer);
    ASSERT_NE(cell, nullptr);
    EXPECT_EQ(cell->cx, 7);
    EXPECT_FALSE(creature_find_path(runner, *cell).empty());
    // Cornered: nothing is farther from the pursuer than where the runner stands.
    load({"   x", "xxxx"});
    runner.x = centre(2);
    runner.y = centre(0);
    pursuer.x = centre(0);
    pursuer.y = centre(0);
    EXPECT_EQ(creature_find_pathfinding_avoiding_target_cell(runner, pursuer), nullptr);
}

TEST_F(CreaturePathfindingTest, FlightAgreesWithACellByCellSearchOnRandomTerrains) {
    std::mt19937 gen(7);
    auto& runner = walker(0, 0);
    auto& pursuer = walker(0, 0);
    int found = 0;
    for (int round = 0; round < 40; ++round) {
        // Small and large enough for the four-cell reach to run over every border or none.
        const int width = 3 + static_cast<int>(gen() % 14);
        const int height = 3 + static_cast<int>(gen() % 14);
        std::vector<std::string> rows(height, std::string(width, ' '));
        for (std::string& row : rows)
            for (char& c : row)
                c = gen() % 3 == 0 ? 'x' : ' ';
        const Terrain& t = load(rows);
        for (int probe = 0; probe < 30; ++probe) {
            // Anywhere in the room, holes too, and off the grid now and then.
            runner.x = static_cast<double>(gen() % (width * 64 + 32)) - 16;
            runner.y = static_cast<double>(gen() % (height * 64 + 32)) - 16;
            pursuer.x = static_cast<double>(gen() % (width * 64));
            pursuer.y = static_cast<double>(gen() % (height * 64));
            const TerrainCell* expected = plain_flight_cell(t, runner.x, runner.y, pursuer);
            ASSERT_EQ(creature_find_pathfinding_avoiding_target_cell(runner, pursuer), expected)
                << "round " << round << ", runner at (" << runner.x << ", " << runner.y
                << "), pursuer at (" << pursuer.x << ", " << pursuer.y << ")";
            found += expected != nullptr;
        }
    }
    // Most probes have somewhere to run to; an all-nullptr run would compare nothing.
    EXPECT_GT(found, 600);
}

}  // namespace
}  // namespace veldra
