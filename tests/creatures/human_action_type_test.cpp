#include "creatures/human_action_type.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <random>
#include <set>
#include <string>
#include <vector>

#include "creatures/food.h"
#include "creatures/human.h"
#include "creatures/human_exploration.h"
#include "creatures/monster.h"
#include "human_test_support.h"
#include "runtime/once.h"

namespace veldra {
namespace {

using testing::GC;
using testing::HumanTest;

class ActionTypesTest : public HumanTest {};

TEST_F(ActionTypesTest, NineTypesInTableOrderAndASecondInitializationIsRefused) {
    const auto& types = action_types.all;
    ASSERT_EQ(types.size(), HUMAN_ACTION_TYPE_COUNT);
    const auto& t = action_types;
    EXPECT_EQ(types.front(), t.HAT_approach_food);
    EXPECT_EQ(types[5], t.HAT_attack_monster);
    EXPECT_EQ(types.back(), t.HAT_explore);
    for (std::size_t i = 0; i < types.size(); ++i)
        EXPECT_EQ(types[i]->index, i);

    initialize_human_action_types(action_types);
    EXPECT_EQ(capture.count(ONCE_ONLY_MESSAGE), 1u);
    EXPECT_EQ(&action_types.all, &types);
    EXPECT_EQ(action_types.all.front(), t.HAT_approach_food);
}

TEST_F(ActionTypesTest, WeightsForwardTraitsAndEnergyToTheirFormulas) {
    set_formula(&GC::weight_avoid_monster, "10 * N + ENERGY_LEVEL");
    PersonalityTraits traits;
    traits.neuroticism = 0.5;
    EXPECT_EQ(action_types.HAT_avoid_monster->get_weight(configs.get(), traits, 0.25), 5.25);
}

class TargetChoiceTest : public HumanTest {
protected:
    void SetUp() override {
        HumanTest::SetUp();
        load({"      ", "      "});
        set_formula(&GC::human_sight_range, "256");
        // A candidate normalised to anything but 0 weighs nothing.
        set_formula(&GC::target_weight_approach_food, "1 - DISTANCE");
    }
    InstanceId choose_food(obj_human& human) {
        return human.choose_action_target(obj_food::object_type_static(),
                                          configs.get().target_weight_approach_food, tick_rng);
    }
};

TEST_F(TargetChoiceTest, ASingleCandidateIsAlwaysChosen) {
    auto& human = human_at(0, 0);
    auto& food = create_unticked<obj_food>(centre(2), centre(1));
    for (int i = 0; i < 5; ++i)
        EXPECT_EQ(choose_food(human), food.id());
}

TEST_F(TargetChoiceTest, SightIsInclusiveAtItsExactRange) {
    auto& human = human_at(0, 0);
    auto& at_range = create_unticked<obj_food>(centre(0) + 256, centre(0));
    EXPECT_EQ(choose_food(human), at_range.id());
    at_range.x += 0.001;
    EXPECT_EQ(choose_food(human), NO_INSTANCE);
}

TEST_F(TargetChoiceTest, NearestWeighsZeroAndFarthestOne) {
    set_formula(&GC::target_weight_approach_food, "DISTANCE");
    auto& human = human_at(0, 0);
    create_unticked<obj_food>(centre(1), centre(0));
    auto& middle = create_unticked<obj_food>(centre(2), centre(0));
    auto& far = create_unticked<obj_food>(centre(4), centre(0));
    std::set<InstanceId> chosen;
    for (int i = 0; i < 40; ++i)
        chosen.insert(choose_food(human));
    EXPECT_EQ(chosen, (std::set<InstanceId>{middle.id(), far.id()}));
}

TEST_F(TargetChoiceTest, AHumanNeverChoosesItself) {
    set_formula(&GC::target_weight_approach_human, "1");
    auto& human = human_at(0, 0);
    EXPECT_EQ(action_types.HAT_approach_human->try_initiate(human, tick_rng), nullptr);
    auto& other = human_at(1, 1);
    auto action = action_types.HAT_approach_human->try_initiate(human, tick_rng);
    ASSERT_NE(action, nullptr);
    EXPECT_EQ(static_cast<HA_ApproachHuman&>(*action).target, other.id());
}

class TryInitiateTest : public HumanTest {};

TEST_F(TryInitiateTest, AttackTakesTheFirstMonsterInRangeByInstanceOrder) {
    load({"     "});
    auto& human = human_at(1, 0);
    create_unticked<obj_monster>(centre(3), centre(0));  // out of range, though first
    auto& first = create_unticked<obj_monster>(centre(0), centre(0));
    create_unticked<obj_monster>(centre(1) + 10, centre(0));  // nearer, but later
    for (int i = 0; i < 5; ++i) {
        auto action = action_types.HAT_attack_monster->try_initiate(human, tick_rng);
        ASSERT_NE(action, nullptr);
        EXPECT_EQ(static_cast<HA_AttackMonster&>(*action).target, first.id());
    }
}

TEST_F(TryInitiateTest, AttackHumanSkipsItself) {
    load({"     "});
    auto& human = human_at(2, 0);
    EXPECT_EQ(action_types.HAT_attack_human->try_initiate(human, tick_rng), nullptr);
    auto& other = human_at(3, 0);
    auto action = action_types.HAT_attack_human->try_initiate(human, tick_rng);
    ASSERT_NE(action, nullptr);
    EXPECT_EQ(static_cast<HA_AttackHuman&>(*action).target, other.id());
}

TEST_F(TryInitiateTest, NoMealThatWouldBePartlyWasted) {
    load({"     "});
    auto& human = human_at(0, 0);
    create_unticked<obj_food>(centre(2), centre(0));
    const HumanActionType& type = *action_types.HAT_approach_food;
    human.energy = human.energy_max;
    EXPECT_EQ(type.try_initiate(human, tick_rng), nullptr);
    human.energy = human.energy_max - configs.get().human_energy_gain_eat_food + 0.01;
    EXPECT_EQ(type.try_initiate(human, tick_rng), nullptr);
    human.energy = human.energy_max - configs.get().human_energy_gain_eat_food;
    EXPECT_NE(type.try_initiate(human, tick_rng), nullptr);
}

TEST_F(TryInitiateTest, ExchangePartnerNeedsSightCooldownAndRoomForEnergy) {
    load({"          "});
    set_formula(&GC::human_sight_range, "200");
    auto& human = human_at(0, 0);
    auto& busy = human_at(1, 0);
    auto& free = human_at(2, 0);
    human_at(9, 0);  // out of sight
    const HumanActionType& type = *action_types.HAT_exchange_with_human;
    auto partner_of = [&]() -> InstanceId {
        auto action = type.try_initiate(human, tick_rng);
        return action ? static_cast<HA_ExchangeWithHuman&>(*action).target : NO_INSTANCE;
    };

    EXPECT_EQ(partner_of(), busy.id());  // the first in instance order
    busy.exchange_cooldown_timer = 5;
    EXPECT_EQ(partner_of(), free.id());
    human.energy = free.energy = human.energy_max;
    EXPECT_EQ(partner_of(), NO_INSTANCE);  // two full humans gain nothing
    free.energy = 1;
    EXPECT_EQ(partner_of(), free.id());
    human.exchange_cooldown_timer = 1;
    EXPECT_EQ(partner_of(), NO_INSTANCE);
}

class ExplorationTargetTest : public HumanTest {
protected:
    void SetUp() override {
        HumanTest::SetUp();
        set_formula(&GC::human_exploration_range, "130");  // two cells and a bit
    }
};

TEST_F(ExplorationTargetTest, TraversableCellsWithinRangeButNotTheHumansOwn) {
    load({"      ", " x    ", "  r   ", "      ", "      "});
    auto& human = human_at(0, 0);
    human.x += 10;  // off-centre: range is measured from the human
    std::set<std::pair<int, int>> seen;
    for (int i = 0; i < 300; ++i) {
        const TerrainCell* cell = human_find_exploration_pathfinding_target(human, tick_rng);
        ASSERT_NE(cell, nullptr);
        seen.insert({cell->cx, cell->cy});
    }
    // (0, 0) is the human's; (1, 1) is a hole and (2, 2) rock; (2, 1) and (1, 2) lie beyond
    // 130 pixels.
    const std::set<std::pair<int, int>> expected{{1, 0}, {2, 0}, {0, 1}, {0, 2}};
    EXPECT_EQ(seen, expected);
}

TEST_F(ExplorationTargetTest, PrefersCellsAwayFromThePreviousTarget) {
    load({"     ", "     ", "     ", "     ", "     "});
    auto& human = human_at(2, 2);
    const TerrainCell* previous = terrain->cell_at(0, 2);
    for (int i = 0; i < 100; ++i) {
        const TerrainCell* cell =
            human_find_exploration_pathfinding_target(human, tick_rng, previous);
        ASSERT_NE(cell, nullptr);
        EXPECT_GE(std::hypot(cell->cx - previous->cx, cell->cy - previous->cy) * 64, 65);
    }
}

// The draw made the plain way: every cell of the clamped square in row order, a branch per test.
const TerrainCell* plain_exploration_target(const Terrain& t, const obj_human& human, Rng& rng,
                                            const TerrainCell* previous) {
    const double range = human.exploration_range;
    const int cx = static_cast<int>(std::floor(human.x / 64));
    const int cy = static_cast<int>(std::floor(human.y / 64));
    const int reach = static_cast<int>(std::max(0.0, std::ceil(range / 64)));
    auto square_to = [](double x, double y, const TerrainCell& cell) {
        const double dx = cell.room_rect.get_center_x() - x;
        const double dy = cell.room_rect.get_center_y() - y;
        return dx * dx + dy * dy;
    };
    std::vector<const TerrainCell*> all;
    std::vector<const TerrainCell*> fresh;
    for (int y = std::max(0, cy - reach); y <= std::min(t.height - 1, cy + reach); ++y) {
        for (int x = std::max(0, cx - reach); x <= std::min(t.width - 1, cx + reach); ++x) {
            const TerrainCell& cell = *t.cell_at(x, y);
            if (!cell.is_traversable || (x == cx && y == cy) ||
                square_to(human.x, human.y, cell) > range * range)
                continue;
            all.push_back(&cell);
            if (previous &&
                square_to(previous->room_rect.get_center_x(), previous->room_rect.get_center_y(),
                          cell) >= range * range / 4)
                fresh.push_back(&cell);
        }
    }
    return rng.rng_array_get_random_element_or_default(fresh.empty() ? all : fresh,
                                                       static_cast<const TerrainCell*>(nullptr));
}

TEST_F(ExplorationTargetTest, DrawsAsAPlainScanDoesOnRandomTerrains) {
    std::mt19937 gen(11);
    int drawn = 0;
    for (int round = 0; round < 30; ++round) {
        const int width = 1 + static_cast<int>(gen() % 12);
        const int height = 1 + static_cast<int>(gen() % 12);
        std::vector<std::string> rows(height, std::string(width, ' '));
        for (std::string& row : rows)
            for (char& c : row)
                c = " x r"[gen() % 4];
        rows[0][0] = ' ';
        const Terrain& t = load(rows);
        auto& human = human_at(0, 0);
        for (int probe = 0; probe < 20; ++probe) {
            human.x = static_cast<double>(gen() % (width * 64));
            human.y = static_cast<double>(gen() % (height * 64));
            // From nothing at all to past every border.
            human.exploration_range = static_cast<double>(gen() % 500);
            const TerrainCell* previous =
                gen() % 3 == 0 ? nullptr : &t.cells[gen() % t.cells.size()];
            Rng expected_rng(probe);
            Rng actual_rng(probe);
            const TerrainCell* expected =
                plain_exploration_target(t, human, expected_rng, previous);
            ASSERT_EQ(human_find_exploration_pathfinding_target(human, actual_rng, previous),
                      expected)
                << "round " << round << ", probe " << probe;
            EXPECT_EQ(actual_rng.seed, expected_rng.seed);
            drawn += expected != nullptr;
        }
    }
    EXPECT_GT(drawn, 300);  // most probes have somewhere to go
}

// Traits outside the configuration's options can send a range formula to an infinity or NaN,
// and movement can carry a human to a position no cell coordinate holds: neither may reach an
// integer conversion. An infinite range reaches the whole level, NaN nowhere.
TEST_F(ExplorationTargetTest, RangesAndPositionsBeyondAnyLevelStayInsideIt) {
    load({"   ", "   ", "   "});
    auto& human = human_at(1, 1);
    for (const double range : {1e300, std::numeric_limits<double>::infinity()}) {
        human.exploration_range = range;
        std::set<std::pair<int, int>> seen;
        for (int i = 0; i < 200; ++i) {
            const TerrainCell* cell = human_find_exploration_pathfinding_target(human, tick_rng);
            ASSERT_NE(cell, nullptr) << range;
            seen.insert({cell->cx, cell->cy});
        }
        EXPECT_EQ(seen.size(), 8u) << range;  // every cell but the human's own
    }
    human.exploration_range = std::numeric_limits<double>::quiet_NaN();
    EXPECT_EQ(human_find_exploration_pathfinding_target(human, tick_rng), nullptr);
    human.exploration_range = 130;
    for (const double far : {-1e300, 1e300}) {
        human.x = far;
        EXPECT_EQ(human_find_exploration_pathfinding_target(human, tick_rng), nullptr) << far;
    }
}

TEST_F(ExplorationTargetTest, NoCandidateGivesNoTargetAndNoExplore) {
    load({" x", "xx"});
    auto& human = human_at(0, 0);
    EXPECT_EQ(human_find_exploration_pathfinding_target(human, tick_rng), nullptr);
    EXPECT_EQ(action_types.HAT_explore->try_initiate(human, tick_rng), nullptr);
}

}  // namespace
}  // namespace veldra
