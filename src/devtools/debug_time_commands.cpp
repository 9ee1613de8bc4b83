// The time-control commands; the time-control panel's buttons run them too, so a button and
// a typed command never differ.

#include "devtools/debug_command_handlers.h"
#include "runtime/number_format.h"
#include "trials/simulation_state.h"
#include "trials/trial.h"

namespace veldra {

namespace {

// The trial the commands act on, or the reason there is none.
obj_trial* running_trial(SimulationState& sim, std::vector<std::string>& why_not) {
    obj_trial* trial = sim.current_trial();
    if (!trial || trial->result) {
        why_not = error_output("No trial is running.");
        return nullptr;
    }
    return trial;
}

std::string tick_text(const obj_trial& trial) {
    return "tick " + std::to_string(trial.ticker.spent_ticks);
}

}  // namespace

DebugCommandOutput command_speed(SimulationState& sim, DebugCommandArgs args) {
    if (args.size() != 1)
        return std::nullopt;
    const std::optional<double> speed = parse_number_argument(args[0]);
    if (!speed || *speed < obj_trial::MIN_GAME_SPEED || *speed > obj_trial::MAX_GAME_SPEED)
        return std::nullopt;
    std::vector<std::string> out;
    obj_trial* trial = running_trial(sim, out);
    if (!trial)
        return out;
    trial->set_speed(*speed);
    return std::vector<std::string>{"Speed x" + number_to_string(trial->game_speed) + "."};
}

DebugCommandOutput command_pause(SimulationState& sim, DebugCommandArgs args) {
    if (!args.empty())
        return std::nullopt;
    std::vector<std::string> out;
    obj_trial* trial = running_trial(sim, out);
    if (!trial)
        return out;
    trial->pause();
    return std::vector<std::string>{"Paused at " + tick_text(*trial) + "."};
}

DebugCommandOutput command_resume(SimulationState& sim, DebugCommandArgs args) {
    if (!args.empty())
        return std::nullopt;
    std::vector<std::string> out;
    obj_trial* trial = running_trial(sim, out);
    if (!trial)
        return out;
    trial->resume();
    return std::vector<std::string>{"Running at speed x" + number_to_string(trial->game_speed) +
                                    "."};
}

DebugCommandOutput command_step(SimulationState& sim, DebugCommandArgs args) {
    if (args.size() > 1)
        return std::nullopt;
    long long ticks = 1;
    if (args.size() == 1) {
        const std::optional<long long> n = parse_integer_argument(args[0]);
        if (!n || *n < 1)
            return std::nullopt;
        ticks = *n;
    }
    std::vector<std::string> out;
    obj_trial* trial = running_trial(sim, out);
    if (!trial)
        return out;
    trial->step_ticks(static_cast<Ticks>(ticks));
    return std::vector<std::string>{"Stepping " + std::to_string(ticks) +
                                    (ticks == 1 ? " tick" : " ticks") + " from " +
                                    tick_text(*trial) + "."};
}

DebugCommandOutput command_step_decision(SimulationState& sim, DebugCommandArgs args) {
    if (!args.empty())
        return std::nullopt;
    std::vector<std::string> out;
    obj_trial* trial = running_trial(sim, out);
    if (!trial)
        return out;
    trial->step_decision();
    return std::vector<std::string>{"Stepping to the next decision from " + tick_text(*trial) +
                                    "."};
}

DebugCommandOutput command_fast_forward(SimulationState& sim, DebugCommandArgs args) {
    if (!args.empty())
        return std::nullopt;
    std::vector<std::string> out;
    obj_trial* trial = running_trial(sim, out);
    if (!trial)
        return out;
    trial->fast_forward();
    return std::vector<std::string>{"Fast-forwarding to the end of the trial."};
}

}  // namespace veldra
