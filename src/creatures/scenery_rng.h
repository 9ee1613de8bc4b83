#pragma once
// The generator scenery draws its look from: seeded from the cell under the entity and a salt
// per kind, so the same level always looks the same and no game generator is touched.

#include <cmath>

#include "util/rng.h"
#include "world/terrain.h"

namespace veldra::detail {

inline Rng scenery_rng(double x, double y, int salt) {
    const double cx = std::floor(x / TERRAIN_CELL_SIZE);
    const double cy = std::floor(y / TERRAIN_CELL_SIZE);
    return Rng(cx * 7919 + cy * 104729 + salt * 15485863.0);
}

}  // namespace veldra::detail
