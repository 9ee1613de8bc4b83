// obj_human: trading energy with another human.

#include <algorithm>

#include <fmt/format.h>

#include "creatures/eid.h"
#include "creatures/human.h"
#include "creatures/human_trial.h"

namespace veldra {

namespace {

// How long the exchange pose is shown, in steps.
constexpr double EXCHANGE_ANIMATION_STEPS = 20;

void gain_energy(obj_human& human, double gain) {
    human.energy = std::min(human.energy_max, human.energy + gain);
}

const char* exchange_action_name(int action) {
    return action == EXCHANGE_GIVE ? "gives" : "takes";
}

}  // namespace

bool obj_human::can_exchange_with_human(const obj_human&) const {
    return exchange_cooldown_timer <= 0;
}

// Both give: each gains the collaboration gain. One gives, one takes: the giver gets the
// "ripped off" amount (a loss in the shipped configuration) and the taker the "ripping off"
// amount. Both take: neither trusts the other and nothing changes hands. A side whose sampler
// has no positive weight takes. Gains are capped at energy_max; a loss may end a life.
void obj_human::exchange_with_human(obj_human& partner, Rng& rng) {
    const int mine = exchange_action_sampler.get(EXCHANGE_TAKE, rng);
    const int theirs = partner.exchange_action_sampler.get(EXCHANGE_TAKE, rng);
    const GameConfigurations& c = world().configs();
    if (mine == EXCHANGE_GIVE && theirs == EXCHANGE_GIVE) {
        gain_energy(*this, c.exchange_collaboration_energy_gain);
        gain_energy(partner, c.exchange_collaboration_energy_gain);
    } else if (mine == EXCHANGE_GIVE) {
        gain_energy(*this, c.exchange_being_ripped_off_energy_gain);
        gain_energy(partner, c.exchange_ripping_off_energy_gain);
    } else if (theirs == EXCHANGE_GIVE) {
        gain_energy(*this, c.exchange_ripping_off_energy_gain);
        gain_energy(partner, c.exchange_being_ripped_off_energy_gain);
    }
    exchange_cooldown_timer = get_exchange_cooldown_as_ticks();
    partner.exchange_cooldown_timer = partner.get_exchange_cooldown_as_ticks();
    start_animation(CREATURE_ANIMATION_EXCHANGE, partner.x, partner.y, EXCHANGE_ANIMATION_STEPS);
    partner.start_animation(CREATURE_ANIMATION_EXCHANGE, x, y, EXCHANGE_ANIMATION_STEPS);
    if (world().log_event)
        world().log_event(fmt::format("{} {} and {} {} in an exchange.", EID(this, false),
                                      exchange_action_name(mine), EID(&partner, false),
                                      exchange_action_name(theirs)));
}

}  // namespace veldra
