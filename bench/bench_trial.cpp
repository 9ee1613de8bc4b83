// Whole automatic trials on every shipped level with the shipped configuration: milliseconds
// per 60-second trial and simulated ticks per second. A fast-forwarded trial in a window must
// fit in one 60 Hz frame (16.7 ms).
#include <benchmark/benchmark.h>

#include <cstdlib>
#include <string>

#include "config/game_configurations.h"
#include "runtime/context.h"
#include "runtime/log.h"
#include "runtime/runtime.h"
#include "trials/game_systems.h"
#include "trials/trial.h"
#include "world/level_file.h"

#ifndef VELDRA_SOURCE_DIR
#define VELDRA_SOURCE_DIR "."
#endif

namespace veldra {
namespace {

void BM_AutomaticTrial(benchmark::State& state) {
    Context context;
    ContextScope scope(context);
    LogCapture quiet;  // the configuration loader's lines would bury the table
    setenv("VeldraProjectDir", VELDRA_SOURCE_DIR, 1);
    initialize_game_systems();
    if (!reload_game_configurations("")) {
        state.SkipWithError("configuration did not load");
        return;
    }
    char name[64];
    std::snprintf(name, sizeof name, "/datafiles/levels/level_%02d.txt",
                  static_cast<int>(state.range(0)));
    auto level = level_load_from_file(std::string(VELDRA_SOURCE_DIR) + name);
    if (!level) {
        state.SkipWithError("level did not load");
        return;
    }
    rt().start(rt().room_add({"rm_game", nullptr}));
    double seed = 1;
    std::int64_t ticks = 0;
    for (auto _ : state) {
        auto& trial = rt().instance_create<obj_trial>(0, 0);
        trial.initialize(*level, seed++, true, 1, 0);
        benchmark::DoNotOptimize(trial.start(PersonalityTraits{}));
        ticks += trial.ticker.spent_ticks;
        state.PauseTiming();
        rt().room_restart();
        rt().run_frame();
        state.ResumeTiming();
    }
    state.counters["ticks_per_second"] =
        benchmark::Counter(static_cast<double>(ticks), benchmark::Counter::kIsRate);
    state.SetLabel(std::to_string(level->width) + "x" + std::to_string(level->height));
    rt().shutdown();
}
BENCHMARK(BM_AutomaticTrial)->DenseRange(1, 10)->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace veldra

BENCHMARK_MAIN();
