#pragma once
// obj_creature: an entity with energy that can fight. It owns the per-tick bookkeeping every
// creature shares (death at no energy, attack cooldown, the energy-changed event, the position
// history), the attack exchange between two creatures and the start of its one-shot animations.
// Humans and monsters derive from it and fill its fight parameters from the configuration.
//
// Every creature subscribes one tick handler to the trial's ticker at creation; the handler
// checks for death first and then calls the virtual on_tick, whose overrides run this class's
// part first and their own after.

#include <map>
#include <optional>
#include <string>

#include "creatures/entity.h"
#include "creatures/event.h"
#include "runtime/instance_id.h"
#include "util/rng.h"
#include "util/ticks.h"
#include "util/weighted_random_sampler.h"

namespace veldra {

// Values held by fight_action_sampler, in sampler order.
enum FightAction : int { FIGHT_HIT = 0, FIGHT_MISS = 1, FIGHT_FLEE = 2 };

// What attack_creature did, so the caller can react to a flight.
enum class FightOutcome { hit, miss, flee };

// One-shot animations; the numbers index the sprite choice of the creature's view.
enum CreatureAnimation : int {
    CREATURE_ANIMATION_NONE = 0,
    CREATURE_ANIMATION_ATTACK = 1,
    CREATURE_ANIMATION_DUCK = 2,
    CREATURE_ANIMATION_HURT = 3,
    CREATURE_ANIMATION_EXCHANGE = 4,
};

// What a one-shot animation needs to be shown: views (ui/) keep the animation's progress, the
// simulation only says that one started.
struct CreatureAnimationStart {
    CreatureAnimation kind = CREATURE_ANIMATION_NONE;
    double direction = 0;  // degrees, toward the other creature
    double time = 0;       // steps
};

// A diagonal neighbour cell (cells are 64 pixels) plus a quarter cell: 106.50966799187809.
inline constexpr double CREATURE_DEFAULT_ATTACK_RANGE = 64 * (1.4142135623730951 + 0.25);

struct TrialWorld;

class obj_creature : public obj_entity {
    VELDRA_OBJECT(obj_creature, obj_entity)
public:
    explicit obj_creature(TrialWorld& world) : world_(world) {}

    // Everything the creature reads and changes beyond itself goes through its world.
    TrialWorld& world() const { return world_; }

    void on_create() override;
    void on_destroy() override;
    void on_clean_up() override;

    // The creature's tick handler: a creature with no energy destroys itself and does nothing
    // more; otherwise on_tick runs. The destroyed creature's memory may be gone as soon as
    // instance_destroy returns, so the death check lives here, outside on_tick and its
    // overrides, which therefore always run on a live creature. `tick` is the ticker's count,
    // `rng` its generator.
    void creature_tick(Ticks tick, Rng& rng);
    // The creature part of a tick: cooldown, energy event, position history. Overrides call it
    // first, then do their own part.
    virtual void on_tick(Ticks tick, Rng& rng);

    // Children call it first thing in their create event with their configured values.
    void _creature_initialize(double energy_max_, double energy_);
    bool can_attack_creature(const obj_creature& target) const;
    // One attack exchange; `rng` draws the outcome (the tick's generator).
    FightOutcome attack_creature(obj_creature& target, Rng& rng);
    // Ticks between two attacks (the configuration gives attacks per second; 60 ticks a second).
    Ticks get_attack_cooldown_as_ticks() const;
    // Starts a one-shot animation of `time` steps pointing at (target_x, target_y): raises
    // animation_started_event for whatever view shows this creature.
    void start_animation(CreatureAnimation kind, double target_x, double target_y, double time);

    double energy_max = 5;
    double energy = 5;
    double energy_previous = 5;  // energy at the last tick, to see changes
    double x_on_previous_tick = 0;
    double y_on_previous_tick = 0;
    double x_on_current_tick = 0;
    double y_on_current_tick = 0;
    Ticks attack_cooldown_timer = 0;
    double attack_range = CREATURE_DEFAULT_ATTACK_RANGE;  // pixels

    Event<InstanceId> got_attacked_event;  // on the target after each attack, with the attacker
    // Ordered by id so that nothing ever depends on hash order. Values are trial ticks.
    std::map<InstanceId, Ticks> attack_times_per_creature;
    Event<> energy_changed_event;  // at most once per tick in which energy changed
    Event<const CreatureAnimationStart&> animation_started_event;  // whenever start_animation runs

    WeightedRandomSampler<int> fight_action_sampler;  // FightAction values
    double first_attack_damage = 1;
    double normal_attack_damage = 1;
    double attacker_energy_gain = 1;

private:
    TrialWorld& world_;

    void subscribe_to_ticker();
    void deal_hit(obj_creature& target);
    void reward_kill(const obj_creature& target);
    void log_attack(const char* verb, const obj_creature& target) const;
};

// The first creature's range counts: a target exactly attack_range away is in range.
bool creature_is_within_attack_range(const obj_creature& a, const obj_creature& b);
// The later of the two creatures' attacks on each other, in trial ticks; none when neither
// ever attacked the other.
std::optional<Ticks> creatures_get_last_attack_time(const obj_creature& a, const obj_creature& b);

}  // namespace veldra
