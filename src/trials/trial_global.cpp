#include "runtime/callstack.h"
#include "runtime/context.h"
#include "runtime/once.h"
#include "runtime/runtime.h"
#include "trials/trial.h"

namespace veldra {

namespace {
struct TrialSlot {
    bool initialized = false;
    InstanceId trial = NO_INSTANCE;
};

TrialSlot& slot() {
    return ctx().slot<TrialSlot>();
}
}  // namespace

void initialize_trials() {
    VELDRA_SCOPE();
    once_only_first_call(slot().initialized);
    // A repeated call is reported and still clears the slot.
    slot().trial = NO_INSTANCE;
}

obj_trial* current_trial() {
    return rt().find_as<obj_trial>(slot().trial);
}
void set_current_trial(InstanceId trial) {
    slot().trial = trial;
}

}  // namespace veldra
