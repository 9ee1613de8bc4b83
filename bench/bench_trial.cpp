// Whole automatic trials on every shipped level with the shipped configuration: milliseconds
// per 60-second trial and simulated ticks per second. A fast-forwarded trial in a window must
// fit in one 60 Hz frame (16.7 ms).
#include <benchmark/benchmark.h>

#include <cstdlib>
#include <string>

#include "config/game_configurations.h"
#include "runtime/gc.h"
#include "runtime/log.h"
#include "runtime/runtime.h"
#include "runtime/services.h"
#include "trials/game_systems.h"
#include "trials/simulation_state.h"
#include "trials/trial.h"
#include "world/level_file.h"

#ifndef VELDRA_SOURCE_DIR
#define VELDRA_SOURCE_DIR "."
#endif

namespace veldra {
namespace {

void BM_AutomaticTrial(benchmark::State& state) {
    GcScope collector;
    Services services;
    Runtime runtime(services);
    SimulationState sim(runtime);
    LogCapture quiet;  // the configuration loader's lines would bury the table
    setenv("VeldraProjectDir", VELDRA_SOURCE_DIR, 1);
    initialize_game_systems(sim);
    if (!reload_game_configurations(sim.configs, sim.files, "")) {
        state.SkipWithError("configuration did not load");
        return;
    }
    char name[64];
    std::snprintf(name, sizeof name, "/datafiles/levels/level_%02d.txt",
                  static_cast<int>(state.range(0)));
    auto level =
        level_load_from_file(sim.files, sim.cell_types, std::string(VELDRA_SOURCE_DIR) + name);
    if (!level) {
        state.SkipWithError("level did not load");
        return;
    }
    runtime.start(runtime.room_add({"rm_game", nullptr}));
    double seed = 1;
    std::int64_t ticks = 0;
    for (auto _ : state) {
        auto& trial = runtime.instance_create<obj_trial>(0, 0, "Instances", sim);
        trial.initialize(*level, seed++, true, 1, 0);
        benchmark::DoNotOptimize(trial.start(PersonalityTraits{}));
        ticks += trial.ticker.spent_ticks;
        state.PauseTiming();
        runtime.room_restart();
        runtime.run_frame();
        state.ResumeTiming();
    }
    state.counters["ticks_per_second"] =
        benchmark::Counter(static_cast<double>(ticks), benchmark::Counter::kIsRate);
    state.SetLabel(std::to_string(level->width) + "x" + std::to_string(level->height));
    runtime.shutdown();
}
BENCHMARK(BM_AutomaticTrial)->DenseRange(1, 10)->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace veldra

BENCHMARK_MAIN();
