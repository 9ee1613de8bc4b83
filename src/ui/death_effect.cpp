#include "ui/death_effect.h"

namespace veldra {

bool DeathEffect::step() {
    timer += 1;
    const double t = timer / DURATION;
    const double eased = 1 - (1 - t) * (1 - t);
    y = start_y + SINK_PIXELS * eased;
    angle = -TILT_DEGREES * eased * (xscale < 0 ? -1 : 1);
    alpha = 1 - t;
    return timer < DURATION;
}

}  // namespace veldra
