#pragma once
// Food: the humans' source of energy. Eating is the humans' business; food itself does nothing.

#include "creatures/entity.h"

namespace veldra {

class obj_food : public obj_entity {
    VELDRA_OBJECT(obj_food, obj_entity)
};

}  // namespace veldra
