#pragma once
// Rocks: static scenery on rock cells. A rock builds its look from per-instance random choices
// of a generator seeded from its cell, so a level looks the same every time it is played and the
// game's generators are never touched. There is no window yet, so the look is kept as numbers.
// Never created in automatic trials.

#include <array>

#include "creatures/entity.h"

namespace veldra {

class obj_rock : public obj_entity {
    VELDRA_OBJECT(obj_rock, obj_entity)
public:
    void on_create() override;

    int sprite_variant = 0;        // 0..ROCK_SPRITE_VARIANTS-1
    double tilt = 0;               // degrees, -8..8
    double scale = 1;              // 0.9..1.1
    bool mirrored = false;         // drawn with image_xscale -1
    std::array<double, 3> tint{};  // per channel, 0.85..1
};

inline constexpr int ROCK_SPRITE_VARIANTS = 4;

}  // namespace veldra
