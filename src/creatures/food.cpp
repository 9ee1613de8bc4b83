#include "creatures/food.h"

#include <cmath>
#include <numbers>

#include "creatures/trial_world.h"
#include "runtime/services.h"

namespace veldra {

namespace {

constexpr double BOB_PIXELS = 2;
constexpr double BOB_PERIOD_MS = 1500;

}  // namespace

void obj_food::on_create() {
    obj_entity::on_create();
    image_xscale = 0.4;
    image_yscale = 0.4;
}

// Visual only: wall time is fine here, nothing in the simulation reads the offset.
void obj_food::on_step() {
    if (trial_world().is_auto_run)
        return;
    const double phase =
        (current_time() / BOB_PERIOD_MS + id_hash % 1000 / 1000.0) * 2 * std::numbers::pi;
    fixed_draw_offset_y = -BOB_PIXELS * (0.5 + 0.5 * std::sin(phase));
}

}  // namespace veldra
