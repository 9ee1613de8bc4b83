#include <cmath>
#include <numbers>

#include "ui/sprite_painting.h"
#include "ui/sprites.h"

namespace veldra {

namespace {

// A flat tile with a soft mottle in 4-pixel blocks and scattered single-pixel speckles. Each
// pixel is a function of its position only, so neighbouring tiles of one kind meet seamlessly
// enough that the grid does not show.
PixelCanvas mottled_tile(Rgba base, std::uint32_t salt, double mottle, double speckle_rate,
                         Rgba light, Rgba dark) {
    PixelCanvas tile(TILE_SIZE, TILE_SIZE, base);
    for (int y = 0; y < TILE_SIZE; ++y) {
        for (int x = 0; x < TILE_SIZE; ++x) {
            const double block = pixel_noise(x / 4, y / 4, salt) - 0.5;
            Rgba c = shade(base, 1 + block * mottle);
            const double speck = pixel_noise(x, y, salt + 1);
            if (speck < speckle_rate)
                c = mix(c, dark, 0.55);
            else if (speck > 1 - speckle_rate)
                c = mix(c, light, 0.5);
            tile.set(x, y, c);
        }
    }
    return tile;
}

}  // namespace

PixelCanvas paint_ground_tile(int variant) {
    PixelCanvas tile = mottled_tile(GRASS_COLOR, 100 + variant * 17, 0.08, 0.02,
                                    {170, 214, 120}, {62, 112, 52});
    // A few short blades of grass, different per variant.
    for (int i = 0; i < 5; ++i) {
        const double x = 6 + pixel_noise(i, variant, 7) * 52;
        const double y = 8 + pixel_noise(variant, i, 9) * 50;
        const double lean = (pixel_noise(i, i, variant) - 0.5) * 4;
        tile.capsule(x, y, x + lean, y - 5, 1.4, {78, 134, 60});
        tile.capsule(x + 2, y, x + 2 + lean * 1.5, y - 4, 1.2, {126, 186, 92});
    }
    return tile;
}

PixelCanvas paint_sand_tile() {
    return mottled_tile(SAND_COLOR, 300, 0.05, 0.06, {246, 228, 190}, {178, 148, 104});
}

PixelCanvas paint_rock(int variant) {
    PixelCanvas rock(TILE_SIZE, TILE_SIZE);
    const Rgba stone{138, 134, 128};
    // Stones of each variant: centre, radii.
    struct Stone {
        double x, y, rx, ry;
    };
    static constexpr Stone shapes[RockLook::VARIANTS][2] = {
        {{32, 34, 25, 21}, {0, 0, 0, 0}},
        {{26, 36, 20, 17}, {45, 42, 12, 10}},
        {{32, 38, 28, 16}, {0, 0, 0, 0}},
        {{30, 30, 18, 24}, {48, 46, 9, 8}},
    };
    for (const Stone& s : shapes[variant]) {
        if (s.rx == 0)
            continue;
        rock.ellipse(s.x + 1, s.y + 4, s.rx + 1, s.ry * 0.7, {0, 0, 0, 60});  // contact shadow
        rock.ellipse(s.x, s.y, s.rx + 1.5, s.ry + 1.5, shade(stone, 0.45));  // soft outline
        rock.shape(s.x - s.rx, s.y - s.ry, s.x + s.rx, s.y + s.ry,
                   [=](double x, double y) { return ellipse_distance(x, y, s.x, s.y, s.rx, s.ry); },
                   [=](double x, double y) {
                       // Lit from the upper left.
                       const double light = -((x - s.x) / s.rx + (y - s.y) / s.ry) * 0.5;
                       return shade(stone, 1 + light * 0.22);
                   });
        rock.ellipse(s.x - s.rx * 0.35, s.y - s.ry * 0.45, s.rx * 0.35, s.ry * 0.22,
                     {255, 255, 255, 55});
        rock.capsule(s.x + s.rx * 0.1, s.y - s.ry * 0.1, s.x + s.rx * 0.4, s.y + s.ry * 0.3, 1.4,
                     shade(stone, 0.6));
    }
    return rock;
}

PixelCanvas paint_foliage() {
    PixelCanvas leaves(32, 32);
    const Rgba leaf{58, 128, 62};
    constexpr int LEAVES = 5;
    for (int i = 0; i < LEAVES; ++i) {
        const double angle = std::numbers::pi * (0.15 + 0.7 * i / (LEAVES - 1));
        const double tip_x = 16 - std::cos(angle) * 13, tip_y = 27 - std::sin(angle) * 19;
        leaves.capsule(16, 27, tip_x, tip_y, 6.5, shade(leaf, 0.55));
        leaves.capsule(16, 27, tip_x, tip_y, 4.5, shade(leaf, 0.9 + 0.1 * (i % 2)));
        leaves.capsule(16, 26, (16 + tip_x) / 2, (27 + tip_y) / 2, 1, shade(leaf, 1.35));
    }
    return leaves;
}

}  // namespace veldra
