// obj_creature: the creature part of a tick, the attack exchange and animation starts.

#include "creatures/creature.h"

#include <algorithm>
#include <cmath>
#include <numbers>

#include <fmt/format.h>

#include "config/game_configurations.h"
#include "creatures/creature_pathfinding.h"
#include "creatures/eid.h"
#include "creatures/human.h"
#include "creatures/trial_world.h"
#include "runtime/runtime.h"
#include "util/geometry.h"
#include "util/portable_math.h"

namespace veldra {

namespace {

// Steps of the one-shot animations an attack starts.
constexpr double ATTACK_ANIMATION_STEPS = 10;
constexpr double REACTION_ANIMATION_STEPS = 20;  // duck and hurt

// Degrees, counter-clockwise from +x with y growing downward (screen coordinates).
double point_direction(double x1, double y1, double x2, double y2) {
    return portable::atan2(-(y2 - y1), x2 - x1) * 180.0 / std::numbers::pi;
}

// Tells the views that `creature` died where it stands, so one can leave a corpse that fades
// out; the creature itself is gone by the next frame.
void creature_create_death_animation(const obj_creature& creature) {
    creature.world().creature_died.invoke(creature);
}

}  // namespace

void obj_creature::on_create() {
    obj_entity::on_create();
    energy_previous = energy;
    x_on_previous_tick = x_on_current_tick = x;
    y_on_previous_tick = y_on_current_tick = y;
    subscribe_to_ticker();
}

// The ticker drops the handler once this creature is gone, so `this` is never used dead.
void obj_creature::subscribe_to_ticker() {
    if (world().subscribe_tick)
        world().subscribe_tick(id(), [this](Ticks tick, Rng& rng) { creature_tick(tick, rng); });
}

void obj_creature::_creature_initialize(double energy_max_, double energy_) {
    energy_max = energy_max_;
    energy = energy_;
    energy_previous = energy_;
}

void obj_creature::creature_tick(Ticks tick, Rng& rng) {
    if (energy <= 0) {
        runtime().instance_destroy(id());
        return;
    }
    on_tick(tick, rng);
}

void obj_creature::on_tick(Ticks, Rng&) {
    if (attack_cooldown_timer > 0)
        attack_cooldown_timer -= 1;
    if (energy != energy_previous) {
        energy_previous = energy;
        energy_changed_event.invoke();
    }
    x_on_previous_tick = x_on_current_tick;
    y_on_previous_tick = y_on_current_tick;
    x_on_current_tick = x;
    y_on_current_tick = y;
}

void obj_creature::on_destroy() {
    creature_create_death_animation(*this);
}

void obj_creature::on_clean_up() {
    attack_times_per_creature.clear();
    creature_pathfinding_forget(world().pathfinding, id());
}

bool obj_creature::can_attack_creature(const obj_creature&) const {
    return attack_cooldown_timer <= 0;
}

Ticks obj_creature::get_attack_cooldown_as_ticks() const {
    return static_cast<Ticks>(std::ceil(1.0 / world().configs().attack_frequency * 60.0));
}

FightOutcome obj_creature::attack_creature(obj_creature& target, Rng& rng) {
    const int drawn = fight_action_sampler.get(FIGHT_FLEE, rng);
    FightOutcome outcome = FightOutcome::flee;
    if (drawn == FIGHT_HIT) {
        outcome = FightOutcome::hit;
        deal_hit(target);
    } else if (drawn == FIGHT_MISS) {
        outcome = FightOutcome::miss;
        log_attack("misses", target);
        start_animation(CREATURE_ANIMATION_ATTACK, target.x, target.y, ATTACK_ANIMATION_STEPS);
        target.start_animation(CREATURE_ANIMATION_DUCK, x, y, REACTION_ANIMATION_STEPS);
    } else {
        log_attack("flees from", target);
    }
    attack_times_per_creature[target.id()] = world().spent_ticks;
    attack_cooldown_timer = get_attack_cooldown_as_ticks();
    target.got_attacked_event.invoke(id());
    if (target.energy <= 0)
        reward_kill(target);
    return outcome;
}

// The first blow against a creature is told from later ones over both directions: a creature
// that was attacked by its target earlier strikes a normal blow.
void obj_creature::deal_hit(obj_creature& target) {
    const bool first = !creatures_get_last_attack_time(*this, target).has_value();
    target.energy -= first ? first_attack_damage : normal_attack_damage;
    energy = std::min(energy_max, energy + attacker_energy_gain);
    log_attack("hits", target);
    start_animation(CREATURE_ANIMATION_ATTACK, target.x, target.y, ATTACK_ANIMATION_STEPS);
    target.start_animation(CREATURE_ANIMATION_HURT, x, y, REACTION_ANIMATION_STEPS);
}

// Only humans live off their kills; the target dies at its own next tick.
void obj_creature::reward_kill(const obj_creature& target) {
    if (!is_a<obj_human>())
        return;
    const GameConfigurations& c = world().configs();
    const double gain = target.is_a<obj_human>() ? c.human_energy_gain_kill_human
                                                 : c.human_energy_gain_kill_monster;
    energy = std::min(energy_max, energy + gain);
    if (world().log_event)
        world().log_event(fmt::format("{} killed {}.", EID(this, false), EID(&target, false)));
}

void obj_creature::log_attack(const char* verb, const obj_creature& target) const {
    // Attack lines are written only in interactive trials, whose trial sets this log.
    if (const auto& log = world().log_interactive_event)
        log(fmt::format("{} {} {}.", EID(this, false), verb, EID(&target, false)));
}

void obj_creature::start_animation(CreatureAnimation kind, double target_x, double target_y,
                                   double time) {
    animation_started_event.invoke({kind, point_direction(x, y, target_x, target_y), time});
}

bool creature_is_within_attack_range(const obj_creature& a, const obj_creature& b) {
    return point_distance_compare(a.x, a.y, b.x, b.y, a.attack_range) <= 0;
}

std::optional<Ticks> creatures_get_last_attack_time(const obj_creature& a, const obj_creature& b) {
    std::optional<Ticks> latest;
    if (auto it = a.attack_times_per_creature.find(b.id()); it != a.attack_times_per_creature.end())
        latest = it->second;
    if (auto it = b.attack_times_per_creature.find(a.id()); it != b.attack_times_per_creature.end())
        latest = latest ? std::max(*latest, it->second) : it->second;
    return latest;
}

}  // namespace veldra
