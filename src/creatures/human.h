#pragma once
// The creature that thinks. Every tick a human counts down its cooldowns, loses a little energy
// at a fixed rate and, at the configured decision rate, draws what to do next: a weighted random
// ordering of the nine action types, the first that can start giving the candidate, and a
// weighted duel between that candidate and the running action (which the configuration gives
// some inertia). Actions live in a short most-recent-first memory whose first entry runs.
//
// All weights, samplers, speeds and trait-derived scalars come from configuration formulas of
// the human's traits and energy ratio; they are recomputed whole whenever the traits are set or
// the energy changed, so every draw uses the weights of the current energy.

#include <array>
#include <cstdint>
#include <memory>
#include <optional>
#include <vector>

#include "config/personality_traits.h"
#include "creatures/creature.h"
#include "creatures/human_action.h"
#include "creatures/human_action_type.h"
#include "util/weighted_random_sampler.h"

namespace veldra {

// Outcomes of a human's exchange draw, in sampler order.
enum ExchangeAction : int { EXCHANGE_GIVE = 0, EXCHANGE_TAKE = 1 };

class obj_human : public obj_creature {
    VELDRA_OBJECT(obj_human, obj_creature)
public:
    using obj_creature::obj_creature;

    void on_create() override;
    // The creature part first (death, cooldown, energy event, position history), then the
    // decision tick, unless the creature part destroyed the human.
    void on_tick(Ticks tick, Rng& rng) override;

    // Copies the traits (the human never shares a record with its caller) and re-evaluates.
    void set_traits(const PersonalityTraits& traits);
    void re_evaluate_from_configs();

    double energy_ratio() const { return energy / energy_max; }
    // Pixels per tick for the running action, slowed on sand; 0 with nothing to do.
    double get_movement_speed() const;
    // The running action, or nullptr when the memory is empty.
    HumanAction* get_current_action() const;

    // A target instance of `object` in sight, drawn with `target_weight` of its relative
    // distance; NO_INSTANCE when none is in sight. Uses scratch shared by all humans of its
    // world: not re-entrant.
    InstanceId choose_action_target(const ObjectType& object, const ConfigMethod& target_weight,
                                    Rng& rng) const;

    bool can_exchange_with_human(const obj_human& other) const;
    // Both sides draw give or take; energies move accordingly and both exchange cooldowns
    // restart. `rng` is the tick's generator.
    void exchange_with_human(obj_human& partner, Rng& rng);

    Ticks get_action_choose_cooldown_as_ticks() const;
    Ticks get_exchange_cooldown_as_ticks() const;

    // Removes every remembered action equal to `action` (human_actions_equal).
    void stop_equal_actions(const HumanAction& action);
    void stop_actions_of_type(const HumanActionType& type);
    // Starts `action` at once, bypassing the draw: counter-attacks, answers to an exchange and
    // the player's steering. Nothing changes when the running action already equals it;
    // otherwise it becomes the running action and the decision timer restarts, so it runs for
    // at least one decision interval.
    void force_start_action(std::unique_ptr<HumanAction> action);

    PersonalityTraits personality_traits;
    // Most recent first; [0] is the running action.
    std::vector<std::unique_ptr<HumanAction>> actions_in_memory;
    Ticks action_choose_timer = 0;                       // until the next decision
    Ticks exchange_cooldown_timer = 0;                   // until the next exchange is allowed
    Ticks constant_energy_loss_timer = 0;                // since the last constant energy loss
    WeightedRandomSampler<int> exchange_action_sampler;  // ExchangeAction values
    WeightedRandomSampler<const HumanActionType*> action_sampler;

    // Trait-derived scalars, set by re-evaluation.
    double sight_range = 0;        // pixels
    double exploration_range = 0;  // pixels
    double counter_attack_chance_against_human = 0;
    double counter_attack_chance_against_monster = 0;
    double exchange_back_chance = 0;

    // By HumanActionType::index.
    std::array<double, HUMAN_ACTION_TYPE_COUNT> action_weights{};
    std::array<double, HUMAN_ACTION_TYPE_COUNT> action_move_speeds{};  // pixels per tick

private:
    // rate_as_ticks of a rate asked every tick that only changes with the configuration: the
    // division was the larger part of a human's tick, so the last answer is kept. Keyed by the
    // rate's bits, so 0 and -0 (opposite infinities) never mix.
    class RateInTicks {
    public:
        Ticks get(double per_second);

    private:
        bool known_ = false;
        std::uint64_t rate_ = 0;
        Ticks ticks_ = 0;
    };

    void decision_tick(Rng& rng);
    void lose_energy_constantly();
    void decide(Rng& rng);
    std::unique_ptr<HumanAction> find_candidate(Rng& rng);
    bool candidate_wins_duel(const HumanAction& candidate, Rng& rng);
    void remember(std::unique_ptr<HumanAction> action);
    void run_current_action(Rng& rng);
    void counter_attack(InstanceId attacker);
    void re_evaluate_samplers(double ratio);
    // Moves the entries matching `pred` out of the memory into retired_actions_.
    template <class Pred>
    void retire_actions_if(Pred pred);

    RateInTicks energy_loss_interval_;
    std::vector<const HumanActionType*> action_order_;  // scratch of find_candidate
    WeightedRandomSampler<int> duel_sampler_;           // scratch of candidate_wins_duel
    // Actions taken out of the memory, kept alive until the end of the human's tick because one
    // of them may be the action whose tick is running (an attack that turns into flight).
    std::vector<std::unique_ptr<HumanAction>> retired_actions_;
};

}  // namespace veldra
