// The pictures painted by code: what a screenshot relies on (the player's colour where the
// views say it is), and the level's ground in the right place.

#include <gtest/gtest.h>

#include <cmath>

#include "runtime/hex_color.h"
#include "runtime/renderer.h"
#include "ui/sprite_painting.h"
#include "ui/sprites.h"
#include "ui/terrain_image.h"
#include "world/terrain.h"

namespace veldra {
namespace {

TEST(PicturesTest, ThePlayersBodyIsFlatInItsPromisedDiscAndDiffersFromEveryAiHuman) {
    const PixelCanvas player = paint_human(PLAYER_BODY_COLOR);
    const double cx = SPRITE_SIZE / 2.0, cy = BODY_CENTRE_Y + BODY_FLAT_BELOW_CENTRE;
    for (int y = 0; y < SPRITE_SIZE; ++y) {
        for (int x = 0; x < SPRITE_SIZE; ++x) {
            if (std::hypot(x + 0.5 - cx, y + 0.5 - cy) <= BODY_FLAT_RADIUS) {
                ASSERT_EQ(player.at(x, y), PLAYER_BODY_COLOR) << x << "," << y;
            }
        }
    }
    // Transparent around the body, so sprites overlap cleanly.
    EXPECT_EQ(player.at(0, 0).a, 0);
    for (Rgba ai : AI_HUMAN_BODY_COLORS) {
        const int distance = std::abs(ai.r - PLAYER_BODY_COLOR.r) +
                             std::abs(ai.g - PLAYER_BODY_COLOR.g) +
                             std::abs(ai.b - PLAYER_BODY_COLOR.b);
        EXPECT_GT(distance, 150);
    }
}

TEST(PicturesTest, EveryActionHasItsOwnIcon) {
    for (std::size_t a = 0; a < HUMAN_ACTION_TYPE_COUNT; ++a)
        for (std::size_t b = a + 1; b < HUMAN_ACTION_TYPE_COUNT; ++b)
            EXPECT_NE(paint_action_icon(a).pixels(), paint_action_icon(b).pixels())
                << a << " " << b;
}

TEST(PicturesTest, TheGroundPictureHasPitsRimsSandAndBouldersWhereTheCellsAre) {
    // Row 0: grass, hole, hole; row 1: sand, rock, grass.
    std::vector<TerrainCell> cells;
    for (int cy = 0; cy < 2; ++cy)
        for (int cx = 0; cx < 3; ++cx)
            cells.emplace_back(cx, cy, !(cy == 0 && cx > 0) && !(cy == 1 && cx == 1));
    cells[3].is_sand = true;
    cells[4].is_rock = true;
    const Terrain terrain(3, 2, cells);
    NullRenderer renderer;
    const SceneryLooks looks{};  // no boulders or leaves: the cells alone
    const PixelCanvas picture = paint_terrain(terrain, looks, make_sprites(renderer));
    ASSERT_EQ(picture.width(), 3 * TILE_SIZE);
    ASSERT_EQ(picture.height(), 2 * TILE_SIZE);
    auto brightness = [&](int x, int y) {
        const Rgba c = picture.at(x, y);
        return c.r + c.g + c.b;
    };
    // The pit is dark in its middle; its rim toward the grass on the left is earth-coloured.
    EXPECT_LT(brightness(96, 40), 110);
    EXPECT_GT(brightness(65, 40), brightness(96, 40) + 100);
    // Between the two pits there is no rim.
    EXPECT_LT(brightness(128, 40), 110);
    // Sand is warmer and lighter than grass.
    EXPECT_GT(picture.at(32, 96).r, picture.at(32, 32).r + 60);
    EXPECT_GT(picture.at(32, 32).g, picture.at(32, 32).r);
    // The whole picture is opaque: nothing of the window shows through the level.
    for (std::uint32_t p : picture.pixels())
        ASSERT_EQ(p & 0xff, 0xffu);
}

TEST(PicturesTest, BouldersAreCompositedOntoTheirCellOnly) {
    std::vector<TerrainCell> cells{TerrainCell(0, 0, true), TerrainCell(1, 0, false)};
    cells[1].is_rock = true;
    const Terrain terrain(2, 1, cells);
    NullRenderer renderer;
    const Sprites sprites = make_sprites(renderer);
    const PixelCanvas bare = paint_terrain(terrain, {}, sprites);
    const PixelCanvas with_rock = paint_terrain(terrain, scenery_looks(terrain), sprites);
    EXPECT_NE(bare.at(96, 32), with_rock.at(96, 32));
    EXPECT_EQ(bare.at(5, 32), with_rock.at(5, 32));
}

TEST(HexColorTest, ReadsSixDigitColoursAndRefusesAnythingElse) {
    EXPECT_EQ(parse_hex_color("#2e3B33"), (Rgba{0x2e, 0x3b, 0x33, 255}));
    EXPECT_EQ(parse_hex_color("#ffffff"), (Rgba{255, 255, 255, 255}));
    for (const char* bad : {"", "#fff", "2e3b33", "#2e3b3", "#2e3b33a", "#2g3b33"})
        EXPECT_FALSE(parse_hex_color(bad).has_value()) << bad;
}

}  // namespace
}  // namespace veldra
