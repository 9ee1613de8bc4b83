// What the developer terminal costs while hidden: keeping one log line once its scrollback is
// full (the price of every line logged while the tools are on or off), and the events of a
// frame with the tools made but hidden.
// Run: build/bench_devtools --benchmark_min_time=1

#include <benchmark/benchmark.h>

#include <string>

#include "config/debug_settings.h"
#include "devtools/debug_tools.h"
#include "devtools/terminal_tap.h"
#include "runtime/files.h"
#include "runtime/gc.h"
#include "runtime/runtime.h"
#include "runtime/services.h"
#include "trials/simulation_state.h"

namespace veldra {
namespace {

class QuietTerminal final : public Terminal {
public:
    void println(LogLevel, std::string_view line) override {
        benchmark::DoNotOptimize(line.data());
    }
};

void BM_terminal_keeps_a_log_line(benchmark::State& state) {
    Services services;
    services.terminal = std::make_unique<QuietTerminal>();
    TerminalTap& tap = TerminalTap::install(services);
    const std::string line =
        "2024_03_07_09_05_41 [#55dd55]TRIAL(100001) TICK#1234[/c] Human 100005 attacks Monster "
        "100007";
    for (std::size_t i = 0; i < TERMINAL_SCROLLBACK; ++i)
        tap.println(LogLevel::info, line);
    for (auto _ : state)
        services.terminal->println(LogLevel::info, line);
    benchmark::DoNotOptimize(tap.log.lines().size());
}
BENCHMARK(BM_terminal_keeps_a_log_line);

// The frame loop's events with no trial, without the tools (0) and with them made but hidden
// (1): the difference is what the panels add to every frame of a developer's window.
void BM_frame_with_hidden_tools(benchmark::State& state) {
    GcScope collector;
    Services services;
    Runtime runtime{services};
    SimulationState sim{runtime};
    DebugSettings debugs;
    MemoryFiles files;
    runtime.start(runtime.room_add({"rm_game", nullptr}));
    if (state.range(0) == 1)
        create_debug_tools(runtime, {sim, debugs, files});
    for (auto _ : state) {
        runtime.run_frame();
        services.renderer->present();
    }
    runtime.shutdown();
}
BENCHMARK(BM_frame_with_hidden_tools)->Arg(0)->Arg(1)->Unit(benchmark::kNanosecond);

}  // namespace
}  // namespace veldra

BENCHMARK_MAIN();
