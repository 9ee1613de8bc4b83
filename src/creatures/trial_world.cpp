#include "creatures/trial_world.h"

#include "runtime/context.h"

namespace veldra {

TrialWorld& trial_world() {
    return ctx().slot<TrialWorld>();
}

}  // namespace veldra
