// obj_human: creation, the decision tick and the action memory.

#include "creatures/human.h"

#include <algorithm>
#include <bit>
#include <cmath>
#include <cstdint>

#include <fmt/format.h>

#include "creatures/eid.h"
#include "creatures/human_trial.h"
#include "creatures/monster.h"
#include "runtime/runtime.h"

namespace veldra {

namespace {

// A rate per second as a whole number of ticks (60 a second), never less than one.
Ticks rate_as_ticks(double per_second) {
    return static_cast<Ticks>(std::ceil(1.0 / per_second * 60.0));
}

}  // namespace

Ticks obj_human::RateInTicks::get(double per_second) {
    const auto rate = std::bit_cast<std::uint64_t>(per_second);
    if (!known_ || rate != rate_) {
        ticks_ = rate_as_ticks(per_second);
        rate_ = rate;
        known_ = true;
    }
    return ticks_;
}

void obj_human::on_create() {
    obj_creature::on_create();
    const GameConfigurations& c = world().configs();
    _creature_initialize(c.human_energy_max, c.human_starting_energy);
    // Both handlers live in this human's own events, so they go with it.
    got_attacked_event.subscribe([this](InstanceId attacker) { counter_attack(attacker); });
    energy_changed_event.subscribe([this] { re_evaluate_from_configs(); });
}

void obj_human::set_traits(const PersonalityTraits& traits) {
    personality_traits = traits;
    re_evaluate_from_configs();
}

// The creature part may destroy the human, and outside an event pass the runtime frees it at
// once: whether it lives on is asked by id, never through `this`.
void obj_human::on_tick(Ticks tick, Rng& rng) {
    const InstanceId self = id();
    obj_creature::on_tick(tick, rng);
    if (runtime().instance_exists(self))
        decision_tick(rng);
}

Ticks obj_human::get_action_choose_cooldown_as_ticks() const {
    return rate_as_ticks(world().configs().action_update_frequency);
}

Ticks obj_human::get_exchange_cooldown_as_ticks() const {
    return rate_as_ticks(world().configs().exchange_frequency);
}

HumanAction* obj_human::get_current_action() const {
    return actions_in_memory.empty() ? nullptr : actions_in_memory.front().get();
}

// The timer counts down before it is tested, so a cooldown of N ticks means a decision every N
// ticks: every tick at 60 decisions a second, every 120 ticks at 0.5.
void obj_human::decision_tick(Rng& rng) {
    if (exchange_cooldown_timer > 0)
        exchange_cooldown_timer -= 1;
    lose_energy_constantly();
    if (action_choose_timer > 0)
        action_choose_timer -= 1;
    if (action_choose_timer <= 0)
        decide(rng);
    run_current_action(rng);
    retired_actions_.clear();
}

// Not clamped: the creature tick destroys a human at or below 0.
void obj_human::lose_energy_constantly() {
    const GameConfigurations& c = world().configs();
    constant_energy_loss_timer += 1;
    if (constant_energy_loss_timer <
        energy_loss_interval_.get(c.human_constant_energy_loss_frequency))
        return;
    constant_energy_loss_timer = 0;
    energy -= c.human_constant_energy_loss_amount;
}

void obj_human::decide(Rng& rng) {
    action_choose_timer = get_action_choose_cooldown_as_ticks();
    world().decisions += 1;
    world().last_decision_by = id();
    std::unique_ptr<HumanAction> candidate = find_candidate(rng);
    if (candidate && candidate_wins_duel(*candidate, rng))
        remember(std::move(candidate));
}

// All nine types are asked in a weighted random order; the first that can start gives the
// candidate. A type of weight 0 or less gets the key 0 (or below), so it comes after every type
// with a pull and is asked only when none of those can start. A sampler with no positive weight
// at all gives no candidate (its fault was logged when it was filled).
std::unique_ptr<HumanAction> obj_human::find_candidate(Rng& rng) {
    if (action_sampler.total_weight() <= 0)
        return nullptr;
    action_sampler.get_ordered_array(rng, action_order_);
    for (const HumanActionType* type : action_order_) {
        if (std::unique_ptr<HumanAction> candidate = type->try_initiate(*this, rng))
            return candidate;
    }
    return nullptr;
}

// The running action defends its place with its type's weight as modified by the
// configuration (its inertia); a sampler with no positive weight lets the candidate through.
bool obj_human::candidate_wins_duel(const HumanAction& candidate, Rng& rng) {
    const HumanAction* current = get_current_action();
    if (!current)
        return true;
    const double current_weight = action_weights[current->type->index];
    if (current_weight <= 0)
        return true;
    constexpr int CURRENT = 0;
    constexpr int CANDIDATE = 1;
    duel_sampler_.clear();
    duel_sampler_.add(CURRENT, world().configs().current_action_weight_modifier(
                                   personality_traits, energy_ratio(), current_weight));
    duel_sampler_.add(CANDIDATE, action_weights[candidate.type->index]);
    return duel_sampler_.get(CANDIDATE, rng) == CANDIDATE;
}

template <class Pred>
void obj_human::retire_actions_if(Pred pred) {
    auto kept = actions_in_memory.begin();
    for (auto& entry : actions_in_memory) {
        if (pred(*entry)) {
            retired_actions_.push_back(std::move(entry));
            continue;
        }
        if (&*kept != &entry)
            *kept = std::move(entry);
        ++kept;
    }
    actions_in_memory.erase(kept, actions_in_memory.end());
}

// The memory holds each piece of behaviour once; the newest is first and runs, and the memory
// never holds more than num_memory_slots actions.
void obj_human::remember(std::unique_ptr<HumanAction> action) {
    stop_equal_actions(*action);
    actions_in_memory.insert(actions_in_memory.begin(), std::move(action));
    const auto slots = static_cast<std::size_t>(std::max(0.0, world().configs().num_memory_slots));
    while (actions_in_memory.size() > slots) {
        retired_actions_.push_back(std::move(actions_in_memory.back()));
        actions_in_memory.pop_back();
    }
}

// The running action may take itself out of the memory (an attack that turns into flight), or
// be replaced by a forced one, so it is found again by address before it is dropped.
void obj_human::run_current_action(Rng& rng) {
    HumanAction* current = get_current_action();
    if (!current || current->tick(*this, rng))
        return;
    retire_actions_if([current](const HumanAction& action) { return &action == current; });
}

void obj_human::stop_equal_actions(const HumanAction& action) {
    retire_actions_if(
        [&action](const HumanAction& entry) { return human_actions_equal(entry, action); });
}

void obj_human::stop_actions_of_type(const HumanActionType& type) {
    retire_actions_if([&type](const HumanAction& entry) { return entry.type == &type; });
}

// Forcing cuts the memory to num_memory_slots like a decision does, so that a human with one
// slot never holds more than the action it runs (docs/behaviour.md says why).
void obj_human::force_start_action(std::unique_ptr<HumanAction> action) {
    const HumanAction* current = get_current_action();
    if (current && human_actions_equal(*current, *action))
        return;
    remember(std::move(action));
    action_choose_timer = get_action_choose_cooldown_as_ticks();
}

void obj_human::counter_attack(InstanceId attacker_id) {
    const Instance* attacker = runtime().find(attacker_id);
    if (!attacker)
        return;
    const bool by_human = attacker->is_a<obj_human>();
    if (!by_human && !attacker->is_a<obj_monster>())
        return;
    const double chance =
        by_human ? counter_attack_chance_against_human : counter_attack_chance_against_monster;
    if (world().trial_rng().rng_random(1) >= chance)
        return;
    if (by_human)
        force_start_action(std::make_unique<HA_AttackHuman>(*this, attacker_id));
    else
        force_start_action(std::make_unique<HA_AttackMonster>(*this, attacker_id));
    if (world().log_event)
        world().log_event(
            fmt::format("{} strikes back at {}.", EID(this, false), EID(attacker, false)));
}

}  // namespace veldra
