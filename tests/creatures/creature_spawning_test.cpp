#include "creatures/creature_spawning.h"

#include <gtest/gtest.h>

#include "creature_test_fixture.h"
#include "creatures/foliage.h"
#include "creatures/food.h"
#include "creatures/human_ai.h"
#include "creatures/human_player.h"
#include "creatures/monster.h"
#include "creatures/rock.h"

namespace veldra {
namespace {

class CreatureSpawningTest : public testing::CreatureTest {};

TEST_F(CreatureSpawningTest, EntitiesAppearAtCellCentresInRowMajorOrder) {
    load({"m h ", " 3pf"});
    ASSERT_EQ(rt().instance_number<obj_creature>(), 4u);
    const auto* first = rt().instance_find<obj_creature>(0);
    const auto* typed = rt().instance_find<obj_human_ai>(1);
    EXPECT_TRUE(first->is_a<obj_monster>());
    EXPECT_EQ(first->x, 32);
    EXPECT_EQ(first->y, 32);
    EXPECT_EQ(first->layer, "Instances");
    EXPECT_FALSE(rt().instance_find<obj_human_ai>(0)->type_number.has_value());
    EXPECT_EQ(typed->type_number, 3);
    EXPECT_EQ(typed->x, centre(1));
    EXPECT_EQ(typed->y, centre(1));
    EXPECT_TRUE(rt().instance_find<obj_creature>(3)->is_a<obj_human_player>());
    EXPECT_EQ(rt().instance_number<obj_food>(), 1u);
    // Creatures subscribe to the ticker in the same order.
    ASSERT_EQ(handlers.size(), 4u);
    EXPECT_EQ(handlers[0].owner, first->id());
}

TEST_F(CreatureSpawningTest, SceneryOnlyInInteractiveTrialsAndTheSameEachTime) {
    load({"rs", "sr"});
    EXPECT_EQ(rt().instance_number<obj_rock>(), 0u);
    EXPECT_EQ(rt().instance_number<obj_foliage>(), 0u);
    load({"rs", "sr"}, false);
    ASSERT_EQ(rt().instance_number<obj_rock>(), 2u);
    ASSERT_EQ(rt().instance_number<obj_foliage>(), 2u);
    const obj_rock& rock = *rt().instance_find<obj_rock>(0);
    EXPECT_TRUE(rock.visible);
    load({"rs", "sr"}, false);
    const obj_rock& again = *rt().instance_find<obj_rock>(2);
    EXPECT_EQ(again.tilt, rock.tilt);
    EXPECT_EQ(again.sprite_variant, rock.sprite_variant);
    const obj_foliage& leaves = *rt().instance_find<obj_foliage>(0);
    EXPECT_GE(leaves.tuft_count, 2);
    EXPECT_LE(leaves.tuft_count, obj_foliage::MAX_TUFTS);
    // The game's generators are untouched by scenery.
    EXPECT_EQ(trial_rng.seed, Rng(11).seed);
}

TEST_F(CreatureSpawningTest, SecondInitialisationIsReportedAndChangesNothing) {
    initialize_creature_spawning();
    EXPECT_TRUE(capture.contains("called only once"));
    initialize_creature_pathfinding();
    EXPECT_EQ(capture.count("called only once"), 2u);
    load({"m"});
    EXPECT_EQ(rt().instance_number<obj_monster>(), 1u);
}

}  // namespace
}  // namespace veldra
