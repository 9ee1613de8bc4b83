#include "runtime/callstack.h"
#include "runtime/once.h"
#include "runtime/runtime.h"
#include "trials/simulation_state.h"
#include "trials/trial.h"

namespace veldra {

void initialize_trials(TrialSlot& slot) {
    VELDRA_SCOPE();
    once_only_first_call(slot.initialized);
    // A repeated call is reported and still clears the slot.
    slot.trial = NO_INSTANCE;
}

obj_trial* SimulationState::current_trial() const {
    return runtime.find_as<obj_trial>(trial.trial);
}

}  // namespace veldra
