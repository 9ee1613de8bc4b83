#pragma once
// The modes that play one interactive trial: play_level=FILE lets a person play it (with a
// window, or headless with nobody steering), recording every input; replay=FILE plays a
// recording again from the same level, configuration, seed, traits and inputs, and checks that
// it reaches the recorded result. Both print the TrialResult as trial_level does.

#include "config/program_parameters.h"

namespace veldra {

struct AppState;

void start_play_mode(AppState& app, const ProgramParameters& params);
void start_replay_mode(AppState& app, const ProgramParameters& params);

// Where a recording goes when record_inputs= is not given: beside the log file, or in the
// working directory without one; named after the level and the local time.
std::string default_input_record_path(const std::optional<std::string>& log_output_file,
                                      const std::string& level_name, const std::string& stamp);

}  // namespace veldra
