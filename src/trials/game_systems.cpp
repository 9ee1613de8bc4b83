#include "trials/game_systems.h"

#include "config/game_configurations.h"
#include "creatures/creature_pathfinding.h"
#include "creatures/creature_spawning.h"
#include "creatures/human_action_type.h"
#include "runtime/callstack.h"
#include "trials/trial.h"
#include "world/level_cell_types.h"

namespace veldra {

void initialize_game_systems() {
    VELDRA_SCOPE();
    initialize_configs();
    initialize_human_action_types();
    initialize_creature_pathfinding();
    initialize_trials();
    initialize_level_cell_types();
    initialize_creature_spawning();
}

}  // namespace veldra
