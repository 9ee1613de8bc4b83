// creature_approach on the largest shipped level (level_10, 48 x 48): with a change of goal
// (one grid search from the creature's cell, path shortening, one step), in microseconds; and
// the steady state without a change (one distance test and one move), in nanoseconds. The
// start/goal pairs are 200 traversable cells drawn once from a fixed seed, so every run times
// the same searches.

#include <benchmark/benchmark.h>

#include <cstdlib>
#include <random>
#include <vector>

#include "config/game_configurations.h"
#include "creatures/creature_pathfinding.h"
#include "creatures/human_action_type.h"
#include "creatures/monster.h"
#include "creatures/trial_world.h"
#include "runtime/gc.h"
#include "runtime/runtime.h"
#include "runtime/services.h"
#include "world/level.h"
#include "world/level_cell_types.h"
#include "world/level_file.h"

namespace {

using namespace veldra;

constexpr int pair_count = 200;

struct Setup {
    Setup() {
        setenv("VeldraProjectDir", VELDRA_SOURCE_DIR, 1);
        initialize_configs(configs);
        reload_game_configurations(configs, *services.files, "");
        initialize_level_cell_types(cell_types);
        initialize_creature_pathfinding(pathfinding);
        runtime.start(runtime.room_add({"rm_bench", nullptr}));
        auto level = level_load_from_file(*services.files, cell_types,
                                          VELDRA_SOURCE_DIR "/datafiles/levels/level_10.txt");
        if (!level)
            std::abort();
        terrain = level_dump(*level, LevelSpawnHooks{});
        world.terrain = &terrain;
        creature = &runtime.instance_create<obj_monster>(0, 0, "Instances", world);
        std::vector<const TerrainCell*> open;
        for (const TerrainCell& cell : terrain.cells)
            if (cell.is_traversable)
                open.push_back(&cell);
        std::mt19937 rng(7);
        for (int i = 0; i < pair_count; ++i)
            pairs.push_back({open[rng() % open.size()], open[rng() % open.size()]});
    }
    ~Setup() { runtime.shutdown(); }

    void place_at(const TerrainCell& cell) {
        creature->x = cell.room_rect.get_center_x();
        creature->y = cell.room_rect.get_center_y();
    }

    GcScope collector;
    Services services;
    Runtime runtime{services};
    ConfigsState configs;
    LevelCellTypeTable cell_types;
    HumanActionTypes action_types;
    CreaturePathfinding pathfinding;
    TrialWorld world{runtime, configs, action_types, pathfinding};
    Terrain terrain;
    obj_monster* creature = nullptr;
    std::vector<std::pair<const TerrainCell*, const TerrainCell*>> pairs;
};

void BM_ApproachWithGoalChange(benchmark::State& state) {
    Setup setup;
    std::size_t i = 0;
    long corners = 0;
    for (auto _ : state) {
        const auto& [start, goal] = setup.pairs[i++ % setup.pairs.size()];
        setup.place_at(*start);
        creature_approach(*setup.creature, goal, 1);
        corners += static_cast<long>(
            creature_current_path(setup.pathfinding, setup.creature->id()).size());
        // Forget the goal so the next pair searches even when its goal cell is the same.
        creature_approach(*setup.creature, nullptr, 0);
    }
    state.counters["corners"] =
        benchmark::Counter(static_cast<double>(corners), benchmark::Counter::kAvgIterations);
}
BENCHMARK(BM_ApproachWithGoalChange)->Unit(benchmark::kMicrosecond);

void BM_ApproachSameGoal(benchmark::State& state) {
    Setup setup;
    const auto& [start, goal] = setup.pairs[0];
    setup.place_at(*start);
    creature_approach(*setup.creature, goal, 0);
    for (auto _ : state)
        creature_approach(*setup.creature, goal, 0);  // speed 0: the path is never used up
    benchmark::DoNotOptimize(setup.creature->x);
}
BENCHMARK(BM_ApproachSameGoal)->Unit(benchmark::kNanosecond);

}  // namespace

BENCHMARK_MAIN();
