// Turned, scaled, mirrored and tinted pictures (the level's boulders and leaves): the fixed-point
// drawing against a plain reference in doubles, and what the ground picture promises of them.

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <numbers>

#include "ui/pixel_canvas.h"
#include "ui/sprite_painting.h"
#include "ui/sprites.h"
#include "ui/terrain_image.h"

namespace veldra {
namespace {

// The plain way: every canvas pixel turned back into the source in doubles, sampled
// bilinearly with colours weighted by alpha, tinted and blended by PixelCanvas::blend.
void reference_draw(PixelCanvas& canvas, const PixelCanvas& source, double cx, double cy,
                    double scale, double angle, bool mirrored, Rgba tint) {
    const double c = std::cos(angle * std::numbers::pi / 180), s = std::sin(angle * std::numbers::pi / 180);
    for (int y = 0; y < canvas.height(); ++y) {
        for (int x = 0; x < canvas.width(); ++x) {
            const double dx = (x + 0.5 - cx) / scale, dy = (y + 0.5 - cy) / scale;
            const double fx = (mirrored ? -1 : 1) * (dx * c - dy * s) + source.width() / 2.0 - 0.5;
            const double fy = dx * s + dy * c + source.height() / 2.0 - 0.5;
            const int ix = static_cast<int>(std::floor(fx)), iy = static_cast<int>(std::floor(fy));
            double r = 0, g = 0, b = 0, a = 0;
            for (int j = 0; j < 2; ++j) {
                for (int i = 0; i < 2; ++i) {
                    if (ix + i < 0 || iy + j < 0 || ix + i >= source.width() || iy + j >= source.height())
                        continue;
                    const Rgba p = source.at(ix + i, iy + j);
                    const double w = (i ? fx - ix : 1 - (fx - ix)) * (j ? fy - iy : 1 - (fy - iy)) * p.a;
                    r += p.r * w, g += p.g * w, b += p.b * w, a += w;
                }
            }
            if (a <= 0)
                continue;
            canvas.blend(x, y,
                         {static_cast<std::uint8_t>(std::lround(r / a * tint.r / 255)),
                          static_cast<std::uint8_t>(std::lround(g / a * tint.g / 255)),
                          static_cast<std::uint8_t>(std::lround(b / a * tint.b / 255)),
                          static_cast<std::uint8_t>(std::lround(a * tint.a / 255))});
        }
    }
}

int largest_channel_difference(Rgba p, Rgba q) {
    return std::max({std::abs(p.r - q.r), std::abs(p.g - q.g), std::abs(p.b - q.b), std::abs(p.a - q.a)});
}

Rgba premultiplied(Rgba c) {
    auto times_alpha = [c](int v) { return static_cast<std::uint8_t>((v * c.a + 127) / 255); };
    return {times_alpha(c.r), times_alpha(c.g), times_alpha(c.b), c.a};
}

struct Placement {
    double cx, cy, scale, angle;
    bool mirrored;
    Rgba tint;
};

TEST(TransformedDrawingTest, MatchesThePlainDrawingWithinTwoLevelsOverGroundAndOverNothing) {
    const PixelCanvas rock = paint_rock(1), leaves = paint_foliage();
    const Placement placements[] = {
        {64, 64, 1, 0, false, {255, 255, 255, 255}},    {60.3, 67.8, 1.1, 8, true, {230, 217, 250, 255}},
        {70, 58.5, 0.9, -7.3, false, {217, 240, 222, 255}}, {64, 64, 0.6, 30, true, {255, 255, 255, 160}},
        {5, 120, 1, 45, false, {255, 255, 255, 255}},  // partly off the canvas
    };
    for (const Rgba ground : {Rgba{84, 130, 70, 255}, Rgba{0, 0, 0, 0}}) {
        for (const PixelCanvas* source : {&rock, &leaves}) {
            for (const Placement& at : placements) {
                PixelCanvas fast(128, 128, ground), plain(128, 128, ground);
                fast.draw_transformed(*source, at.cx, at.cy, at.scale, at.angle, at.mirrored, at.tint);
                reference_draw(plain, *source, at.cx, at.cy, at.scale, at.angle, at.mirrored, at.tint);
                int changed = 0;
                for (int y = 0; y < 128; ++y) {
                    for (int x = 0; x < 128; ++x) {
                        changed += plain.at(x, y) != PixelCanvas(1, 1, ground).at(0, 0);
                        // Over nothing, what shows once the picture is composited is the
                        // colour times alpha: a faint edge pixel's own colour does not matter.
                        const int difference = ground.a == 0
                                                   ? largest_channel_difference(premultiplied(fast.at(x, y)),
                                                                                premultiplied(plain.at(x, y)))
                                                   : largest_channel_difference(fast.at(x, y), plain.at(x, y));
                        ASSERT_LE(difference, 2) << x << "," << y << " angle " << at.angle;
                    }
                }
                EXPECT_GT(changed, 100) << "the picture was drawn at all";
            }
        }
    }
}

TEST(TransformedDrawingTest, AMirroredBoulderIsTheMirrorImageOfTheOneTurnedTheOtherWay) {
    const PixelCanvas rock = paint_rock(3);  // two stones, far from symmetric
    const Rgba ground{84, 130, 70, 255};
    PixelCanvas mirrored(128, 128, ground), plain(128, 128, ground);
    mirrored.draw_transformed(rock, 64, 64, 1.05, 6, true, {240, 230, 220, 255});
    plain.draw_transformed(rock, 64, 64, 1.05, -6, false, {240, 230, 220, 255});
    int asymmetric = 0;
    for (int y = 0; y < 128; ++y) {
        for (int x = 0; x < 128; ++x) {
            ASSERT_LE(largest_channel_difference(mirrored.at(x, y), plain.at(127 - x, y)), 1) << x << "," << y;
            asymmetric += largest_channel_difference(plain.at(x, y), plain.at(127 - x, y)) > 40;
        }
    }
    EXPECT_GT(asymmetric, 500) << "a symmetric picture would prove nothing";
}

TEST(TransformedDrawingTest, EveryBoulderStaysNearItsCellAndEachOfItsLooksShows) {
    std::vector<TerrainCell> cells;
    for (int cy = 0; cy < 3; ++cy)
        for (int cx = 0; cx < 3; ++cx)
            cells.emplace_back(cx, cy, true);
    const Terrain terrain(3, 3, cells);
    NullRenderer renderer;
    const Sprites sprites = make_sprites(renderer);
    const PixelCanvas bare = paint_terrain(terrain, {}, sprites);
    auto with_rock = [&](const RockLook& look) { return paint_terrain(terrain, {{look}, {}}, sprites); };
    constexpr int MARGIN = 4;  // of the neighbouring cells a boulder's shadow may touch
    for (int variant = 0; variant < RockLook::VARIANTS; ++variant) {
        for (const double tilt : {-8.0, 8.0}) {
            const RockLook largest{96, 96, variant, tilt, 1.1, tilt > 0, {0.85, 0.85, 0.85}};
            const PixelCanvas picture = with_rock(largest);
            for (int y = 0; y < picture.height(); ++y) {
                for (int x = 0; x < picture.width(); ++x) {
                    if (std::min(x, y) < TILE_SIZE - MARGIN || std::max(x, y) >= 2 * TILE_SIZE + MARGIN) {
                        ASSERT_EQ(picture.at(x, y), bare.at(x, y)) << variant << " at " << x << "," << y;
                    }
                }
            }
        }
    }
    // Each way one boulder differs from the next shows in the picture.
    const RockLook base{96, 96, 0, 0, 1, false, {0.9, 0.9, 0.9}};
    const PixelCanvas base_picture = with_rock(base);
    RockLook variant = base, tilted = base, scaled = base, mirrored = base, tinted = base;
    variant.variant = 2, tilted.tilt = 3, scaled.scale = 1.06, mirrored.mirrored = true, tinted.tint[2] = 1;
    for (const RockLook& other : {variant, tilted, scaled, mirrored, tinted}) {
        const PixelCanvas picture = with_rock(other);
        int different = 0;
        for (int y = TILE_SIZE; y < 2 * TILE_SIZE; ++y)
            for (int x = TILE_SIZE; x < 2 * TILE_SIZE; ++x)
                different += largest_channel_difference(picture.at(x, y), base_picture.at(x, y)) > 4;
        EXPECT_GT(different, 100);
    }
}

TEST(TransformedDrawingTest, APictureInLargePagesKeepsItsPixelsThroughCopies) {
    PixelCanvas large(1500, 1400, {10, 20, 30, 255});  // 8 MiB
    large.set(0, 0, {1, 2, 3, 4});
    large.set(1499, 1399, {5, 6, 7, 8});
    const PixelCanvas copy = large;
    EXPECT_EQ(copy.pixels(), large.pixels());
    EXPECT_EQ(copy.at(1499, 1399), (Rgba{5, 6, 7, 8}));
    EXPECT_EQ(copy.at(750, 700), (Rgba{10, 20, 30, 255}));
}

}  // namespace
}  // namespace veldra
