#include "creatures/human_player.h"

namespace veldra {

void obj_human_player::on_create() {
    obj_human::on_create();
    // The player's own human stands out from the crowd.
    draw_outline = true;
}

}  // namespace veldra
