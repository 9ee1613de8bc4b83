#include "creatures/trial_world.h"

#include "runtime/log.h"

#include "config/game_configurations.h"

namespace veldra {

const GameConfigurations& TrialWorld::configs() const {
    return configs_state.get();
}

void TrialWorld::log_zero_total_weight(std::string_view what) {
    ++zero_weight_errors;
    log_error("The total weight of " + std::string(what) +
              " is zero or negative! This will cause problems.");
}

void log_zero_total_weight_summary(std::uint64_t errors) {
    if (errors == 0)
        return;
    log_warning(std::to_string(errors) + (errors == 1 ? " time" : " times") +
                " the weights of a human's or monster's choice added up to zero or less (\"The "
                "total weight of ... is zero or negative!\" above): those choices fell back to "
                "their default. Check the weight formulas of the configuration.");
}

void TrialWorld::clear_trial() {
    terrain = nullptr;
    rng = nullptr;
    spent_ticks = 0;
    subscribe_tick = nullptr;
    log_event = nullptr;
    log_interactive_event = nullptr;
    creature_died = {};
    player_commands.clear();
}

}  // namespace veldra
