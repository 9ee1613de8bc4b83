#pragma once
// seed= and traits= of the modes that play one trial (trial_level, play_level).

#include <optional>

#include "config/personality_traits.h"
#include "config/program_parameters.h"

namespace veldra {

struct AppState;

struct TrialParameters {
    double seed = 0;
    PersonalityTraits traits;
};

// Defaults for what is left out; nullopt after bad_parameter has ended the program.
std::optional<TrialParameters> read_trial_parameters(AppState& app,
                                                     const ProgramParameters& params);

}  // namespace veldra
