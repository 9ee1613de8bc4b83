#pragma once
// The short-lived corpse a creature leaves behind in interactive trials: over 30 steps it sinks
// 5 pixels, tilts and fades, then destroys itself.

#include "runtime/instance.h"
#include "runtime/object_type.h"

namespace veldra {

class obj_creature;

class obj_creature_death_animation : public Instance {
    VELDRA_OBJECT(obj_creature_death_animation, Instance)
public:
    static constexpr double DURATION = 30;  // steps

    // Takes the creature's dead sprite and facing.
    void initialize(const obj_creature& creature);
    void on_step() override;

    int sprite_index = -1;
    double image_xscale = 1;
    double image_angle = 0;  // degrees
    double image_alpha = 1;
    double timer = 0;  // steps elapsed
    double start_y = 0;
};

}  // namespace veldra
