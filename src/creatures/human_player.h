#pragma once
// The player's human. It decides exactly like a computer-controlled one with the traits the
// trial gives it; the player nudges it with commands (player_commands.h), applied at the start
// of its tick through force_start_action.

#include "creatures/human.h"

namespace veldra {

class obj_human_player : public obj_human {
    VELDRA_OBJECT(obj_human_player, obj_human)
public:
    using obj_human::obj_human;

    void on_tick(Ticks tick, Rng& rng) override;
};

}  // namespace veldra
