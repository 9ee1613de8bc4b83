#include "creatures/human_player.h"

#include "creatures/trial_world.h"

namespace veldra {

void obj_human_player::on_tick(Ticks tick, Rng& rng) {
    // Before the decision, so a command given this tick is what runs this tick.
    player_apply_commands(*this, world().player_commands, tick);
    obj_human::on_tick(tick, rng);
}

}  // namespace veldra
