#include "startup/run_mode.h"

#include "config/program_parameters.h"
#include "runtime/log.h"
#include "runtime/runtime.h"
#include "runtime/services.h"

namespace veldra {

void choose_run_mode() {
    const ProgramParameters& params = program_params();
    // The developer menu needs a window; a headless start with nothing to run has nothing to
    // wait for, unless the caller asked for a number of frames.
    if (services().headless && !params.frames) {
        log("Nothing to run: give a run mode on the command line (see --help).");
        rt().game_end();
    }
}

}  // namespace veldra
