// Costs of the random draws made for every human decision and of generating a full-size level.
// Run: build/bench_world --benchmark_min_time=1

#include <benchmark/benchmark.h>

#include <vector>

#include "util/rng.h"
#include "util/weighted_random_sampler.h"
#include "world/level_cell_types.h"
#include "world/level_generator.h"

namespace veldra {
namespace {

// Nine entries, like the nine human action types a decision weighs.
WeightedRandomSampler<int> nine_entry_sampler() {
    WeightedRandomSampler<int> sampler;
    for (int i = 0; i < 9; ++i)
        sampler.add(i, 0.5 + i);
    return sampler;
}

void BM_sampler_get(benchmark::State& state) {
    const auto sampler = nine_entry_sampler();
    Rng rng(1);
    for (auto _ : state)
        benchmark::DoNotOptimize(sampler.get(-1, rng));
}
BENCHMARK(BM_sampler_get);

void BM_sampler_get_ordered_array(benchmark::State& state) {
    auto sampler = nine_entry_sampler();
    Rng rng(2);
    std::vector<int> out;
    for (auto _ : state) {
        sampler.get_ordered_array(rng, out);
        benchmark::DoNotOptimize(out.data());
    }
}
BENCHMARK(BM_sampler_get_ordered_array);

void BM_generate_level_48x48(benchmark::State& state) {
    LevelCellTypeTable types;
    initialize_level_cell_types(types);
    Rng rng(3);
    for (auto _ : state) {
        auto level = generate_level(types, 48, 48, 10, 12, 13, 110, rng);
        benchmark::DoNotOptimize(level);
    }
}
BENCHMARK(BM_generate_level_48x48)->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace veldra

BENCHMARK_MAIN();
