#pragma once
// Foliage: leaves scattered over a cell for decoration. Like rocks, the look comes from a
// generator seeded from the cell, so it is the same every time; never created in automatic
// trials.

#include <array>

#include "creatures/entity.h"

namespace veldra {

class obj_foliage : public obj_entity {
    VELDRA_OBJECT(obj_foliage, obj_entity)
public:
    void on_create() override;

    static constexpr int MAX_TUFTS = 5;
    // Tufts of leaves scattered over the cell: count 2..MAX_TUFTS, each with an offset from
    // the cell centre (pixels, -24..24), a scale (0.6..1) and a sway phase (radians).
    struct Tuft {
        double offset_x = 0;
        double offset_y = 0;
        double scale = 1;
        double sway_phase = 0;
    };
    int tuft_count = 0;
    std::array<Tuft, MAX_TUFTS> tufts{};
};

}  // namespace veldra
