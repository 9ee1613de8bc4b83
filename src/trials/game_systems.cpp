#include "trials/game_systems.h"

#include "config/game_configurations.h"
#include "creatures/creature_pathfinding.h"
#include "creatures/creature_spawning.h"
#include "creatures/human_action_type.h"
#include "runtime/callstack.h"
#include "trials/simulation_state.h"
#include "trials/trial.h"
#include "world/level_cell_types.h"

namespace veldra {

void initialize_game_systems(SimulationState& sim) {
    VELDRA_SCOPE();
    initialize_configs(sim.configs);
    initialize_human_action_types(sim.action_types);
    initialize_creature_pathfinding(sim.pathfinding);
    initialize_trials(sim.trial);
    initialize_level_cell_types(sim.cell_types);
    initialize_creature_spawning(sim.spawn_hooks, sim.world);
}

}  // namespace veldra
