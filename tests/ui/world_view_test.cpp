#include "ui/world_view.h"

#include <gtest/gtest.h>

#include "creatures/creature_test_fixture.h"
#include "creatures/food.h"
#include "creatures/monster.h"

namespace veldra {
namespace {

class WorldViewTest : public testing::CreatureTest {
protected:
    obj_world_view& attach_view() {
        auto& view = runtime.instance_create<obj_world_view>(0, 0);
        view.attach(world, *terrain);
        return view;
    }
    void frames(int count) {
        for (int i = 0; i < count; ++i)
            runtime.run_frame();
    }
};

TEST_F(WorldViewTest, SceneryLooksAreOnePerCellTheSameEachTimeAndWithinTheirRanges) {
    load({"rs ", "sr "});
    const SceneryLooks looks = scenery_looks(*terrain);
    ASSERT_EQ(looks.rocks.size(), 2u);
    ASSERT_EQ(looks.leaves.size(), 2u);
    EXPECT_EQ(looks.rocks[1].x, centre(1));
    EXPECT_EQ(looks.rocks[1].y, centre(1));
    const SceneryLooks again = scenery_looks(*terrain);
    EXPECT_EQ(again.rocks[0].tilt, looks.rocks[0].tilt);
    EXPECT_EQ(again.leaves[1].tufts[0].offset_x, looks.leaves[1].tufts[0].offset_x);
    // Neighbouring cells do not look alike.
    EXPECT_NE(looks.rocks[0].tilt, looks.rocks[1].tilt);
    for (const RockLook& rock : looks.rocks) {
        EXPECT_GE(rock.variant, 0);
        EXPECT_LT(rock.variant, RockLook::VARIANTS);
        EXPECT_LE(std::abs(rock.tilt), 8);
    }
    for (const FoliageLook& leaves : looks.leaves) {
        EXPECT_GE(leaves.tuft_count, 2);
        EXPECT_LE(leaves.tuft_count, FoliageLook::MAX_TUFTS);
    }
    // The trial's generators are untouched.
    EXPECT_EQ(trial_rng.seed, Rng(11).seed);
}

TEST_F(WorldViewTest, AnAttackPlaysInTheViewsAndADeathLeavesACorpseThatFades) {
    load({"   "}, false);
    auto& left = create<obj_monster>(centre(0), centre(0));
    auto& right = create<obj_monster>(centre(1), centre(0));
    obj_world_view& view = attach_view();
    left.start_animation(CREATURE_ANIMATION_ATTACK, right.x, right.y, 10);
    right.start_animation(CREATURE_ANIMATION_HURT, left.x, left.y, 20);
    frames(1);
    const CreatureView& attacker = view.creatures.at(left.id());
    const CreatureView& target = view.creatures.at(right.id());
    EXPECT_EQ(attacker.pose(), CreaturePose::attack);
    EXPECT_EQ(attacker.xscale, 1);  // facing the target on its right
    EXPECT_EQ(target.xscale, -1);
    frames(9);
    EXPECT_EQ(attacker.animation, CREATURE_ANIMATION_NONE);
    EXPECT_EQ(target.pose(), CreaturePose::hurt);

    const InstanceId id = right.id();
    right.energy = 0;
    tick();
    ASSERT_FALSE(runtime.instance_exists(id));
    ASSERT_EQ(view.deaths.size(), 1u);
    EXPECT_EQ(view.deaths[0].x, centre(1));
    EXPECT_EQ(view.deaths[0].xscale, -1);
    frames(1);
    EXPECT_EQ(view.creatures.count(id), 0u);
    frames(28);
    ASSERT_EQ(view.deaths.size(), 1u);
    EXPECT_GT(view.deaths[0].y, centre(0));
    EXPECT_LT(view.deaths[0].alpha, 0.1);
    frames(1);
    EXPECT_TRUE(view.deaths.empty());
}

// The trial's views set the pace to the game speed each frame; 0 is a paused trial.
TEST_F(WorldViewTest, AnimationsAndWalkingFollowThePaceAndStandStillAtZero) {
    load({"   "}, false);
    auto& walker = create<obj_monster>(centre(0), centre(0));
    auto& fighter = create<obj_monster>(centre(2), centre(0));
    obj_world_view& view = attach_view();
    frames(1);
    walker.x_on_previous_tick = walker.x - 2;  // it moved in the last tick
    fighter.start_animation(CREATURE_ANIMATION_ATTACK, walker.x, walker.y, 10);
    view.pace = 0;
    const double walked = view.animation_ms;
    for (int i = 0; i < 20; ++i) {
        services.clock->frame_done();
        frames(1);
    }
    const CreatureView& fighting = view.creatures.at(fighter.id());
    EXPECT_EQ(fighting.animation, CREATURE_ANIMATION_ATTACK) << "a paused blow does not finish";
    EXPECT_EQ(fighting.animation_timer, 0);
    EXPECT_EQ(view.creatures.at(walker.id()).pose(), CreaturePose::walk);
    EXPECT_EQ(view.animation_ms, walked) << "nor does a paused walker's stride move on";

    view.pace = 2;
    for (int i = 0; i < 3; ++i) {
        services.clock->frame_done();  // a frame of wall time
        frames(1);
    }
    EXPECT_EQ(fighting.animation_timer, 6);
    EXPECT_NEAR(view.animation_ms - walked, 3 * 2 * 1000.0 / 60.0, 1e-9);
    frames(2);
    EXPECT_EQ(fighting.animation, CREATURE_ANIMATION_NONE) << "ten steps at twice the pace";
}

TEST_F(WorldViewTest, CreaturesOutliveTheirViewSafelyAndTrialsNeedNoView) {
    load({"   "}, false);
    auto& monster = create<obj_monster>(centre(0), centre(0));
    runtime.instance_destroy(attach_view().id());
    monster.start_animation(CREATURE_ANIMATION_DUCK, 0, 0, 5);
    monster.energy = 0;
    tick();  // dies with nobody watching
    EXPECT_EQ(runtime.instance_number<obj_world_view>(), 0u);
    EXPECT_EQ(world.creature_died.size(), 0u);
}

TEST_F(WorldViewTest, EntitiesAreDrawnTopToBottomWithTiesInCreationOrder) {
    load({"   ", "   "});
    const InstanceId low = create<obj_food>(centre(0), centre(1)).id();
    const InstanceId high = create<obj_food>(centre(1), centre(0)).id();
    const InstanceId high_later = create<obj_monster>(centre(2), centre(0)).id();
    EXPECT_EQ(entity_draw_order(runtime), (std::vector<InstanceId>{high, high_later, low}));
}

TEST(FoodBobTest, StaysWithinTwoPixelsAboveAndDiffersBetweenNeighbours) {
    for (double t = 0; t < 3000; t += 125) {
        EXPECT_LE(food_bob_offset(t, 17), 0);
        EXPECT_GE(food_bob_offset(t, 17), -2);
    }
    EXPECT_NE(food_bob_offset(0, 100), food_bob_offset(0, 600));
}

}  // namespace
}  // namespace veldra
