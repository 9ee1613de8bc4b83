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
    Runtime& runtime = world.runtime;
    hooks.spawn_human_ai = [&](const TerrainCell& cell, std::optional<int> type_number) {
        create_at_centre<obj_human_ai>(runtime, cell, world).human_ai_initialize(type_number);
    };
    hooks.spawn_player = [&](const TerrainCell& cell) {
        create_at_centre<obj_human_player>(runtime, cell, world);
    };
    hooks.spawn_monster = [&](const TerrainCell& cell) {
        create_at_centre<obj_monster>(runtime, cell, world);
    };
    hooks.spawn_food = [&runtime](const TerrainCell& cell) {
        create_at_centre<obj_food>(runtime, cell);
    };
}

}  // namespace veldra
