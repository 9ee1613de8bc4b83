#include "creatures/creature.h"

#include <gtest/gtest.h>

#include <cmath>

#include <fmt/format.h>

#include "creature_test_fixture.h"
#include "creatures/eid.h"
#include "creatures/food.h"
#include "creatures/human_ai.h"
#include "creatures/human_player.h"
#include "creatures/monster.h"

namespace veldra {
namespace {

using testing::CreatureTest;

void always(obj_creature& creature, FightAction outcome) {
    creature.fight_action_sampler.clear();
    creature.fight_action_sampler.add(outcome, 1);
}

class AttackExchangeTest : public CreatureTest {
protected:
    void SetUp() override {
        CreatureTest::SetUp();
        load({"     ", "     "});
    }
};

TEST_F(AttackExchangeTest, FirstBlowCountsOverBothDirections) {
    auto& a = create_unticked<obj_monster>(centre(0), centre(0));
    auto& b = create_unticked<obj_monster>(centre(1), centre(0));
    a.first_attack_damage = b.first_attack_damage = 2;
    a.normal_attack_damage = b.normal_attack_damage = 0.5;
    a.energy = b.energy = 3;
    a.energy_max = b.energy_max = 10;
    a.attacker_energy_gain = b.attacker_energy_gain = 0.25;
    always(a, FIGHT_HIT);
    always(b, FIGHT_HIT);
    world.spent_ticks = 7;

    EXPECT_EQ(a.attack_creature(b, tick_rng), FightOutcome::hit);
    EXPECT_EQ(b.energy, 1);
    EXPECT_EQ(a.energy, 3.25);
    EXPECT_EQ(creatures_get_last_attack_time(b, a), 7);
    // b never struck a, but a struck b: b's first blow is a normal one.
    world.spent_ticks = 9;
    b.attack_creature(a, tick_rng);
    EXPECT_EQ(a.energy, 2.75);
    EXPECT_EQ(creatures_get_last_attack_time(a, b), 9);
    EXPECT_EQ(b.attack_cooldown_timer, b.get_attack_cooldown_as_ticks());
}

TEST_F(AttackExchangeTest, MissAndFleeDealNothingButStillCount) {
    auto& a = create_unticked<obj_monster>(centre(0), centre(0));
    auto& b = create_unticked<obj_monster>(centre(1), centre(0));
    std::vector<InstanceId> attackers;
    b.got_attacked_event.subscribe([&](InstanceId attacker) { attackers.push_back(attacker); });
    const double a_energy = a.energy;
    const double b_energy = b.energy;

    always(a, FIGHT_MISS);
    EXPECT_EQ(a.attack_creature(b, tick_rng), FightOutcome::miss);
    a.attack_cooldown_timer = 0;
    a.fight_action_sampler.clear();  // an empty sampler flees
    EXPECT_EQ(a.attack_creature(b, tick_rng), FightOutcome::flee);

    EXPECT_EQ(a.energy, a_energy);
    EXPECT_EQ(b.energy, b_energy);
    EXPECT_EQ(attackers, (std::vector<InstanceId>{a.id(), a.id()}));
    EXPECT_TRUE(creatures_get_last_attack_time(a, b).has_value());
    EXPECT_FALSE(a.can_attack_creature(b));
}

TEST_F(AttackExchangeTest, AttackerGainIsCappedAtMax) {
    auto& a = create_unticked<obj_monster>(centre(0), centre(0));
    auto& b = create_unticked<obj_monster>(centre(1), centre(0));
    always(a, FIGHT_HIT);
    a.energy = a.energy_max;
    a.attack_creature(b, tick_rng);
    EXPECT_EQ(a.energy, a.energy_max);
}

TEST_F(AttackExchangeTest, OnlyHumansGainFromKills) {
    const GameConfigurations& c = configs.get();
    auto& human = create_unticked<obj_human_ai>(centre(0), centre(0));
    auto& monster = create_unticked<obj_monster>(centre(1), centre(0));
    auto& other_human = create_unticked<obj_human_ai>(centre(2), centre(0));
    for (obj_creature* creature :
         {static_cast<obj_creature*>(&human), static_cast<obj_creature*>(&monster),
          static_cast<obj_creature*>(&other_human)}) {
        always(*creature, FIGHT_HIT);
        creature->attacker_energy_gain = 0;
        creature->energy_max = 100;
        creature->energy = 1;
        creature->first_attack_damage = 1;
    }
    human.attack_creature(monster, tick_rng);
    EXPECT_EQ(human.energy, 1 + c.human_energy_gain_kill_monster);
    human.attack_cooldown_timer = 0;
    human.attack_creature(other_human, tick_rng);
    EXPECT_EQ(human.energy, 1 + c.human_energy_gain_kill_monster + c.human_energy_gain_kill_human);
    EXPECT_EQ(events.size(), 2u);  // kills are logged even in automatic trials

    auto& hunter = create_unticked<obj_monster>(centre(3), centre(0));
    always(hunter, FIGHT_HIT);
    hunter.energy = 1;
    hunter.attacker_energy_gain = 0;
    human.energy = 0.5;
    hunter.attack_creature(human, tick_rng);
    EXPECT_EQ(hunter.energy, 1);
}

TEST_F(AttackExchangeTest, RangeIsInclusiveAtExactlyTheDiagonalAndAQuarter) {
    EXPECT_EQ(CREATURE_DEFAULT_ATTACK_RANGE, 106.50966799187809);
    auto& a = create_unticked<obj_monster>(10, 10);
    auto& b = create_unticked<obj_monster>(10 + 106.50966799187809, 10);
    EXPECT_TRUE(creature_is_within_attack_range(a, b));
    b.x = std::nextafter(b.x, 1000.0);
    EXPECT_FALSE(creature_is_within_attack_range(a, b));
    // The first creature's range counts.
    b.attack_range = 1000;
    EXPECT_FALSE(creature_is_within_attack_range(a, b));
    EXPECT_TRUE(creature_is_within_attack_range(b, a));
}

class CreatureTickTest : public CreatureTest {};

TEST_F(CreatureTickTest, EnergyChangedOnlyWhenDifferentAtTheTick) {
    load({"   "});
    auto& monster = create<obj_monster>(centre(0), centre(0));
    int raised = 0;
    monster.energy_changed_event.subscribe([&] { ++raised; });
    monster.energy -= 1;
    monster.energy += 1;
    monster.target_explore_cell = nullptr;
    tick();
    EXPECT_EQ(raised, 0);
    monster.energy -= 1;
    tick(2);
    EXPECT_EQ(raised, 1);
}

TEST_F(CreatureTickTest, NoEnergyDiesAtTheFirstTickBeforeAnythingElse) {
    load({"   "}, false);
    auto& monster = create<obj_monster>(centre(1), centre(0));
    const InstanceId id = monster.id();
    int raised = 0;
    monster.energy_changed_event.subscribe([&] { ++raised; });
    monster.energy = 0;
    tick();
    EXPECT_FALSE(runtime.instance_exists(id));
    EXPECT_EQ(raised, 0);
}

TEST_F(CreatureTickTest, CooldownAndPositionHistoryAdvanceEachTick) {
    load({"x x"});  // the monster's cell is shut in: it stays put
    auto& monster = create<obj_monster>(centre(1), centre(0));
    monster.attack_cooldown_timer = 2;
    monster.x += 5;
    tick();
    EXPECT_EQ(monster.attack_cooldown_timer, 1);
    EXPECT_EQ(monster.x_on_previous_tick, centre(1));
    EXPECT_EQ(monster.x_on_current_tick, centre(1) + 5);
    tick(3);
    EXPECT_EQ(monster.attack_cooldown_timer, 0);
}

TEST_F(CreatureTest, EidNamesTheMostSpecificKind) {
    load({"   "});
    auto& player = create_unticked<obj_human_player>(0, 0);
    auto& human = create_unticked<obj_human_ai>(0, 0);
    auto& food = create<obj_food>(0, 0);
    EXPECT_EQ(EID(&player, false), fmt::format("Player({})", player.id()));
    EXPECT_EQ(EID(&human, false), fmt::format("Human({})", human.id()));
    EXPECT_EQ(EID(&food, false), fmt::format("Food({})", food.id()));
    EXPECT_EQ(EID(nullptr, false), "UNKNOWN");
    const std::string colored = EID(&food, true);
    EXPECT_TRUE(colored.starts_with("[#")) << colored;
    EXPECT_TRUE(colored.ends_with(fmt::format("]Food({})[/c]", food.id()))) << colored;
    EXPECT_EQ(colored, EID(&food, true));  // the hue is the instance's own, every time
}

TEST(EventTest, InvokesInSubscriptionOrderAndForgetsUnsubscribed) {
    Event<int> event;
    std::vector<int> calls;
    event.subscribe([&](int v) { calls.push_back(v); });
    const EventToken second = event.subscribe([&](int v) { calls.push_back(v * 10); });
    event.subscribe([&](int v) { calls.push_back(v * 100); });
    event.invoke(1);
    event.unsubscribe(second);
    event.unsubscribe(second);
    event.invoke(2);
    EXPECT_EQ(calls, (std::vector<int>{1, 10, 100, 2, 200}));
}

}  // namespace
}  // namespace veldra
