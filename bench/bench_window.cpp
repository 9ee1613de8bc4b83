// One windowed frame: a full-screen terrain texture, a few hundred sprites, labels and circles,
// drawn and presented. Needs a display (xvfb-run -a -s "-screen 0 1920x1080x24"); argument 1
// selects SDL's software renderer, 0 the default (accelerated where there is one); then the
// sprite count, whether sprites are flipped and rotated, and whether there are labels.

#include <benchmark/benchmark.h>

#include <cstdlib>
#include <string>
#include <vector>

#include "platform/game_window.h"

namespace {

using namespace veldra;

void BM_WindowFrame(benchmark::State& state) {
    setenv("SDL_AUDIODRIVER", "dummy", 1);
    if (state.range(0) == 1)
        setenv("SDL_RENDER_DRIVER", "software", 1);
    else
        unsetenv("SDL_RENDER_DRIVER");
    Services services;
    platform::WindowOptions options;
    options.vsync = false;
    options.pace_frames = false;
    std::string error;
    auto window = platform::open_game_window(services, options, error);
    if (!window) {
        state.SkipWithError(error.c_str());
        return;
    }
    Renderer& renderer = *services.renderer;
    std::vector<std::uint32_t> terrain(static_cast<std::size_t>(LOGICAL_WIDTH) * LOGICAL_HEIGHT);
    for (std::size_t i = 0; i < terrain.size(); ++i)
        terrain[i] = 0x305020ff + static_cast<std::uint32_t>((i * 2654435761u) % 32) * 0x10000;
    const TextureId ground = renderer.create_texture(LOGICAL_WIDTH, LOGICAL_HEIGHT, terrain);
    std::vector<TextureId> sprites;
    for (int k = 0; k < 8; ++k) {
        std::vector<std::uint32_t> pixels(32 * 32);
        for (int y = 0; y < 32; ++y)
            for (int x = 0; x < 32; ++x) {
                const int dx = x - 16, dy = y - 16;
                pixels[static_cast<std::size_t>(y * 32 + x)] =
                    dx * dx + dy * dy < 225
                        ? 0xc08040ffu + static_cast<std::uint32_t>(k) * 0x1000000u
                        : 0;
            }
        sprites.push_back(renderer.create_texture(32, 32, pixels));
    }
    const int count = static_cast<int>(state.range(1));
    const bool turn = state.range(2) != 0;    // sprites flipped and rotated as creatures are
    const bool labels = state.range(3) != 0;  // names and shadows under every tenth sprite
    for (auto _ : state) {
        DrawList& list = renderer.draw_list();
        list.texture(ground, 0, 0, LOGICAL_WIDTH, LOGICAL_HEIGHT);
        for (int i = 0; i < count; ++i) {
            const float x = static_cast<float>((i * 97) % 1560);
            const float y = static_cast<float>((i * 53) % 860);
            list.texture(sprites[static_cast<std::size_t>(i) % sprites.size()], x, y, 40, 40,
                         {255, 255, 255}, turn && i % 7 == 0 ? 15.0f : 0.0f, turn && i % 2 == 0);
            if (labels && i % 10 == 0) {
                list.circle(x + 20, y + 45, 6, {0, 0, 0, 90});
                list.text(x, y - 20, "[#ffd060]Human[/c] 42", {255, 255, 255});
            }
        }
        list.text(20, 20, "Trial 3 of 10  Day 12  Population 250", {255, 255, 255}, 40);
        services.input->poll();
        renderer.present();
    }
    state.SetLabel(count ? std::to_string(count) + " sprites" : "empty");
}
BENCHMARK(BM_WindowFrame)
    ->ArgsProduct({{0, 1}, {0, 300}, {0, 1}, {0, 1}})
    ->Unit(benchmark::kMillisecond)
    ->MinTime(1.0);

}  // namespace

BENCHMARK_MAIN();
