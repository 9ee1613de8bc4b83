#include "creatures/human_ai.h"

#include "creatures/trial_world.h"

namespace veldra {

void obj_human_ai::on_create() {
    obj_human::on_create();
    shadow_radius = 24;
}

void obj_human_ai::human_ai_initialize(std::optional<int> type_number) {
    this->type_number = type_number;
    // Automatic trials draw nothing, so they greet nobody.
    shows_initial_speech_bubble = !trial_world().is_auto_run;
}

}  // namespace veldra
