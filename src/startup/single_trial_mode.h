#pragma once
#include "config/program_parameters.h"

namespace veldra {

struct AppState;

// trial_level=FILE [seed=S] [traits=O,C,E,A,N]: one automatic trial; its TrialResult is printed
// as one JSON object on stdout.
void start_single_trial_mode(AppState& app, const ProgramParameters& params);

}  // namespace veldra
