#include "creatures/creature_death_animation.h"

#include "creatures/creature.h"
#include "runtime/runtime.h"

namespace veldra {

namespace {

constexpr double SINK_PIXELS = 5;
constexpr double TILT_DEGREES = 90;

}  // namespace

void obj_creature_death_animation::initialize(const obj_creature& creature) {
    sprite_index = creature.creature_sprites.dead;
    image_xscale = creature.image_xscale;
    start_y = y;
}

// Sinks and tilts quickly at first and settles (ease-out), while fading evenly.
void obj_creature_death_animation::on_step() {
    timer += 1;
    const double t = timer / DURATION;
    const double eased = 1 - (1 - t) * (1 - t);
    y = start_y + SINK_PIXELS * eased;
    image_angle = -TILT_DEGREES * eased * (image_xscale < 0 ? -1 : 1);
    image_alpha = 1 - t;
    if (timer >= DURATION)
        rt().instance_destroy(id());
}

}  // namespace veldra
