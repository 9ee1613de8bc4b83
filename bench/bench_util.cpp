// The portable mathematical functions beside the C library's, per call, over the inputs a
// formula typically gives them (traits, energies, their ratios).
#include <benchmark/benchmark.h>

#include <cmath>
#include <vector>

#include "util/portable_math.h"

namespace {

std::vector<double> inputs() {
    std::vector<double> values;
    for (int i = 1; i <= 1024; ++i)
        values.push_back(i * 0.0973);
    return values;
}

template <double (*function)(double)>
void unary(benchmark::State& state) {
    const std::vector<double> values = inputs();
    for (auto _ : state)
        for (double x : values)
            benchmark::DoNotOptimize(function(x));
    state.SetItemsProcessed(state.iterations() * static_cast<long>(values.size()));
}

template <double (*function)(double, double)>
void binary(benchmark::State& state) {
    const std::vector<double> values = inputs();
    for (auto _ : state)
        for (double x : values)
            benchmark::DoNotOptimize(function(x, 1.7));
    state.SetItemsProcessed(state.iterations() * static_cast<long>(values.size()));
}

double c_exp(double x) {
    return std::exp(x);
}
double c_log(double x) {
    return std::log(x);
}
double c_pow(double x, double y) {
    return std::pow(x, y);
}
double c_atan2(double y, double x) {
    return std::atan2(y, x);
}

}  // namespace

BENCHMARK(unary<veldra::portable::exp>)->Name("exp/portable");
BENCHMARK(unary<c_exp>)->Name("exp/c_library");
BENCHMARK(unary<veldra::portable::log>)->Name("log/portable");
BENCHMARK(unary<c_log>)->Name("log/c_library");
BENCHMARK(binary<veldra::portable::pow>)->Name("pow/portable");
BENCHMARK(binary<c_pow>)->Name("pow/c_library");
BENCHMARK(binary<veldra::portable::atan2>)->Name("atan2/portable");
BENCHMARK(binary<c_atan2>)->Name("atan2/c_library");

BENCHMARK_MAIN();
