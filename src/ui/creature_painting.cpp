#include <algorithm>
#include <cmath>

#include "ui/sprite_painting.h"
#include "ui/sprites.h"

namespace veldra {

namespace {

constexpr double CX = SPRITE_SIZE / 2.0;
constexpr double CY = BODY_CENTRE_Y;
constexpr Rgba EYE_WHITE{250, 250, 246};
constexpr Rgba PUPIL{34, 30, 40};

// A round body with a soft dark outline, shaded darker toward its rim and its bottom but flat
// in the middle (see BODY_FLAT_RADIUS), with a highlight on the upper left.
void paint_body(PixelCanvas& canvas, double rx, double ry, Rgba body) {
    canvas.ellipse(CX, CY, rx + 1.8, ry + 1.8, shade(body, 0.4));
    canvas.shape(CX - rx, CY - ry, CX + rx, CY + ry,
                 [=](double x, double y) { return ellipse_distance(x, y, CX, CY, rx, ry); },
                 [=](double x, double y) {
                     const double nx = (x - CX) / rx, ny = (y - CY) / ry;
                     const double d = std::sqrt(nx * nx + ny * ny);
                     const double rim = std::clamp((d - 0.72) / 0.28, 0.0, 1.0);
                     return shade(body, 1 - rim * (0.18 + 0.12 * std::max(0.0, ny)));
                 });
    canvas.ellipse(CX - rx * 0.38, CY - ry * 0.45, rx * 0.28, ry * 0.18, {255, 255, 255, 80});
}

// Two eyes looking right (views mirror the sprite to face left).
void paint_eyes(PixelCanvas& canvas, double spread, double y, double r) {
    for (double side : {-1.0, 1.0}) {
        const double ex = CX + side * spread;
        canvas.ellipse(ex, y, r + 1, r + 1.6, shade(PUPIL, 1.2));
        canvas.ellipse(ex, y, r, r + 0.6, EYE_WHITE);
        canvas.circle(ex + r * 0.4, y + 0.4, r * 0.55, PUPIL);
        canvas.circle(ex + r * 0.15, y - r * 0.35, r * 0.2, {255, 255, 255});
    }
}

}  // namespace

PixelCanvas paint_human(Rgba body) {
    PixelCanvas canvas(SPRITE_SIZE, SPRITE_SIZE);
    for (double side : {-1.0, 1.0})  // feet peeking out below
        canvas.ellipse(CX + side * 7, CY + BODY_RADIUS - 1, 5.5, 4, shade(body, 0.5));
    paint_body(canvas, BODY_RADIUS, BODY_RADIUS, body);
    paint_eyes(canvas, 6.5, CY - 7, 3.6);
    return canvas;
}

PixelCanvas paint_monster() {
    PixelCanvas canvas(SPRITE_SIZE, SPRITE_SIZE);
    const Rgba horn{236, 224, 196};
    for (double side : {-1.0, 1.0}) {
        canvas.triangle(CX + side * 9, CY - 12, CX + side * 18, CY - 14, CX + side * 20, CY - 29,
                        shade(horn, 0.5));
        canvas.triangle(CX + side * 10, CY - 13, CX + side * 17, CY - 14.5, CX + side * 19,
                        CY - 26, horn);
        canvas.ellipse(CX + side * 10, CY + 19, 6, 4, shade(MONSTER_BODY_COLOR, 0.45));
    }
    paint_body(canvas, 21, 19, MONSTER_BODY_COLOR);
    // Angry eyes: yellow, with a brow cutting across.
    for (double side : {-1.0, 1.0}) {
        const double ex = CX + side * 8;
        canvas.ellipse(ex, CY - 5, 4.6, 4, {255, 214, 64});
        canvas.ellipse(ex + 1.5, CY - 4.5, 1.6, 2.8, PUPIL);
        canvas.capsule(ex - side * 5, CY - 11, ex + side * 5, CY - 7, 2.4,
                       shade(MONSTER_BODY_COLOR, 0.45));
    }
    canvas.ellipse(CX, CY + 7, 11, 5, {54, 14, 34});
    for (int i = 0; i < 4; ++i) {
        const double tx = CX - 8 + i * 5.4;
        canvas.triangle(tx - 2.2, CY + 3.2, tx + 2.2, CY + 3.2, tx, CY + 7.5, EYE_WHITE);
    }
    return canvas;
}

PixelCanvas paint_food() {
    PixelCanvas canvas(SPRITE_SIZE, SPRITE_SIZE);
    const Rgba leaf{60, 136, 64};
    static constexpr double LEAVES[][3] = {{CX - 9, CY + 2, 11}, {CX + 9, CY + 2, 11},
                                           {CX, CY - 7, 12},     {CX, CY + 6, 12}};
    for (const auto& l : LEAVES)
        canvas.circle(l[0], l[1], l[2] + 1.6, shade(leaf, 0.45));
    for (const auto& l : LEAVES)
        canvas.shape(l[0] - l[2], l[1] - l[2], l[0] + l[2], l[1] + l[2],
                     [&l](double x, double y) {
                         return ellipse_distance(x, y, l[0], l[1], l[2], l[2]);
                     },
                     [&l, leaf](double, double y) { return shade(leaf, 1.15 - (y - l[1] + l[2]) / (4 * l[2]) * 0.5); });
    static constexpr double BERRIES[][2] = {{CX - 8, CY - 3}, {CX + 6, CY - 7}, {CX + 9, CY + 5},
                                            {CX - 3, CY + 8}, {CX + 1, CY}};
    for (const auto& b : BERRIES) {
        canvas.circle(b[0], b[1], 4.4, {110, 16, 30});
        canvas.circle(b[0], b[1], 3.5, {222, 40, 58});
        canvas.circle(b[0] - 1.2, b[1] - 1.3, 1.1, {255, 210, 210});
    }
    return canvas;
}

}  // namespace veldra
