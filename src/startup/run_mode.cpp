#include "startup/run_mode.h"

#include "config/program_parameters.h"
#include "runtime/log.h"
#include "runtime/paths.h"
#include "runtime/runtime.h"
#include "runtime/services.h"
#include "startup/program.h"
#include "util/text.h"
#include "world/level_set_generator.h"

namespace veldra {

namespace {

// Shell modes end the program with an exit status: 0 done, 1 failed, 2 bad parameters.
void run_level_set_generator(const ProgramParameters& params) {
    if (!params.output_dir || params.output_dir->empty()) {
        log_error("generate_levels needs output_dir=DIR: the directory to write the levels into.");
        end_program(2);
        return;
    }
    std::optional<double> seed;
    if (params.seed) {
        seed = try_string_to_real(*params.seed);
        if (!seed) {
            log_error("seed=" + *params.seed + " is not a number.");
            end_program(2);
            return;
        }
    }
    const bool ok = generate_level_set(resolve_user_path(*params.generate_levels), *params.output_dir, seed);
    end_program(ok ? 0 : 1);
}

}  // namespace

void choose_run_mode() {
    const ProgramParameters& params = program_params();
    if (params.generate_levels) {
        run_level_set_generator(params);
        return;
    }
    // The developer menu needs a window; a headless start with nothing to run has nothing to
    // wait for, unless the caller asked for a number of frames.
    if (services().headless && !params.frames) {
        log("Nothing to run: give a run mode on the command line (see --help).");
        rt().game_end();
    }
}

}  // namespace veldra
