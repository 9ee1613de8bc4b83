// obj_entity and the depth sorting of entities.

#include "creatures/entity.h"

#include <algorithm>

#include "creatures/trial_world.h"
#include "runtime/runtime.h"
#include "world/terrain.h"

namespace veldra {

// The finaliser of MurmurHash3: consecutive ids land far apart.
std::uint32_t int_hash(std::int64_t value) {
    auto h = static_cast<std::uint64_t>(value);
    h ^= h >> 33;
    h *= 0xff51afd7ed558ccdULL;
    h ^= h >> 33;
    h *= 0xc4ceb9fe1a85ec53ULL;
    h ^= h >> 33;
    return static_cast<std::uint32_t>(h);
}

void obj_entity::on_create() {
    id_hash = int_hash(id());
    fixed_draw_offset_x = 0;
    fixed_draw_offset_y = 0;
    visible = !trial_world().is_auto_run;
}

double entity_depth_for_y(double y, int terrain_height, double instances_depth,
                          double instances_above_depth) {
    const double level_height = static_cast<double>(terrain_height) * TERRAIN_CELL_SIZE;
    const double t = level_height > 0 ? y / level_height : 0;
    const double depth = instances_depth + (instances_above_depth - instances_depth) * t;
    return std::clamp(depth, std::min(instances_depth, instances_above_depth),
                      std::max(instances_depth, instances_above_depth));
}

void obj_entity_manager::on_step() {
    const TrialWorld& world = trial_world();
    if (world.is_auto_run || !world.terrain)
        return;
    Runtime& runtime = rt();
    const double top = runtime.layer_depth("Instances");
    const double bottom = runtime.layer_depth("InstancesAbove");
    const int height = world.terrain->height;
    runtime.for_each<obj_entity>([&](obj_entity& entity) {
        entity.depth = entity_depth_for_y(entity.y, height, top, bottom);
    });
}

}  // namespace veldra
