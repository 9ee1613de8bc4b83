// Costs of what a trial's window pays before its first frame (painting every sprite, painting
// the largest level's ground) and per frame (the draw commands of the largest level with views).
// Run: build/bench_ui --benchmark_min_time=1

#include <benchmark/benchmark.h>

#include <cstdlib>
#include <string>

#include "config/localization.h"
#include "runtime/gc.h"
#include "runtime/log.h"
#include "runtime/runtime.h"
#include "runtime/services.h"
#include "trials/game_systems.h"
#include "trials/simulation_state.h"
#include "trials/trial.h"
#include "ui/sprites.h"
#include "ui/terrain_image.h"
#include "ui/trial_views.h"
#include "ui/world_view.h"
#include "world/level_file.h"

namespace veldra {
namespace {

void BM_paint_sprites(benchmark::State& state) {
    NullRenderer renderer;
    for (auto _ : state)
        benchmark::DoNotOptimize(make_sprites(renderer).player);
}
BENCHMARK(BM_paint_sprites)->Unit(benchmark::kMillisecond);

// The largest shipped level, laid out in an interactive trial with its views.
struct LargestLevel {
    LargestLevel() {
        setenv("VeldraProjectDir", VELDRA_SOURCE_DIR, 1);
        initialize_game_systems(sim);
        reload_game_configurations(sim.configs, sim.files, "");
        runtime.start(runtime.room_add({"rm_game", nullptr}));
        auto level =
            level_load_from_file(sim.files, sim.cell_types,
                                 std::string(VELDRA_SOURCE_DIR) + "/datafiles/levels/level_10.txt");
        sim.create_trial_views = [this](obj_trial& trial) {
            return create_trial_views(sim, trial, localization, sprites, {});
        };
        trial = &runtime.instance_create<obj_trial>(0, 0, "Instances", sim);
        trial->initialize(*level, 1, false, 1, 0);
        trial->start(PersonalityTraits{});
    }
    ~LargestLevel() { runtime.shutdown(); }

    GcScope collector;
    LogCapture capture;
    Services services;
    Runtime runtime{services};
    SimulationState sim{runtime};
    Localization localization;
    Sprites sprites = make_sprites(*services.renderer);
    obj_trial* trial = nullptr;
};

void BM_paint_largest_level_ground(benchmark::State& state) {
    LargestLevel level;
    const Sprites& sprites = level.sprites;
    const SceneryLooks looks = scenery_looks(level.trial->terrain);
    for (auto _ : state)
        benchmark::DoNotOptimize(
            paint_terrain(level.trial->terrain, looks, sprites).pixels().data());
}
BENCHMARK(BM_paint_largest_level_ground)->Unit(benchmark::kMillisecond);

// Steps and draw events of one frame, without presenting: what the views add to a frame.
void BM_frame_with_views_largest_level(benchmark::State& state) {
    LargestLevel level;
    Renderer& renderer = *level.services.renderer;
    for (auto _ : state) {
        level.runtime.run_frame();
        benchmark::DoNotOptimize(renderer.draw_list().commands().size());
        state.counters["commands"] = static_cast<double>(renderer.draw_list().commands().size());
        renderer.present();
    }
}
BENCHMARK(BM_frame_with_views_largest_level)->Unit(benchmark::kMicrosecond);

}  // namespace
}  // namespace veldra

BENCHMARK_MAIN();
