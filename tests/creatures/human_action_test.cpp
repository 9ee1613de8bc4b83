#include "creatures/human_action.h"

#include <gtest/gtest.h>

#include <memory>
#include <set>

#include "creatures/eid.h"
#include "creatures/food.h"
#include "creatures/human.h"
#include "creatures/monster.h"
#include "human_test_support.h"

namespace veldra {
namespace {

using testing::GC;
using testing::HumanTest;

void always(WeightedRandomSampler<int>& sampler, int value) {
    sampler.clear();
    sampler.add(value, 1);
}

// Ticks run directly on actions: with an empty memory a human's movement speed is 0, so it
// stands where it is put.
class EatingTest : public HumanTest {
protected:
    void SetUp() override {
        HumanTest::SetUp();
        load({"    "}, false);
    }
};

TEST_F(EatingTest, HalfACellIsNotCloseEnough) {
    auto& human = human_at(0, 0);
    auto& food = create_unticked<obj_food>(human.x + 32, human.y);
    const InstanceId food_id = food.id();
    HA_ApproachFood action(human, food_id);
    EXPECT_TRUE(action.tick(human, tick_rng));
    EXPECT_TRUE(runtime.instance_exists(food_id));
    EXPECT_EQ(human.energy, 7);

    food.x = human.x + 31.99;
    EXPECT_FALSE(action.tick(human, tick_rng));
    EXPECT_FALSE(runtime.instance_exists(food_id));
    EXPECT_EQ(human.energy, 7 + configs.get().human_energy_gain_eat_food);
    ASSERT_EQ(events.size(), 1u);
    EXPECT_NE(events[0].find("ate"), std::string::npos);
}

TEST_F(EatingTest, AMealAtMaximumIsWasted) {
    auto& human = human_at(0, 0);
    human.energy = human.energy_max;
    const InstanceId food_id = create_unticked<obj_food>(human.x, human.y).id();
    EXPECT_FALSE(HA_ApproachFood(human, food_id).tick(human, tick_rng));
    EXPECT_EQ(human.energy, human.energy_max);
    EXPECT_FALSE(runtime.instance_exists(food_id));
}

TEST_F(EatingTest, AutomaticRunsEatSilentlyAndGoneFoodEndsTheAction) {
    world.log_interactive_event = nullptr;  // an automatic trial
    auto& human = human_at(0, 0);
    auto& food = create_unticked<obj_food>(human.x, human.y);
    HA_ApproachFood action(human, food.id());
    EXPECT_FALSE(action.tick(human, tick_rng));
    EXPECT_TRUE(events.empty());
    EXPECT_FALSE(action.tick(human, tick_rng));  // nothing left to eat
}

class AvoidTest : public HumanTest {};

TEST_F(AvoidTest, FlightIsReplannedAtMostOncePer60Ticks) {
    // Room to flee to the left; small enough that the pursuer stays in sight.
    load({"     ", "     ", "     "});
    only_weights({});
    set_formula(&GC::move_speed_avoid_monster, "0");  // it never arrives, so a flight cell stays
    auto& human = human_at(2, 1);
    auto& monster = create_unticked<obj_monster>(centre(3), centre(1));
    human.force_start_action(std::make_unique<HA_AvoidMonster>(human, monster.id()));
    const auto& avoid = static_cast<const HA_AvoidMonster&>(*human.get_current_action());
    std::set<double> plans;
    for (int i = 0; i < 150; ++i) {
        monster.x += (i % 2 ? 1 : -1);  // moves every tick
        tick();
        ASSERT_EQ(human.get_current_action(), &avoid);
        plans.insert(*avoid.tick_at_last_target_cell_find);
    }
    EXPECT_EQ(plans, (std::set<double>{0, 60, 120}));
}

TEST_F(AvoidTest, WithNoWayOutTheFlightCellIsLookedForEveryTick) {
    load({"rrr", "r r", "rrr"});  // walled in: no cell leads away
    only_weights({});
    auto& human = human_at(1, 1);
    auto& monster = create_unticked<obj_monster>(centre(2), centre(1));
    human.force_start_action(std::make_unique<HA_AvoidMonster>(human, monster.id()));
    const auto& avoid = static_cast<const HA_AvoidMonster&>(*human.get_current_action());
    std::set<double> plans;
    for (int i = 0; i < 5; ++i) {
        tick();
        ASSERT_EQ(human.get_current_action(), &avoid);
        EXPECT_EQ(avoid.target_cell, nullptr);
        plans.insert(*avoid.tick_at_last_target_cell_find);
    }
    EXPECT_EQ(plans.size(), 5u);
}

TEST_F(AvoidTest, EndsWhenThePursuerIsOutOfSight) {
    load({"          "});
    set_formula(&GC::human_sight_range, "100");
    auto& human = human_at(0, 0);
    auto& other = create_unticked<obj_human_ai>(centre(1), centre(0));
    HA_AvoidHuman action(human, other.id());
    EXPECT_TRUE(action.tick(human, tick_rng));
    other.x = human.x + 100.5;
    EXPECT_FALSE(action.tick(human, tick_rng));
}

class AttackActionTest : public HumanTest {};

TEST_F(AttackActionTest, StrikesWhenReadyAndEndsOutOfRange) {
    load({"    "});
    auto& human = human_at(0, 0);
    auto& monster = create_unticked<obj_monster>(centre(1), centre(0));
    always(human.fight_action_sampler, FIGHT_MISS);
    HA_AttackMonster action(human, monster.id());
    EXPECT_TRUE(action.tick(human, tick_rng));
    EXPECT_TRUE(action.first_tick_done);
    EXPECT_EQ(human.attack_cooldown_timer, human.get_attack_cooldown_as_ticks());
    EXPECT_TRUE(action.tick(human, tick_rng));  // cooling down: waits in place
    monster.x = human.x + CREATURE_DEFAULT_ATTACK_RANGE + 0.01;
    EXPECT_FALSE(action.tick(human, tick_rng));
}

TEST_F(AttackActionTest, FleeingTurnsTheAttackIntoFlightFromTheSameCreature) {
    load({"    "});
    auto& human = human_at(0, 0);
    auto& monster = create_unticked<obj_monster>(centre(1), centre(0));
    auto& food = create_unticked<obj_food>(centre(3), centre(0));
    human.force_start_action(std::make_unique<HA_ApproachFood>(human, food.id()));
    human.force_start_action(std::make_unique<HA_AttackMonster>(human, monster.id()));
    always(human.fight_action_sampler, FIGHT_FLEE);
    human.action_choose_timer = 10;

    tick();
    ASSERT_EQ(human.actions_in_memory.size(), 2u);
    const auto* flight = dynamic_cast<const HA_AvoidMonster*>(human.get_current_action());
    ASSERT_NE(flight, nullptr);
    EXPECT_EQ(flight->target, monster.id());
    EXPECT_EQ(human.actions_in_memory[1]->type, action_types.HAT_approach_food);
    EXPECT_EQ(human.action_choose_timer, human.get_action_choose_cooldown_as_ticks());
}

class ApproachTest : public HumanTest {};

TEST_F(ApproachTest, WalksUpToTheCreatureAndEndsWithinAttackRange) {
    load({"       "});
    only_weights({});
    auto& human = human_at(0, 0);
    auto& monster = create_unticked<obj_monster>(centre(4), centre(0));  // at the edge of sight
    human.force_start_action(std::make_unique<HA_ApproachMonster>(human, monster.id()));
    int ticks = 0;
    while (!human.actions_in_memory.empty() && ticks < 600) {
        tick();
        ++ticks;
    }
    EXPECT_LT(ticks, 600);
    EXPECT_TRUE(creature_is_within_attack_range(human, monster));
    EXPECT_GT(human.x, centre(2));
}

class ExchangeTest : public HumanTest {
protected:
    void SetUp() override {
        HumanTest::SetUp();
        load({"     "});
    }
};

TEST_F(ExchangeTest, TwoExchangesTowardOnePartnerAreEqual) {
    auto& partner = human_at(1, 0);
    auto& other = human_at(2, 0);
    auto& human = human_at(0, 0);
    EXPECT_TRUE(human_actions_equal(HA_ExchangeWithHuman(human, partner.id()),
                                    HA_ExchangeWithHuman(human, partner.id())));
    EXPECT_FALSE(human_actions_equal(HA_ExchangeWithHuman(human, partner.id()),
                                     HA_ExchangeWithHuman(human, other.id())));
    EXPECT_FALSE(human_actions_equal(HA_ExchangeWithHuman(human, partner.id()),
                                     HA_ApproachHuman(human, partner.id())));
    human.force_start_action(std::make_unique<HA_ExchangeWithHuman>(human, partner.id()));
    human.force_start_action(std::make_unique<HA_ApproachHuman>(human, other.id()));
    human.force_start_action(std::make_unique<HA_ExchangeWithHuman>(human, partner.id()));
    EXPECT_EQ(human.actions_in_memory.size(), 2u);
}

struct ExchangeCase {
    int mine;
    int theirs;
    double my_gain;
    double their_gain;
};

TEST_F(ExchangeTest, GiveAndTakeMoveEnergyBothWays) {
    GameConfigurations& c = mutable_configs();
    c.exchange_collaboration_energy_gain = 1;
    c.exchange_being_ripped_off_energy_gain = -1;
    c.exchange_ripping_off_energy_gain = 1.5;
    const ExchangeCase cases[] = {
        {EXCHANGE_GIVE, EXCHANGE_GIVE, 1, 1},
        {EXCHANGE_GIVE, EXCHANGE_TAKE, -1, 1.5},
        {EXCHANGE_TAKE, EXCHANGE_GIVE, 1.5, -1},
        {EXCHANGE_TAKE, EXCHANGE_TAKE, 0, 0},
    };
    auto& human = human_at(0, 0);
    auto& partner = human_at(1, 0);
    for (const ExchangeCase& e : cases) {
        human.energy = partner.energy = 5;
        always(human.exchange_action_sampler, e.mine);
        always(partner.exchange_action_sampler, e.theirs);
        human.exchange_with_human(partner, tick_rng);
        EXPECT_EQ(human.energy, 5 + e.my_gain) << e.mine << " vs " << e.theirs;
        EXPECT_EQ(partner.energy, 5 + e.their_gain) << e.mine << " vs " << e.theirs;
        EXPECT_EQ(human.exchange_cooldown_timer, human.get_exchange_cooldown_as_ticks());
        EXPECT_EQ(partner.exchange_cooldown_timer, partner.get_exchange_cooldown_as_ticks());
    }
    human.energy = human.energy_max - 0.5;
    always(human.exchange_action_sampler, EXCHANGE_TAKE);
    always(partner.exchange_action_sampler, EXCHANGE_GIVE);
    human.exchange_with_human(partner, tick_rng);
    EXPECT_EQ(human.energy, human.energy_max);
}

TEST_F(ExchangeTest, AnInvitedPartnerComesAndEachSideTradesWhenItReachesTheOther) {
    set_formula(&GC::exchange_back_chance, "1");
    only_weights({});
    auto& human = human_at(0, 0);
    auto& partner = human_at(4, 0);
    always(human.exchange_action_sampler, EXCHANGE_GIVE);
    always(partner.exchange_action_sampler, EXCHANGE_GIVE);
    human.force_start_action(std::make_unique<HA_ExchangeWithHuman>(human, partner.id()));
    tick();
    const auto* answer = dynamic_cast<const HA_ExchangeWithHuman*>(partner.get_current_action());
    ASSERT_NE(answer, nullptr);
    EXPECT_EQ(answer->target, human.id());

    // The first trade ends the exchange of the side that made it and only that one: the other
    // keeps its own until it trades in turn, once the cooldown both wait out has passed.
    int ticks = 1;
    while (!human.actions_in_memory.empty() && !partner.actions_in_memory.empty() && ticks < 600) {
        tick();
        ++ticks;
    }
    ASSERT_LT(ticks, 600);
    EXPECT_NE(human.actions_in_memory.empty(), partner.actions_in_memory.empty());
    EXPECT_GT(human.exchange_cooldown_timer, 0);
    EXPECT_GT(partner.exchange_cooldown_timer, 0);
    while ((!human.actions_in_memory.empty() || !partner.actions_in_memory.empty()) &&
           ticks < 900) {
        tick();
        ++ticks;
    }
    EXPECT_LT(ticks, 900);
}

TEST_F(ExchangeTest, APartnerThatWalksOutOfSightIsStillFollowed) {
    set_formula(&GC::exchange_back_chance, "0");
    only_weights({});
    load({"                    "});
    auto& human = human_at(0, 0);
    auto& partner = human_at(19, 0);
    human.sight_range = 64;  // the partner is far out of sight
    human.force_start_action(std::make_unique<HA_ExchangeWithHuman>(human, partner.id()));
    tick(5);
    ASSERT_NE(human.get_current_action(), nullptr);
    EXPECT_EQ(human.get_current_action()->type, action_types.HAT_exchange_with_human);
}

TEST_F(ExchangeTest, APartnerAlreadyComingIsNotAskedAgain) {
    set_formula(&GC::exchange_back_chance, "1");
    auto& human = human_at(0, 0);
    auto& partner = human_at(3, 0);
    partner.force_start_action(std::make_unique<HA_ExchangeWithHuman>(partner, human.id()));
    const HumanAction* coming = partner.get_current_action();
    const double seed = trial_rng.seed;
    HA_ExchangeWithHuman(human, partner.id()).tick(human, tick_rng);
    EXPECT_EQ(partner.get_current_action(), coming);
    EXPECT_EQ(trial_rng.seed, seed);
}

class DebugStringTest : public HumanTest {};

TEST_F(DebugStringTest, NamesTheTypeAndEveryField) {
    load({"   "});
    auto& human = human_at(0, 0);
    auto& food = create_unticked<obj_food>(centre(1), centre(0));
    HA_ApproachFood approach(human, food.id());
    EXPECT_EQ(approach.debug_string(runtime), "ApproachFood target_food: " + EID(&food, false));
    runtime.instance_destroy(food.id());
    EXPECT_EQ(approach.debug_string(runtime), "ApproachFood target_food: UNKNOWN");
    EXPECT_EQ(HA_AttackHuman(human, NO_INSTANCE).debug_string(runtime),
              "AttackHuman target_human: NO_INSTANCE first_tick_done: false");
    EXPECT_EQ(HA_Explore(human, *terrain->cell_at(2, 0)).debug_string(runtime),
              "Explore target_cell: cell (2, 0)");
}

}  // namespace
}  // namespace veldra
