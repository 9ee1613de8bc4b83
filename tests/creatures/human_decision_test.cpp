#include <gtest/gtest.h>

#include <memory>
#include <vector>

#include "creatures/food.h"
#include "creatures/human.h"
#include "creatures/monster.h"
#include "human_test_support.h"

namespace veldra {
namespace {

using testing::GC;
using testing::HumanTest;

class DecisionTimingTest : public HumanTest {};

TEST_F(DecisionTimingTest, SixtyDecisionsASecondDecideEveryTick) {
    mutable_configs().action_update_frequency = 60;
    load({"     "});
    auto& human = human_at(2, 0);
    for (int i = 0; i < 5; ++i) {
        tick();
        EXPECT_EQ(human.action_choose_timer, 1) << "no decision at tick " << i;
    }
}

TEST_F(DecisionTimingTest, HalfADecisionASecondDecidesEvery120Ticks) {
    mutable_configs().action_update_frequency = 0.5;
    load({"     "});
    auto& human = human_at(2, 0);
    std::vector<int> decision_ticks;
    for (int i = 0; i <= 240; ++i) {
        tick();
        if (human.action_choose_timer == 120)
            decision_ticks.push_back(i);
    }
    EXPECT_EQ(decision_ticks, (std::vector<int>{0, 120, 240}));
}

TEST_F(DecisionTimingTest, NothingToStartStillWaitsAFullCooldown) {
    load({" "});  // one cell: no food, nobody, nowhere else to explore
    auto& human = human_at(0, 0);
    tick();
    EXPECT_TRUE(human.actions_in_memory.empty());
    EXPECT_EQ(human.action_choose_timer, human.get_action_choose_cooldown_as_ticks());
}

TEST_F(DecisionTimingTest, ConstantLossComesEveryFourSecondsUnclamped) {
    load({" "});
    auto& human = human_at(0, 0);
    tick(239);
    EXPECT_EQ(human.energy, 7);
    tick();
    EXPECT_EQ(human.energy, 6.5);
    human.energy = 0.25;
    tick(240);
    EXPECT_EQ(human.energy, -0.25);  // the creature tick ends it next time
    const InstanceId id = human.id();
    tick();
    EXPECT_FALSE(runtime.instance_exists(id));
}

TEST_F(DecisionTimingTest, AChangedLossRateTakesEffectAtTheNextTick) {
    load({" "});
    auto& human = human_at(0, 0);
    tick(240);
    EXPECT_EQ(human.energy, 6.5);
    // Once a second from now on: the four-second interval must not linger.
    mutable_configs().human_constant_energy_loss_frequency = 1;
    tick(59);
    EXPECT_EQ(human.energy, 6.5);
    tick();
    EXPECT_EQ(human.energy, 6);
    // And back to every four seconds.
    mutable_configs().human_constant_energy_loss_frequency = 0.25;
    tick(239);
    EXPECT_EQ(human.energy, 6);
    tick();
    EXPECT_EQ(human.energy, 5.5);
}

class MemoryTest : public HumanTest {};

TEST_F(MemoryTest, WinningCandidateRemovesTheEqualOlderEntry) {
    load({"        "});
    only_weights({&GC::weight_approach_food});
    set_formula(&GC::move_speed_approach_food, "0");
    set_formula(&GC::current_action_weight_modifier, "0");  // every candidate wins
    mutable_configs().action_update_frequency = 60;
    auto& human = human_at(0, 0);
    auto& food = create_unticked<obj_food>(centre(3), centre(0));
    human.force_start_action(std::make_unique<HA_ApproachFood>(human, food.id()));
    human.force_start_action(std::make_unique<HA_Explore>(human, *terrain->cell_at(5, 0)));

    tick(2);  // a decision: the only candidate is the food again
    ASSERT_EQ(human.actions_in_memory.size(), 2u);
    EXPECT_EQ(human.actions_in_memory[0]->type, action_types.HAT_approach_food);
    EXPECT_EQ(human.actions_in_memory[1]->type, action_types.HAT_explore);
}

TEST_F(MemoryTest, SingleSlotHoldsOnlyTheRunningAction) {
    load({"    ", "    ", "    "});
    mutable_configs().num_memory_slots = 1;
    mutable_configs().action_update_frequency = 60;
    set_formula(&GC::weight_attack_human, "0");  // both must live through the run
    auto& human = human_at(0, 0);
    human_at(3, 2);
    create_unticked<obj_food>(centre(2), centre(1));
    for (int i = 0; i < 200; ++i) {
        tick();
        ASSERT_LE(human.actions_in_memory.size(), 1u) << "at tick " << i;
    }
    auto& food = create_unticked<obj_food>(centre(1), centre(1));
    human.force_start_action(std::make_unique<HA_ApproachFood>(human, food.id()));
    ASSERT_EQ(human.actions_in_memory.size(), 1u);
    EXPECT_EQ(human.get_current_action()->type, action_types.HAT_approach_food);
}

TEST_F(MemoryTest, ForcingTheRunningActionChangesNothing) {
    load({"      "});
    auto& human = human_at(0, 0);
    auto& food = create_unticked<obj_food>(centre(4), centre(0));
    human.force_start_action(std::make_unique<HA_Explore>(human, *terrain->cell_at(5, 0)));
    human.force_start_action(std::make_unique<HA_ApproachFood>(human, food.id()));
    human.action_choose_timer = 7;
    const HumanAction* running = human.get_current_action();

    human.force_start_action(std::make_unique<HA_ApproachFood>(human, food.id()));
    EXPECT_EQ(human.get_current_action(), running);
    EXPECT_EQ(human.actions_in_memory.size(), 2u);
    EXPECT_EQ(human.action_choose_timer, 7);
}

TEST_F(MemoryTest, FinishedActionHandsOverToTheNextWithoutADraw) {
    load({"     "});
    mutable_configs().action_update_frequency = 0.5;
    auto& human = human_at(1, 0);
    human.force_start_action(std::make_unique<HA_Explore>(human, *terrain->cell_at(4, 0)));
    human.force_start_action(std::make_unique<HA_Explore>(human, *terrain->cell_at(1, 0)));
    tick();  // standing in its cell: the second exploration is over at once
    ASSERT_EQ(human.actions_in_memory.size(), 1u);
    EXPECT_EQ(static_cast<HA_Explore&>(*human.get_current_action()).target_cell,
              terrain->cell_at(4, 0));
}

// A running ApproachFood of the near food against the candidate ApproachFood of the far one
// (the target weight favours the farthest), with a decision every tick.
class DuelTest : public HumanTest {
protected:
    int candidate_wins(const char* modifier, int decisions) {
        load({"        "});
        only_weights({&GC::weight_approach_food});
        set_formula(&GC::move_speed_approach_food, "0");
        set_formula(&GC::target_weight_approach_food, "DISTANCE");
        set_formula(&GC::current_action_weight_modifier, modifier);
        mutable_configs().action_update_frequency = 60;
        auto& human = human_at(0, 0);
        const InstanceId near = create_unticked<obj_food>(centre(1), centre(0)).id();
        const InstanceId far = create_unticked<obj_food>(centre(3), centre(0)).id();
        int wins = 0;
        for (int i = 0; i < decisions; ++i) {
            human.force_start_action(std::make_unique<HA_ApproachFood>(human, near));
            tick();  // one decision
            const auto& current = static_cast<const HA_ApproachFood&>(*human.get_current_action());
            wins += current.target == far;
        }
        return wins;
    }
};

TEST_F(DuelTest, NoInertiaLetsEveryCandidateThrough) {
    EXPECT_EQ(candidate_wins("0", 50), 50);
}

TEST_F(DuelTest, HugeInertiaKeepsTheRunningAction) {
    EXPECT_EQ(candidate_wins("WEIGHT * 1000000000", 50), 0);
}

TEST_F(DuelTest, EqualWeightsSplitTheDecisions) {
    const int wins = candidate_wins("WEIGHT", 400);
    EXPECT_GT(wins, 140);
    EXPECT_LT(wins, 260);
}

class CounterAttackTest : public HumanTest {};

TEST_F(CounterAttackTest, ReplacesTheRunningActionAndRestartsTheTimer) {
    load({"     "});
    set_formula(&GC::human_counter_attack_chance_against_monster, "1");
    auto& human = human_at(0, 0);
    auto& monster = create_unticked<obj_monster>(centre(1), centre(0));
    monster.fight_action_sampler.clear();
    monster.fight_action_sampler.add(FIGHT_MISS, 1);
    human.force_start_action(std::make_unique<HA_Explore>(human, *terrain->cell_at(4, 0)));
    human.action_choose_timer = 3;

    monster.attack_creature(human, tick_rng);
    const auto* attack = dynamic_cast<const HA_AttackMonster*>(human.get_current_action());
    ASSERT_NE(attack, nullptr);
    EXPECT_EQ(attack->target, monster.id());
    EXPECT_EQ(human.actions_in_memory.size(), 2u);
    EXPECT_EQ(human.action_choose_timer, human.get_action_choose_cooldown_as_ticks());
    ASSERT_EQ(events.size(), 1u);
    EXPECT_NE(events[0].find("strikes back"), std::string::npos);
}

TEST_F(CounterAttackTest, DrawsFromTheTrialGeneratorEvenWithoutAChance) {
    load({"     "});
    set_formula(&GC::human_counter_attack_chance_against_human, "0");
    auto& human = human_at(0, 0);
    auto& attacker = create_unticked<obj_human_ai>(centre(1), centre(0));
    attacker.set_traits(PersonalityTraits{});
    const double seed_before = trial_rng.seed;
    const double tick_seed_before = tick_rng.seed;

    attacker.attack_creature(human, tick_rng);
    EXPECT_TRUE(human.actions_in_memory.empty());
    EXPECT_NE(trial_rng.seed, seed_before);
    Rng expected_tick_rng(tick_seed_before);
    expected_tick_rng.rng_random(1);  // the blow's outcome, nothing more
    EXPECT_EQ(tick_rng.seed, expected_tick_rng.seed);
}

TEST_F(CounterAttackTest, AgainstAHumanStartsAttackHuman) {
    load({"     "});
    set_formula(&GC::human_counter_attack_chance_against_human, "1");
    auto& human = human_at(0, 0);
    auto& attacker = create_unticked<obj_human_ai>(centre(1), centre(0));
    attacker.set_traits(PersonalityTraits{});
    attacker.attack_creature(human, tick_rng);
    const auto* attack = dynamic_cast<const HA_AttackHuman*>(human.get_current_action());
    ASSERT_NE(attack, nullptr);
    EXPECT_EQ(attack->target, attacker.id());
}

class CandidateTest : public HumanTest {};

TEST_F(CandidateTest, TypesOfWeightZeroAreAskedAfterTheOthers) {
    load({"     ", "     ", "     "});
    // The only type with a pull cannot start (no food anywhere); explore, of weight 0, can.
    only_weights({&GC::weight_approach_food});
    auto& human = human_at(0, 0);
    tick();
    ASSERT_NE(human.get_current_action(), nullptr);
    EXPECT_EQ(human.get_current_action()->type, action_types.HAT_explore);

    // With food in sight the type with a pull comes first and wins.
    auto& other = human_at(4, 2);
    create_unticked<obj_food>(centre(3), centre(2));
    other.action_choose_timer = 0;
    tick();
    ASSERT_NE(other.get_current_action(), nullptr);
    EXPECT_EQ(other.get_current_action()->type, action_types.HAT_approach_food);
}

class ReEvaluationTest : public HumanTest {};

TEST_F(ReEvaluationTest, AllZeroWeightsLogOncePerReEvaluationAndStartNothing) {
    load({"   "});
    only_weights({});
    const char* message =
        "The total weight of actions is zero or negative! This will cause problems.";
    auto& human = human_at(0, 0);
    EXPECT_EQ(capture.count(message), 1u);
    create_unticked<obj_food>(centre(2), centre(0));
    human.energy = 2;  // the next tick sees the change and re-evaluates
    tick(3);
    EXPECT_EQ(capture.count(message), 2u);
    EXPECT_TRUE(human.actions_in_memory.empty());
}

TEST_F(ReEvaluationTest, EnergyChangeRecomputesWeightsFromTheNewRatio) {
    load({"   "});
    auto& human = human_at(0, 0);
    const std::size_t food = action_types.HAT_approach_food->index;
    const double full_weight = human.action_weights[food];
    human.energy = 1;
    tick();
    EXPECT_GT(human.action_weights[food], full_weight);
    EXPECT_EQ(human.action_weights[food],
              mutable_configs().weight_approach_food(human.personality_traits, 0.1));
}

TEST_F(ReEvaluationTest, SandSlowsTheRunningAction) {
    load({" s"});
    auto& on_ground = human_at(0, 0);
    auto& on_sand = human_at(1, 0);
    on_ground.force_start_action(std::make_unique<HA_Explore>(on_ground, *terrain->cell_at(1, 0)));
    on_sand.force_start_action(std::make_unique<HA_Explore>(on_sand, *terrain->cell_at(0, 0)));
    EXPECT_EQ(on_sand.get_movement_speed(),
              on_ground.get_movement_speed() * mutable_configs().human_sand_move_speed_multiplier);
}

}  // namespace
}  // namespace veldra
