#pragma once
// The modes that play one interactive trial: play_level=FILE lets a person play it (with a
// window, or headless with nobody steering), recording every input; replay=FILE plays a
// recording again from the same level, configuration, seed, traits and inputs, and checks that
// it reaches the recorded result. Both print the TrialResult as trial_level does.

#include <optional>
#include <string>

#include "config/program_parameters.h"
#include "runtime/append_file.h"

namespace veldra {

struct AppState;

void start_play_mode(AppState& app, const ProgramParameters& params);
void start_replay_mode(AppState& app, const ProgramParameters& params);

// The recording's file, made before the trial: record_inputs= when given (refused when a file is
// there already), else "<level>-<stamp>.inputs" beside the log (config/logger.h), or the first
// free "<level>-<stamp>-N.inputs". nullopt with the reason in `error` when it cannot be made.
std::optional<AppendFile> create_input_record_file(const ProgramParameters& params,
                                                   const std::string& level_name,
                                                   const std::string& stamp, std::string& error);

}  // namespace veldra
