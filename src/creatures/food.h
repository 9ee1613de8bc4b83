#pragma once
// Food: the humans' source of energy. Eating is the humans' business; food itself only bobs.

#include "creatures/entity.h"

namespace veldra {

class obj_food : public obj_entity {
    VELDRA_OBJECT(obj_food, obj_entity)
public:
    void on_create() override;
    // Bobs up to 2 pixels, phase-shifted per instance; skipped in automatic trials.
    void on_step() override;
};

}  // namespace veldra
