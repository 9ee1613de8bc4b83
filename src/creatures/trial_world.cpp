#include "creatures/trial_world.h"

#include "config/game_configurations.h"

namespace veldra {

const GameConfigurations& TrialWorld::configs() const {
    return configs_state.get();
}

void TrialWorld::clear_trial() {
    terrain = nullptr;
    rng = nullptr;
    spent_ticks = 0;
    subscribe_tick = nullptr;
    log_event = nullptr;
    log_interactive_event = nullptr;
    creature_died = {};
    player_commands.clear();
}

}  // namespace veldra
