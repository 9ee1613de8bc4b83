#include "creatures/creature_spawning.h"

#include "creatures/food.h"
#include "creatures/human_ai.h"
#include "creatures/human_player.h"
#include "creatures/monster.h"
#include "creatures/trial_world.h"
#include "runtime/callstack.h"
#include "runtime/once.h"
#include "runtime/runtime.h"
#include "world/level_cell_types.h"

namespace veldra {

namespace {

template <class T, class... Args>
T& create_at_centre(Runtime& runtime, const TerrainCell& cell, Args&... args) {
    return runtime.instance_create<T>(cell.room_rect.get_center_x(), cell.room_rect.get_center_y(),
                                      "Instances", args...);
}

}  // namespace

void initialize_creature_spawning(LevelSpawnHooks& hooks, TrialWorld& world) {
    VELDRA_SCOPE();
    if (!once_only_first_call(hooks.filled))
        return;
    // The hooks outlive this call: they capture the world, which outlives every trial.
    hooks.spawn_human_ai = [&world](const TerrainCell& cell, std::optional<int> type_number) {
        create_at_centre<obj_human_ai>(world.runtime, cell, world).human_ai_initialize(type_number);
    };
    hooks.spawn_player = [&world](const TerrainCell& cell) {
        create_at_centre<obj_human_player>(world.runtime, cell, world);
    };
    hooks.spawn_monster = [&world](const TerrainCell& cell) {
        create_at_centre<obj_monster>(world.runtime, cell, world);
    };
    hooks.spawn_food = [&world](const TerrainCell& cell) {
        create_at_centre<obj_food>(world.runtime, cell);
    };
}

}  // namespace veldra
