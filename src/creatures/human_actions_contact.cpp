// Actions that meet another creature: striking it, and trading energy with another human.

#include <memory>

#include "creatures/creature_pathfinding.h"
#include "creatures/human.h"
#include "creatures/human_action.h"
#include "creatures/human_trial.h"
#include "creatures/monster.h"
#include "runtime/runtime.h"
#include "util/geometry.h"

namespace veldra {

// An attack lasts while its target stays within attack range; a target that stepped out of
// range ends it, since the action never follows (approaching is an action of its own).
bool detail::AttackAction::tick(obj_human& human, Rng& rng) {
    first_tick_done = true;
    obj_creature* victim = human.runtime().find_as<obj_creature>(target);
    if (!victim || !creature_is_within_attack_range(human, *victim))
        return false;
    if (!human.can_attack_creature(*victim) ||
        human.attack_creature(*victim, rng) != FightOutcome::flee)
        return true;
    // The human lost its nerve: it drops this attack and runs from the same creature. Dropping
    // retires this action, which stays alive until the human's tick ends.
    std::unique_ptr<HumanAction> flight = make_flight(human);
    human.stop_equal_actions(*this);
    human.force_start_action(std::move(flight));
    return false;
}

HA_AttackMonster::HA_AttackMonster(const obj_human& human, InstanceId target_monster)
    : AttackAction(*human.world().action_types.HAT_attack_monster, target_monster,
                   "target_monster") {}

std::unique_ptr<HumanAction> HA_AttackMonster::make_flight(const obj_human& human) const {
    return std::make_unique<HA_AvoidMonster>(human, target);
}

HA_AttackHuman::HA_AttackHuman(const obj_human& human, InstanceId target_human)
    : AttackAction(*human.world().action_types.HAT_attack_human, target_human, "target_human") {}

std::unique_ptr<HumanAction> HA_AttackHuman::make_flight(const obj_human& human) const {
    return std::make_unique<HA_AvoidHuman>(human, target);
}

namespace {

bool is_exchange_toward(const HumanActionTypes& types, const HumanAction* action,
                        InstanceId partner) {
    return action && action->type == types.HAT_exchange_with_human &&
           static_cast<const HA_ExchangeWithHuman*>(action)->target == partner;
}

// On first meeting, a partner not already coming may answer by coming too.
void invite_partner(const obj_human& human, obj_human& partner) {
    if (is_exchange_toward(human.world().action_types, partner.get_current_action(), human.id()))
        return;
    if (human.world().trial_rng().rng_random(1) < partner.exchange_back_chance)
        partner.force_start_action(std::make_unique<HA_ExchangeWithHuman>(partner, human.id()));
}

// Within reach when each stands within the other's attack range: a diagonal neighbour cell
// and a bit.
bool within_exchange_reach(const obj_human& a, const obj_human& b) {
    return creature_is_within_attack_range(a, b) && creature_is_within_attack_range(b, a);
}

}  // namespace

HA_ExchangeWithHuman::HA_ExchangeWithHuman(const obj_human& human, InstanceId target_human)
    : TargetedHumanAction(*human.world().action_types.HAT_exchange_with_human, target_human,
                          "target_human") {}

// The meeting ends when the partner is gone, or once this human has traded. A trade ends only
// this side's exchange: the partner's own goes on, and the cooldown both now wait out keeps
// the two from trading again at once.
bool HA_ExchangeWithHuman::tick(obj_human& human, Rng& rng) {
    // Followed wherever it goes, as long as it lives: the decision loop, not the distance, ends
    // an exchange that leads nowhere.
    obj_human* partner = human.runtime().find_as<obj_human>(target);
    if (!partner)
        return false;
    if (!first_tick_done) {
        first_tick_done = true;
        invite_partner(human, *partner);
    }
    creature_approach(
        human,
        creature_find_pathfinding_adjacent_target_cell(human, detail::room_to_cell(partner->x),
                                                       detail::room_to_cell(partner->y)),
        human.get_movement_speed());
    if (!within_exchange_reach(human, *partner) || !human.can_exchange_with_human(*partner) ||
        !partner->can_exchange_with_human(human))
        return true;
    // The partner's own exchange goes on; the cooldown both sides now wait out keeps it from
    // trading again at once.
    human.exchange_with_human(*partner, rng);
    return false;
}

}  // namespace veldra
