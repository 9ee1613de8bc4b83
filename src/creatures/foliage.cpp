#include "creatures/foliage.h"

#include <numbers>

#include "creatures/scenery_rng.h"

namespace veldra {

void obj_foliage::on_create() {
    obj_entity::on_create();
    Rng rng = detail::scenery_rng(x, y, 2);
    tuft_count = static_cast<int>(rng.rng_irandom_range(2, MAX_TUFTS));
    for (int i = 0; i < tuft_count; ++i) {
        Tuft& tuft = tufts[static_cast<std::size_t>(i)];
        tuft.offset_x = rng.rng_random_range(-24, 24);
        tuft.offset_y = rng.rng_random_range(-24, 24);
        tuft.scale = rng.rng_random_range(0.6, 1);
        tuft.sway_phase = rng.rng_random(2 * std::numbers::pi);
    }
}

}  // namespace veldra
