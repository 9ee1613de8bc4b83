#include "runtime/process_state.h"

namespace veldra {

ProcessState& process_state() {
    static ProcessState state;
    return state;
}

}  // namespace veldra
