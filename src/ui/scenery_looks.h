#pragma once
// How the scenery of a level looks: a boulder on every rock cell and tufts of leaves on every
// sand cell. Each look comes from a generator seeded from its cell, so a level looks the same
// every time it is played and no game generator is touched. The simulation only knows that a
// cell is rock or sand.

#include <array>
#include <vector>

#include "world/terrain.h"

namespace veldra {

struct RockLook {
    static constexpr int VARIANTS = 4;
    double x = 0, y = 0;           // the cell's centre, pixels
    int variant = 0;               // 0..VARIANTS-1
    double tilt = 0;               // degrees, -8..8
    double scale = 1;              // 0.9..1.1
    bool mirrored = false;         // drawn flipped horizontally
    std::array<double, 3> tint{};  // per channel, 0.85..1
};

struct FoliageLook {
    static constexpr int MAX_TUFTS = 5;
    // Tufts of leaves scattered over the cell: count 2..MAX_TUFTS, each with an offset from
    // the cell centre (pixels, -24..24), a scale (0.6..1) and a sway phase (radians).
    struct Tuft {
        double offset_x = 0;
        double offset_y = 0;
        double scale = 1;
        double sway_phase = 0;
    };
    double x = 0, y = 0;  // the cell's centre, pixels
    int tuft_count = 0;
    std::array<Tuft, MAX_TUFTS> tufts{};
};

struct SceneryLooks {
    std::vector<RockLook> rocks;      // row by row, left to right
    std::vector<FoliageLook> leaves;  // likewise
};

SceneryLooks scenery_looks(const Terrain& terrain);

}  // namespace veldra
