#include "creatures/monster.h"

#include <gtest/gtest.h>

#include <set>

#include "creature_test_fixture.h"
#include "creatures/food.h"
#include "creatures/human_ai.h"
#include "util/geometry.h"
#include "world/terrain.h"

namespace veldra {
namespace {

class MonsterTest : public testing::CreatureTest {
protected:
    obj_monster& monster_at(double x, double y) { return create<obj_monster>(x, y); }
};

TEST_F(MonsterTest, SetUpFromTheConfiguration) {
    load({"   "});
    const GameConfigurations& c = configs.get();
    auto& m = monster_at(centre(0), centre(0));
    EXPECT_EQ(m.energy, c.monster_starting_energy);
    EXPECT_EQ(m.energy_max, c.monster_energy_max);
    EXPECT_EQ(m.sight_range, c.monster_sight_range);
    EXPECT_EQ(
        m.fight_action_sampler.total_weight(),
        c.monster_fight_hit_weight + c.monster_fight_miss_weight + c.monster_fight_flee_weight);
    EXPECT_FALSE(capture.contains("total weight of fight actions"));
}

TEST_F(MonsterTest, ZeroFightWeightsAreReported) {
    load({"   "});
    mutable_configs().monster_fight_hit_weight = 0;
    mutable_configs().monster_fight_miss_weight = 0;
    mutable_configs().monster_fight_flee_weight = 0;
    monster_at(0, 0);
    EXPECT_TRUE(capture.contains(
        "The total weight of fight actions (hit, miss, flee) is zero or negative! This will cause "
        "problems."));
}

TEST_F(MonsterTest, HuntsPreyInSightAndDropsItOnePixelBeyond) {
    load({"          ", "          "});
    auto& m = monster_at(centre(0), centre(0));
    const double sight = m.sight_range;
    auto& prey = create_unticked<obj_human_ai>(m.x + sight, m.y);
    tick();
    EXPECT_EQ(m.target_creature, prey.id());
    EXPECT_GT(m.x, centre(0));  // went after it at once
    prey.x = m.x + sight + 1;
    prey.y = m.y;
    tick();
    EXPECT_EQ(m.target_creature, NO_INSTANCE);
}

TEST_F(MonsterTest, StrikesPreyWithinRangeOncePerCooldown) {
    load({"    "});
    auto& m = monster_at(centre(0), centre(0));
    m.fight_action_sampler.clear();
    m.fight_action_sampler.add(FIGHT_HIT, 1);
    m.first_attack_damage = m.normal_attack_damage = 0.25;
    auto& prey = create_unticked<obj_human_ai>(centre(1), centre(0));
    const double start = prey.energy;
    tick(static_cast<int>(m.get_attack_cooldown_as_ticks()) + 1);
    EXPECT_EQ(prey.energy, start - 0.5);
}

TEST_F(MonsterTest, WandersToANewCellEvery120To240TicksWithoutHumansOrFood) {
    load({"          ", "          ", "          ", "          "});
    auto& m = monster_at(centre(4), centre(1));
    std::vector<Ticks> resets;  // ticks at which the timer was set anew
    Ticks previous = m.exploration_timer;
    for (int i = 0; i < 2000; ++i) {
        tick();
        if (m.exploration_timer > previous)
            resets.push_back(spent_ticks - 1);
        previous = m.exploration_timer;
        ASSERT_NE(m.target_explore_cell, nullptr);
    }
    ASSERT_GE(resets.size(), 8u);
    EXPECT_EQ(resets.front(), 0);
    for (std::size_t i = 1; i < resets.size(); ++i) {
        EXPECT_GE(resets[i] - resets[i - 1], 120);
        EXPECT_LE(resets[i] - resets[i - 1], 240);
    }
}

TEST_F(MonsterTest, GuardsTheNearestFoodWithinItsSquare) {
    load({"          ", "          ", "          ", "          ", "          "});
    auto& m = monster_at(centre(9), centre(0));
    auto& food = create<obj_food>(centre(1), centre(3));
    for (int i = 0; i < 600; ++i) {
        tick();
        EXPECT_EQ(m.target_food, food.id());
        ASSERT_NE(m.target_cell_around_food, nullptr);
        EXPECT_LE(std::abs(m.target_cell_around_food->cx - 1), MONSTER_FOOD_SQUARE_HALF_SIZE);
        EXPECT_LE(std::abs(m.target_cell_around_food->cy - 3), MONSTER_FOOD_SQUARE_HALF_SIZE);
    }
    // By now it is lingering near the food.
    EXPECT_LE(point_distance(m.x, m.y, food.x, food.y), 3 * 64 * 1.5);
}

TEST_F(MonsterTest, CellSquaresAreClampedAtTheLevelEdge) {
    const Terrain& t = load({"   ", "  x", "   "});
    auto& m = create_unticked<obj_monster>(centre(0), centre(0));
    m.exploration_range = 64 * 5;
    auto& food = create<obj_food>(centre(2), centre(2));
    std::set<std::pair<int, int>> explored;
    std::set<std::pair<int, int>> guarded;
    for (int i = 0; i < 300; ++i) {
        const TerrainCell* e = m.find_exploring_pathfinding_target();
        const TerrainCell* g = m.find_pathfinding_target_around_food(food);
        ASSERT_TRUE(e && g);
        explored.insert({e->cx, e->cy});
        guarded.insert({g->cx, g->cy});
    }
    // Every traversable cell of the level, and nothing outside it.
    const std::set<std::pair<int, int>> all{{0, 0}, {1, 0}, {2, 0}, {0, 1},
                                            {1, 1}, {0, 2}, {1, 2}, {2, 2}};
    EXPECT_EQ(explored, all);
    EXPECT_EQ(guarded, all);
    // Exploration keeps to cells whose centre is within range.
    m.exploration_range = 64;
    for (int i = 0; i < 100; ++i) {
        const TerrainCell* e = m.find_exploring_pathfinding_target();
        EXPECT_LE(
            point_distance(m.x, m.y, e->room_rect.get_center_x(), e->room_rect.get_center_y()), 64);
    }
    EXPECT_EQ(t.width, 3);
}

// monster_exploration_range may be any number up to 1e300: the square it spans is the level.
TEST_F(MonsterTest, ARangeBeyondAnyLevelSpansTheWholeLevel) {
    load({"   ", "   ", "   "});
    auto& m = create_unticked<obj_monster>(centre(1), centre(1));
    m.exploration_range = 1e300;
    std::set<std::pair<int, int>> explored;
    for (int i = 0; i < 300; ++i) {
        const TerrainCell* e = m.find_exploring_pathfinding_target();
        ASSERT_NE(e, nullptr);
        explored.insert({e->cx, e->cy});
    }
    EXPECT_EQ(explored.size(), 9u);
}

TEST_F(MonsterTest, NoCandidateCellMeansStandingStillWithoutADraw) {
    load({"x x", "x x"});
    auto& m = monster_at(centre(1), centre(0));
    m.exploration_range = 0;
    m.x += 10;  // off its cell's centre: no centre is within range
    tick();
    const Rng before = trial_rng;
    EXPECT_EQ(m.find_exploring_pathfinding_target(), nullptr);
    EXPECT_EQ(trial_rng.seed, before.seed);
    EXPECT_EQ(m.target_explore_cell, nullptr);
    EXPECT_EQ(m.x, centre(1) + 10);
}

}  // namespace
}  // namespace veldra
