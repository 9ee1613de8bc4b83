#include "ui/sprites.h"

#include <algorithm>
#include <cmath>
#include <map>

#include "ui/sprite_painting.h"

namespace veldra {

namespace {

// A soft black ellipse that fades toward its edge.
PixelCanvas paint_shadow() {
    PixelCanvas canvas(48, 20);
    canvas.shape(0, 0, 48, 20, [](double x, double y) { return ellipse_distance(x, y, 24, 10, 23, 9); },
                 [](double x, double y) {
                     const double nx = (x - 24) / 23, ny = (y - 10) / 9;
                     const double fade = 1 - std::min(1.0, std::sqrt(nx * nx + ny * ny));
                     return Rgba{0, 0, 0, static_cast<std::uint8_t>(40 + 70 * fade)};
                 });
    return canvas;
}

PixelCanvas paint_glow() {
    PixelCanvas canvas(64, 64);
    canvas.shape(0, 0, 64, 64, [](double x, double y) { return ellipse_distance(x, y, 32, 32, 31, 31); },
                 [](double x, double y) {
                     const double d = std::min(1.0, std::hypot(x - 32, y - 32) / 31);
                     return Rgba{255, 255, 255, static_cast<std::uint8_t>(220 * (1 - d) * (1 - d))};
                 });
    return canvas;
}

PixelCanvas paint_ring() {
    PixelCanvas canvas(64, 64);
    canvas.shape(0, 0, 64, 64,
                 [](double x, double y) { return std::abs(std::hypot(x - 32, y - 32) - 29) - 1.6; },
                 Rgba{255, 255, 255});
    return canvas;
}

PixelCanvas paint_outline() {
    PixelCanvas canvas(SPRITE_SIZE, SPRITE_SIZE);
    canvas.circle(SPRITE_SIZE / 2.0, BODY_CENTRE_Y, BODY_RADIUS + 4.5, {255, 255, 255});
    return canvas;
}

PixelCanvas paint_crosshair() {
    PixelCanvas canvas(32, 32);
    for (auto [color, width] : {std::pair{Rgba{20, 20, 24, 200}, 4.2}, {Rgba{255, 255, 255}, 2.0}}) {
        const double ring = width;  // clang 14 cannot capture a structured binding
        canvas.shape(0, 0, 32, 32,
                     [ring](double x, double y) {
                         return std::abs(std::hypot(x - 16, y - 16) - 9) - ring / 2;
                     },
                     color);
        canvas.capsule(16, 1.5, 16, 9, width, color);
        canvas.capsule(16, 23, 16, 30.5, width, color);
        canvas.capsule(1.5, 16, 9, 16, width, color);
        canvas.capsule(23, 16, 30.5, 16, width, color);
    }
    return canvas;
}

// A speech bubble with a tail at its lower left and three dots: the AI humans greet the player
// without words, so no language needs a line for it.
PixelCanvas paint_bubble() {
    PixelCanvas canvas(44, 34);
    const Rgba edge{60, 60, 70};
    const Rgba paper{252, 252, 246};
    auto rounded = [](double x, double y, double grow) {
        const double qx = std::abs(x - 22) - (16 - 8), qy = std::abs(y - 13) - (10 - 8);
        return std::hypot(std::max(qx, 0.0), std::max(qy, 0.0)) + std::min(std::max(qx, qy), 0.0) -
               8 - grow;
    };
    canvas.shape(0, 0, 44, 26, [&](double x, double y) { return rounded(x, y, 1.6); }, edge);
    canvas.triangle(9, 20, 18, 20, 7, 33, edge);
    canvas.shape(0, 0, 44, 26, [&](double x, double y) { return rounded(x, y, 0); }, paper);
    canvas.triangle(10.5, 19, 16.5, 19, 8.5, 30, paper);
    for (int i = 0; i < 3; ++i)
        canvas.circle(14 + i * 8, 13, 2.4, edge);
    return canvas;
}

}  // namespace

Sprites make_sprites(Renderer& renderer) {
    Sprites sprites{
        {paint_ground_tile(0), paint_ground_tile(1), paint_ground_tile(2)},
        paint_sand_tile(),
        {paint_rock(0), paint_rock(1), paint_rock(2), paint_rock(3)},
        paint_foliage(),
    };
    static_assert(GROUND_VARIANTS == 3 && RockLook::VARIANTS == 4, "one painter call per variant");
    sprites.foliage = sprites.foliage_image.upload(renderer);
    sprites.food = paint_food().upload(renderer);
    sprites.player = paint_human(PLAYER_BODY_COLOR).upload(renderer);
    for (std::size_t i = 0; i < AI_HUMAN_BODY_COLORS.size(); ++i)
        sprites.ai_humans[i] = paint_human(AI_HUMAN_BODY_COLORS[i]).upload(renderer);
    sprites.monster = paint_monster().upload(renderer);
    sprites.outline = paint_outline().upload(renderer);
    sprites.shadow = paint_shadow().upload(renderer);
    sprites.glow = paint_glow().upload(renderer);
    sprites.ring = paint_ring().upload(renderer);
    sprites.crosshair = paint_crosshair().upload(renderer);
    sprites.bubble = paint_bubble().upload(renderer);
    for (std::size_t i = 0; i < HUMAN_ACTION_TYPE_COUNT; ++i)
        sprites.action_icons[i] = paint_action_icon(i).upload(renderer);
    return sprites;
}

}  // namespace veldra
