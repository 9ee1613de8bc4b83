#include "startup/single_trial_mode.h"

#include <cstdio>

#include "config/game_configurations.h"
#include "runtime/log.h"
#include "runtime/paths.h"
#include "runtime/runtime.h"
#include "serial/json.h"
#include "startup/program.h"
#include "trials/room_goer.h"
#include "trials/trial.h"
#include "trials/trial_data.h"
#include "util/text.h"
#include "world/level_file.h"

namespace veldra {

namespace {

std::optional<PersonalityTraits> parse_traits(const std::string& text) {
    const auto parts = string_split(text, ',');
    if (parts.size() != 5)
        return std::nullopt;
    double values[5];
    for (int i = 0; i < 5; ++i) {
        auto value = try_string_to_real(parts[static_cast<std::size_t>(i)]);
        if (!value)
            return std::nullopt;
        values[i] = *value;
    }
    return PersonalityTraits{values[0], values[1], values[2], values[3], values[4]};
}

}  // namespace

void start_single_trial_mode(const ProgramParameters& params) {
    double seed = 0;
    if (params.seed) {
        auto parsed = try_string_to_real(*params.seed);
        if (!parsed) {
            log_error("seed=" + *params.seed + " is not a number.");
            return end_program(2);
        }
        seed = *parsed;
    }
    PersonalityTraits traits;
    if (params.traits) {
        auto parsed = parse_traits(*params.traits);
        if (!parsed) {
            log_error("traits=" + *params.traits + " must be five numbers O,C,E,A,N.");
            return end_program(2);
        }
        traits = *parsed;
    }
    auto level = level_load_from_file(resolve_user_path(*params.trial_level));
    if (!level)
        return end_program(1);
    if (!configs_loaded())
        return end_program(1);
    room_goto_or_restart(rt().room_find("rm_game"))
        .and_then([level = std::move(*level), seed, traits]() {
            auto& trial = rt().instance_create<obj_trial>(0, 0);
            set_current_trial(trial.id());
            trial.initialize(level, seed, true, configs().game_speed, 0);
            const TrialResult result = std::get<TrialResult>(trial.start(traits));
            std::printf("%s\n", json_stringify(trial_result_to_value(result), false).c_str());
            end_program(0);
        });
}

}  // namespace veldra
