#include "creatures/creature_spawning.h"

#include "creatures/food.h"
#include "creatures/human_ai.h"
#include "creatures/human_player.h"
#include "creatures/monster.h"
#include "runtime/callstack.h"
#include "runtime/context.h"
#include "runtime/once.h"
#include "runtime/runtime.h"
#include "world/level_cell_types.h"

namespace veldra {

namespace {

struct CreatureSpawning {
    bool called = false;
};

template <class T>
T& create_at_centre(const TerrainCell& cell) {
    return rt().instance_create<T>(cell.room_rect.get_center_x(), cell.room_rect.get_center_y(),
                                   "Instances");
}

}  // namespace

void initialize_creature_spawning() {
    VELDRA_SCOPE();
    if (!once_only_first_call(ctx().slot<CreatureSpawning>().called))
        return;
    LevelSpawnHooks& hooks = level_spawn_hooks();
    hooks.spawn_human_ai = [](const TerrainCell& cell, std::optional<int> type_number) {
        create_at_centre<obj_human_ai>(cell).human_ai_initialize(type_number);
    };
    hooks.spawn_player = [](const TerrainCell& cell) { create_at_centre<obj_human_player>(cell); };
    hooks.spawn_monster = [](const TerrainCell& cell) { create_at_centre<obj_monster>(cell); };
    hooks.spawn_food = [](const TerrainCell& cell) { create_at_centre<obj_food>(cell); };
}

}  // namespace veldra
