// The auto-run file reader and the run list it gives.
#include "config/game_configurations.h"
#include "fuzz/fuzz_support.h"
#include "runtime/files.h"
#include "trials/auto_run_plan.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace veldra;
    fuzzing::FuzzScope scope;
    const std::string path = fuzzing::input_file(fuzzing::as_text(data, size), ".json");
    const ConfigsState game;  // none loaded: no trait options, as in a run without one
    DiskFiles files;
    const auto configs = read_auto_run_configs(files, path, game);
    if (!configs)
        return 0;
    Rng rng(1);
    if (auto_run_build_run_list(*configs, game, rng).size() != auto_run_count_runs(*configs, game))
        __builtin_trap();
    return 0;
}
