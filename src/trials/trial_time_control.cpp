#include <algorithm>

#include "creatures/eid.h"
#include "runtime/runtime.h"
#include "trials/simulation_state.h"
#include "trials/trial.h"

namespace veldra {

void obj_trial::pause() {
    if (paused())
        return;
    // Fast-forward is not a pace to come back to.
    speed_before_pause = game_speed > 0 ? game_speed : 1;
    game_speed = 0;
    tick_remainder = 0;
}

void obj_trial::resume() {
    if (paused())
        game_speed = speed_before_pause;
}

void obj_trial::set_speed(double speed) {
    game_speed = std::clamp(speed, MIN_GAME_SPEED, MAX_GAME_SPEED);
    speed_before_pause = game_speed;
}

void obj_trial::step_ticks(Ticks ticks) {
    pause();
    ticks_to_step += std::max<Ticks>(0, ticks);
}

void obj_trial::step_decision() {
    pause();
    stepping_to_decision = true;
}

void obj_trial::run_requested_steps() {
    for (; ticks_to_step > 0 && !result; --ticks_to_step)
        tick();
    ticks_to_step = 0;
    if (!stepping_to_decision)
        return;
    stepping_to_decision = false;
    const std::uint64_t before = sim_.world.decisions;
    for (Ticks left = max_ticks + 1; left > 0 && !result && sim_.world.decisions == before; --left)
        tick();
    if (sim_.world.decisions == before) {
        log_event("No human made a decision before the trial ended.");
        return;
    }
    const Instance* who = runtime().find(sim_.world.last_decision_by);
    log_event("Stepped to a decision of " + (who ? EID(who, true) : std::string("a human")) + ".");
}

}  // namespace veldra
