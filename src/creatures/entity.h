#pragma once
// obj_entity: anything placed on a level (creatures, food, rocks, foliage). It keeps what every
// entity shares: a stable per-instance hash for visual phases, fixed draw offsets and whether it
// is drawn at all. Automatic trials draw nothing, so their entities are invisible.

#include <cstdint>

#include "runtime/instance.h"
#include "runtime/object_type.h"

namespace veldra {

class obj_entity : public Instance {
    VELDRA_OBJECT(obj_entity, Instance)
public:
    void on_create() override;

    // int_hash of the id: a stable pseudo-random phase (idle bobbing, debug hue) that differs
    // between neighbours and never touches a game generator.
    std::uint32_t id_hash = 0;
    double fixed_draw_offset_x = 0;  // pixels, added to the draw position
    double fixed_draw_offset_y = 0;  // pixels
    double image_xscale = 1;
    double image_yscale = 1;
};

// A well-mixed 32-bit hash of an integer (an instance id).
std::uint32_t int_hash(std::int64_t value);

// Keeps drawing order by height on the screen: lower entities (larger y) in front. One manager
// per trial room; it does nothing in automatic trials.
class obj_entity_manager : public Instance {
    VELDRA_OBJECT(obj_entity_manager, Instance)
public:
    void on_step() override;
};

// Depth of an entity at room height `y` on a level `terrain_height` cells high: from the depth
// of layer "Instances" at the top to that of "InstancesAbove" at the bottom, clamped between.
double entity_depth_for_y(double y, int terrain_height, double instances_depth,
                          double instances_above_depth);

}  // namespace veldra
