#include "creatures/creature_spawning.h"

#include <gtest/gtest.h>

#include "creature_test_fixture.h"
#include "creatures/food.h"
#include "creatures/human_ai.h"
#include "creatures/human_player.h"
#include "creatures/monster.h"

namespace veldra {
namespace {

class CreatureSpawningTest : public testing::CreatureTest {};

TEST_F(CreatureSpawningTest, EntitiesAppearAtCellCentresInRowMajorOrder) {
    load({"m h ", " 3pf"});
    ASSERT_EQ(runtime.instance_number<obj_creature>(), 4u);
    const auto* first = runtime.instance_find<obj_creature>(0);
    const auto* typed = runtime.instance_find<obj_human_ai>(1);
    EXPECT_TRUE(first->is_a<obj_monster>());
    EXPECT_EQ(first->x, 32);
    EXPECT_EQ(first->y, 32);
    EXPECT_EQ(first->layer, "Instances");
    EXPECT_FALSE(runtime.instance_find<obj_human_ai>(0)->type_number.has_value());
    EXPECT_EQ(typed->type_number, 3);
    EXPECT_EQ(typed->x, centre(1));
    EXPECT_EQ(typed->y, centre(1));
    EXPECT_TRUE(runtime.instance_find<obj_creature>(3)->is_a<obj_human_player>());
    EXPECT_EQ(runtime.instance_number<obj_food>(), 1u);
    // Creatures subscribe to the ticker in the same order.
    ASSERT_EQ(handlers.size(), 4u);
    EXPECT_EQ(handlers[0].owner, first->id());
}

TEST_F(CreatureSpawningTest, SecondInitialisationIsReportedAndChangesNothing) {
    initialize_creature_spawning(spawn_hooks, world);
    EXPECT_TRUE(capture.contains("called only once"));
    initialize_creature_pathfinding(pathfinding);
    EXPECT_EQ(capture.count("called only once"), 2u);
    load({"m"});
    EXPECT_EQ(runtime.instance_number<obj_monster>(), 1u);
}

}  // namespace
}  // namespace veldra
