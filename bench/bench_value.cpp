// Costs of the dynamic value: copies of each shared kind, struct field access by name, and a
// cycle collection over many live structs.

#include <benchmark/benchmark.h>

#include "runtime/gc.h"
#include "runtime/value.h"

namespace veldra {
namespace {

// Every benchmark runs inside a fresh context, as the game does.
struct BenchCollector {
    GcScope collector;
};

void copy_value(benchmark::State& state, const Value& source) {
    for (auto _ : state) {
        Value copy = source;
        benchmark::DoNotOptimize(copy);
    }
}

void BM_CopyNumber(benchmark::State& state) {
    BenchCollector bench;
    copy_value(state, Value(3.25));
}
BENCHMARK(BM_CopyNumber);

void BM_CopyString(benchmark::State& state) {
    BenchCollector bench;
    copy_value(state, Value("a string longer than the small-string buffer"));
}
BENCHMARK(BM_CopyString);

void BM_CopyArray(benchmark::State& state) {
    BenchCollector bench;
    copy_value(state, Value::array(std::vector<Value>(100, Value(1))));
}
BENCHMARK(BM_CopyArray);

void BM_CopyStruct(benchmark::State& state) {
    BenchCollector bench;
    Value s = Value::make_struct();
    s.set("x", 1);
    copy_value(state, s);
}
BENCHMARK(BM_CopyStruct);

// A struct shaped like the game's records: a dozen fields, looked up by name.
Value record_struct() {
    Value s = Value::make_struct();
    for (const char* name :
         {"openness", "conscientiousness", "extraversion", "agreeableness", "neuroticism", "energy",
          "x", "y", "speed", "target", "cooldown", "type_number"})
        s.set(name, 0.5);
    return s;
}

void BM_StructGetLastField(benchmark::State& state) {
    BenchCollector bench;
    const Value s = record_struct();
    for (auto _ : state)
        benchmark::DoNotOptimize(s.get("type_number"));
}
BENCHMARK(BM_StructGetLastField);

void BM_StructFindFirstField(benchmark::State& state) {
    BenchCollector bench;
    const Value s = record_struct();
    for (auto _ : state)
        benchmark::DoNotOptimize(s.find("openness"));
}
BENCHMARK(BM_StructFindFirstField);

void BM_StructSetExistingField(benchmark::State& state) {
    BenchCollector bench;
    const Value s = record_struct();
    double n = 0;
    for (auto _ : state)
        s.set("cooldown", n += 1);
    benchmark::DoNotOptimize(s.get("cooldown"));
}
BENCHMARK(BM_StructSetExistingField);

void BM_MakeStructWithThreeFields(benchmark::State& state) {
    BenchCollector bench;
    for (auto _ : state) {
        Value s = Value::make_struct();
        s.set("x", 1);
        s.set("y", 2);
        s.set("name", "n");
        benchmark::DoNotOptimize(s);
    }
}
BENCHMARK(BM_MakeStructWithThreeFields);

// A collection that finds nothing: the cost the auto runner pays between trials.
void BM_CollectLiveStructs(benchmark::State& state) {
    BenchCollector bench;
    Value all = Value::array();
    for (int64_t i = 0; i < state.range(0); ++i) {
        Value s = record_struct();
        s.set("list", Value::array({i}));
        all.push(s);
    }
    for (auto _ : state)
        benchmark::DoNotOptimize(gc_collect());
    state.SetItemsProcessed(state.iterations() * state.range(0));
}
BENCHMARK(BM_CollectLiveStructs)->Arg(1000)->Arg(100000);

}  // namespace
}  // namespace veldra

BENCHMARK_MAIN();
