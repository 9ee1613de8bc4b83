#include "ui/scenery_looks.h"

#include <cmath>
#include <numbers>

#include "util/rng.h"

namespace veldra {

namespace {

// A generator per cell and kind of scenery.
Rng scenery_rng(const TerrainCell& cell, int salt) {
    return Rng(cell.cx * 7919.0 + cell.cy * 104729.0 + salt * 15485863.0);
}

RockLook rock_look(const TerrainCell& cell) {
    Rng rng = scenery_rng(cell, 1);
    RockLook look;
    look.x = cell.room_rect.get_center_x();
    look.y = cell.room_rect.get_center_y();
    look.variant = static_cast<int>(rng.rng_irandom(RockLook::VARIANTS - 1));
    look.tilt = rng.rng_random_range(-8, 8);
    look.scale = rng.rng_random_range(0.9, 1.1);
    look.mirrored = rng.rng_random(1) < 0.5;
    for (double& channel : look.tint)
        channel = rng.rng_random_range(0.85, 1);
    return look;
}

FoliageLook foliage_look(const TerrainCell& cell) {
    Rng rng = scenery_rng(cell, 2);
    FoliageLook look;
    look.x = cell.room_rect.get_center_x();
    look.y = cell.room_rect.get_center_y();
    look.tuft_count = static_cast<int>(rng.rng_irandom_range(2, FoliageLook::MAX_TUFTS));
    for (int i = 0; i < look.tuft_count; ++i) {
        FoliageLook::Tuft& tuft = look.tufts[static_cast<std::size_t>(i)];
        tuft.offset_x = rng.rng_random_range(-24, 24);
        tuft.offset_y = rng.rng_random_range(-24, 24);
        tuft.scale = rng.rng_random_range(0.6, 1);
        tuft.sway_phase = rng.rng_random(2 * std::numbers::pi);
    }
    return look;
}

}  // namespace

SceneryLooks scenery_looks(const Terrain& terrain) {
    SceneryLooks looks;
    for (const TerrainCell& cell : terrain.cells) {
        if (cell.is_rock)
            looks.rocks.push_back(rock_look(cell));
        if (cell.is_sand)
            looks.leaves.push_back(foliage_look(cell));
    }
    return looks;
}

}  // namespace veldra
