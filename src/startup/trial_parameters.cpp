#include "startup/trial_parameters.h"

#include "startup/parameter_values.h"

namespace veldra {

std::optional<TrialParameters> read_trial_parameters(AppState& app,
                                                     const ProgramParameters& params) {
    TrialParameters out;
    if (params.seed) {
        const auto parsed = parse_seed_value(*params.seed);
        if (!parsed) {
            bad_parameter(app, "seed", *params.seed, SEED_PROBLEM);
            return std::nullopt;
        }
        out.seed = *parsed;
    }
    if (params.traits) {
        const auto parsed = parse_traits_value(*params.traits);
        if (!parsed) {
            bad_parameter(app, "traits", *params.traits, TRAITS_PROBLEM);
            return std::nullopt;
        }
        out.traits = *parsed;
    }
    return out;
}

}  // namespace veldra
