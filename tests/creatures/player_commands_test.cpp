#include "creatures/player_commands.h"

#include <gtest/gtest.h>

#include "creatures/food.h"
#include "creatures/human_player.h"
#include "creatures/monster.h"
#include "human_test_support.h"

namespace veldra {
namespace {

using testing::GC;
using testing::HumanTest;

class PlayerCommandsTest : public HumanTest {
protected:
    // A player at (cx, cy) that never decides anything by itself, so every action it runs came
    // from a command.
    obj_human_player& player_at(int cx, int cy) {
        only_weights({});
        auto& player = create<obj_human_player>(centre(cx), centre(cy));
        player.set_traits(PersonalityTraits{});
        return player;
    }
    const HumanActionType* current_type(const obj_human& human) const {
        const HumanAction* action = human.get_current_action();
        return action ? action->type : nullptr;
    }
};

TEST_F(PlayerCommandsTest, AClickMeansWhatIsUnderThePoint) {
    load({"     ", "   x ", "     "});
    auto& player = player_at(0, 0);
    auto& monster = create_unticked<obj_monster>(centre(2), centre(0));
    auto& food = create<obj_food>(centre(4), centre(0));
    auto& other = create_unticked<obj_human_ai>(centre(0), centre(2));

    const auto at = [&](double x, double y) { return player_target_at(world, player, x, y); };
    EXPECT_EQ(at(centre(2) + 20, centre(0) - 20).kind, PlayerTarget::Kind::monster);
    EXPECT_EQ(at(centre(2), centre(0)).id, monster.id());
    EXPECT_EQ(at(centre(4), centre(0)).id, food.id());
    EXPECT_EQ(at(centre(0), centre(2)).id, other.id());
    // The player is never its own target: a click on itself is a click on its cell.
    const PlayerTarget self = at(centre(0), centre(0));
    EXPECT_EQ(self.kind, PlayerTarget::Kind::cell);
    EXPECT_EQ(self.id, NO_INSTANCE);
    // Beyond the pick radius only the cell counts.
    const PlayerTarget near_monster = at(centre(2) + PLAYER_PICK_RADIUS + 1, centre(0));
    EXPECT_EQ(near_monster.kind, PlayerTarget::Kind::cell);
    EXPECT_EQ(near_monster.cx, 3);
    // A hole and the world outside the level are nothing to click on.
    EXPECT_EQ(at(centre(3), centre(1)).kind, PlayerTarget::Kind::none);
    EXPECT_EQ(at(-10, 10).kind, PlayerTarget::Kind::none);
    EXPECT_EQ(at(5 * 64 + 1, 10).kind, PlayerTarget::Kind::none);
}

TEST_F(PlayerCommandsTest, ACreatureStandingOnFoodIsTheTarget) {
    load({"   "});
    auto& player = player_at(0, 0);
    create<obj_food>(centre(2), centre(0));
    auto& monster = create_unticked<obj_monster>(centre(2) + 10, centre(0));
    EXPECT_EQ(player_target_at(world, player, centre(2), centre(0)).id, monster.id());
}

TEST_F(PlayerCommandsTest, ClicksStartTheMatchingActions) {
    load({"     ", "     "});
    auto& player = player_at(0, 0);
    auto& monster = create_unticked<obj_monster>(centre(4), centre(1));
    auto& food = create<obj_food>(centre(4), centre(0));
    auto& other = create_unticked<obj_human_ai>(centre(2), centre(1));
    const HumanActionTypes& types = world.action_types;

    world.player_commands.push_target(0, centre(4), centre(1));
    tick();
    // Out of sight: it walks there first, the attack queued behind.
    EXPECT_EQ(current_type(player), types.HAT_explore);
    ASSERT_EQ(player.actions_in_memory.size(), 2u);
    EXPECT_EQ(player.actions_in_memory[1]->type, types.HAT_attack_monster);
    world.player_commands.push_target(1, centre(4), centre(0));
    tick();
    EXPECT_EQ(current_type(player), types.HAT_approach_food);
    world.player_commands.push_target(2, centre(2), centre(1));
    tick();
    EXPECT_EQ(current_type(player), types.HAT_exchange_with_human);
    world.player_commands.push_target(3, centre(3), centre(0));
    tick();
    EXPECT_EQ(current_type(player), types.HAT_explore);
    (void)monster;
    (void)food;
    (void)other;
}

TEST_F(PlayerCommandsTest, AMonsterWithinReachIsAttackedAtOnce) {
    load({"   "});
    auto& player = player_at(0, 0);
    create_unticked<obj_monster>(centre(1), centre(0));
    world.player_commands.push_target(0, centre(1), centre(0));
    tick();
    EXPECT_EQ(current_type(player), world.action_types.HAT_attack_monster);
    EXPECT_EQ(player.actions_in_memory.size(), 1u);
}

TEST_F(PlayerCommandsTest, AMonsterInSightIsApproachedThenAttacked) {
    load({"    "});
    auto& player = player_at(0, 0);
    create_unticked<obj_monster>(centre(3), centre(0));
    world.player_commands.push_target(0, centre(3), centre(0));
    tick();
    EXPECT_EQ(current_type(player), world.action_types.HAT_approach_monster);
    tick(120);
    EXPECT_EQ(current_type(player), world.action_types.HAT_attack_monster);
}

TEST_F(PlayerCommandsTest, AHeldDirectionWalksCellByCellUntilLetGo) {
    load({"     "});
    auto& player = player_at(0, 0);
    world.player_commands.push_move(0, 1, 0);
    tick(600);
    // Walking on while the key is held: far beyond the first neighbour, stopped only by the edge.
    EXPECT_EQ(world.terrain->cell_at_room(player.x, player.y)->cx, 4);
    world.player_commands.push_move(spent_ticks, -1, 0);
    tick(30);
    const double x_before_release = player.x;
    EXPECT_LT(x_before_release, centre(4));
    world.player_commands.push_move(spent_ticks, 0, 0);
    tick(120);
    EXPECT_EQ(current_type(player), nullptr) << "letting go stops the walk";
    EXPECT_NEAR(player.x, x_before_release, 64) << "it stops within a cell";
}

TEST_F(PlayerCommandsTest, ARockOrHoleAheadStopsTheWalk) {
    load({" r", "x "});
    auto& player = player_at(0, 0);
    world.player_commands.push_move(0, 1, 0);
    world.player_commands.push_move(0, 0, 1);  // the later one wins: down, into the hole
    tick(60);
    EXPECT_EQ(current_type(player), nullptr);
    EXPECT_EQ(player.x, centre(0));
    EXPECT_EQ(player.y, centre(0));
}

TEST_F(PlayerCommandsTest, CommandsWaitForTheirTickAndLateOnesAreStampedWhenApplied) {
    load({"    "});
    auto& player = player_at(0, 0);
    tick(5);
    world.player_commands.push_target(2, centre(3), centre(0));  // its tick has passed
    world.player_commands.push_target(9, centre(2), centre(0));  // still to come
    tick();
    ASSERT_EQ(world.player_commands.applied.size(), 1u);
    EXPECT_EQ(world.player_commands.applied[0].tick, 5);
    tick(3);
    EXPECT_EQ(world.player_commands.applied.size(), 1u);
    tick();
    ASSERT_EQ(world.player_commands.applied.size(), 2u);
    EXPECT_EQ(world.player_commands.applied[1].tick, 9);
    (void)player;
}

TEST_F(PlayerCommandsTest, TargetsAreStampedInWholePixelsAndDirectionsAsUnits) {
    PlayerCommands commands;
    commands.push_target(3, 10.6, -4.4);
    commands.push_move(4, 7, -3);
    EXPECT_EQ(commands.pending[0].x, 11);
    EXPECT_EQ(commands.pending[0].y, -4);
    EXPECT_EQ(commands.pending[1].dx, 1);
    EXPECT_EQ(commands.pending[1].dy, -1);
}

}  // namespace
}  // namespace veldra
