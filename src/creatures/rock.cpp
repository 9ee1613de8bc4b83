#include "creatures/rock.h"

#include "creatures/scenery_rng.h"

namespace veldra {

void obj_rock::on_create() {
    obj_entity::on_create();
    Rng rng = detail::scenery_rng(x, y, 1);
    sprite_variant = static_cast<int>(rng.rng_irandom(ROCK_SPRITE_VARIANTS - 1));
    tilt = rng.rng_random_range(-8, 8);
    scale = rng.rng_random_range(0.9, 1.1);
    mirrored = rng.rng_random(1) < 0.5;
    for (double& channel : tint)
        channel = rng.rng_random_range(0.85, 1);
    image_xscale = mirrored ? -scale : scale;
    image_yscale = scale;
}

}  // namespace veldra
