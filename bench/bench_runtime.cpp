// Entity queries by object type: the runtime keeps one list per type (descendants included), so
// counting and finding cost nothing that grows with the other instances in the room.
#include <benchmark/benchmark.h>

#include "runtime/runtime.h"
#include "runtime/services.h"

namespace veldra {
namespace {

class obj_bench_creature : public Instance {
    VELDRA_OBJECT(obj_bench_creature, Instance)
};
class obj_bench_monster : public obj_bench_creature {
    VELDRA_OBJECT(obj_bench_monster, obj_bench_creature)
};
class obj_bench_scenery : public Instance {
    VELDRA_OBJECT(obj_bench_scenery, Instance)
};

// A room like a large level: a few dozen creatures among many decorative instances.
struct Room {
    explicit Room(int scenery) {
        for (int i = 0; i < 40; ++i)
            runtime.instance_create<obj_bench_monster>(i * 64.0, (i % 7) * 64.0);
        for (int i = 0; i < scenery; ++i)
            runtime.instance_create<obj_bench_scenery>(i, i);
    }
    Services services;
    Runtime runtime{services};
};

void BM_InstanceNumber(benchmark::State& state) {
    Room room(static_cast<int>(state.range(0)));
    for (auto _ : state)
        benchmark::DoNotOptimize(room.runtime.instance_number<obj_bench_creature>());
}
BENCHMARK(BM_InstanceNumber)->Arg(100)->Arg(10000);

void BM_InstanceFindAll(benchmark::State& state) {
    Room room(static_cast<int>(state.range(0)));
    for (auto _ : state) {
        const std::size_t n = room.runtime.instance_number<obj_bench_creature>();
        for (std::size_t i = 0; i < n; ++i)
            benchmark::DoNotOptimize(room.runtime.instance_find<obj_bench_creature>(i));
    }
}
BENCHMARK(BM_InstanceFindAll)->Arg(100)->Arg(10000);

void BM_InstanceNearest(benchmark::State& state) {
    Room room(static_cast<int>(state.range(0)));
    double x = 0;
    for (auto _ : state) {
        benchmark::DoNotOptimize(room.runtime.instance_nearest<obj_bench_creature>(x, 100));
        x += 1;
    }
}
BENCHMARK(BM_InstanceNearest)->Arg(100)->Arg(10000);

void BM_ForEach(benchmark::State& state) {
    Room room(static_cast<int>(state.range(0)));
    for (auto _ : state) {
        double sum = 0;
        room.runtime.for_each<obj_bench_creature>([&](obj_bench_creature& c) { sum += c.x; });
        benchmark::DoNotOptimize(sum);
    }
}
BENCHMARK(BM_ForEach)->Arg(100)->Arg(10000);

void BM_CreateDestroy(benchmark::State& state) {
    Room room(100);
    for (auto _ : state) {
        auto& inst = room.runtime.instance_create<obj_bench_monster>(0, 0);
        room.runtime.instance_destroy(inst.id());
    }
}
BENCHMARK(BM_CreateDestroy);

}  // namespace
}  // namespace veldra

BENCHMARK_MAIN();
