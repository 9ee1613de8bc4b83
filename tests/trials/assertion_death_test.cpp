// The guards that stay on in shipped builds. They live in this folder because its test program
// links every folder they sit in, from the runtime up to the trials.

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "config/game_configurations.h"
#include "creatures/creature_pathfinding.h"
#include "creatures/human_action_type.h"
#include "creatures/trial_world.h"
#include "runtime/assertion.h"
#include "runtime/gc.h"
#include "runtime/runtime.h"
#include "runtime/services.h"
#include "runtime/value.h"
#include "trials/ticker.h"
#include "util/rng.h"
#include "util/weighted_random_sampler.h"
#include "world/terrain.h"

namespace veldra {
namespace {

class obj_guarded : public Instance {
    VELDRA_OBJECT(obj_guarded, Instance)
};

class AssertionDeathTest : public ::testing::Test {
protected:
    GcScope collector;
    Services services;
    Runtime runtime{services};
};

int half_of_even(int n) {
    VELDRA_ASSERT(n % 2 == 0, "half_of_even given " + std::to_string(n) + ": round first?");
    return n / 2;
}

TEST_F(AssertionDeathTest, FailureNamesFileLineConditionAndHint) {
    // Only what both of GoogleTest's regular-expression dialects read alike (Windows' has no
    // brackets): ".+" for the line number.
    EXPECT_DEATH(half_of_even(7),
                 "assertion_death_test\\.cpp:.+: assertion failed: "
                 "n % 2 == 0 \\(half_of_even given 7: round first\\?\\)");
}

TEST_F(AssertionDeathTest, PassingConditionNeitherAbortsNorBuildsTheHint) {
    int hints_built = 0;
    auto hint = [&] {
        ++hints_built;
        return std::string("never needed");
    };
    VELDRA_ASSERT(hints_built == 0, hint());
    EXPECT_EQ(half_of_even(8), 4);
    EXPECT_EQ(hints_built, 0);
}

TEST_F(AssertionDeathTest, ConfigurationsReadBeforeLoadingDie) {
    ConfigsState configs;
    EXPECT_DEATH(configs.get(), "before the configurations were loaded");
}

TEST_F(AssertionDeathTest, CreaturesTickedOutsideATrialDie) {
    ConfigsState configs;
    HumanActionTypes action_types;
    CreaturePathfinding pathfinding;
    TrialWorld world{runtime, configs, action_types, pathfinding};
    EXPECT_DEATH(world.current_terrain(), "before the trial set its terrain");
    EXPECT_DEATH(world.trial_rng(), "before the trial set its generator");
}

TEST_F(AssertionDeathTest, ValueIndexPastTheEndDies) {
    const Value array = Value::array({1, 2});
    EXPECT_EQ(array.at(1).as_number(), 2);
    EXPECT_DEATH(array.at(2), "index out of bounds request 2 maximum size is 2");
}

TEST_F(AssertionDeathTest, DrawsFromNothingDie) {
    Rng rng(5);
    std::vector<int> empty;
    EXPECT_DEATH(rng.rng_array_get_random(empty), "rng_array_get_random on an empty array");
    EXPECT_DEATH(rng.rng_array_pop_random(empty), "rng_array_pop_random on an empty array");
    WeightedRandomSampler<int> sampler;
    sampler.add(1, 1.0);
    EXPECT_DEATH(sampler.change_weight_at(1, 2.0), "change_weight_at past the last entry");
}

TEST_F(AssertionDeathTest, TerrainWithTooFewCellsDies) {
    std::vector<TerrainCell> cells(5);
    EXPECT_DEATH(Terrain(3, 2, cells), "not height rows of width cells");
}

TEST_F(AssertionDeathTest, TickerMisuseDies) {
    Ticker uninitialized;
    EXPECT_DEATH(uninitialized.tick(runtime), "Ticker used before initialize");

    Ticker ticker;
    ticker.initialize(3);
    ticker.on_tick(runtime.instance_create<obj_guarded>(0, 0).id(),
                   [this, &ticker](std::int64_t, Rng&) { ticker.tick(runtime); });
    EXPECT_DEATH(ticker.tick(runtime), "Ticker::tick called from inside a tick handler");
}

TEST_F(AssertionDeathTest, RoomThatWasNeverAddedDies) {
    EXPECT_DEATH(runtime.room_goto(3), "room_goto to a room that was never added");
}

}  // namespace
}  // namespace veldra
