#pragma once
// The player's human. It decides exactly like a computer-controlled one with the traits the
// trial gives it; the window's steering starts actions through force_start_action.

#include "creatures/human.h"

namespace veldra {

class obj_human_player : public obj_human {
    VELDRA_OBJECT(obj_human_player, obj_human)
public:
    using obj_human::obj_human;
};

}  // namespace veldra
