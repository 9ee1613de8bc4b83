#include "ui/terrain_image.h"

#include <algorithm>
#include <array>
#include <optional>

#include "ui/sprite_painting.h"

namespace veldra {

namespace {

bool is_hole(const TerrainCell* cell) { return cell && !cell->is_traversable && !cell->is_rock; }

// A dark pit whose edges toward solid ground show a band of earth fading into the dark, the
// upper edge deepest, as if lit from above. One tile per combination of open sides, bit 0 left,
// 1 right, 2 top, 3 bottom.
PixelCanvas paint_hole_tile(unsigned open_sides) {
    PixelCanvas tile(TILE_SIZE, TILE_SIZE);
    constexpr double RIM = 10;
    for (int y = 0; y < TILE_SIZE; ++y) {
        for (int x = 0; x < TILE_SIZE; ++x) {
            double d = 1e9;  // pixels to the nearest edge toward the ground
            if (open_sides & 1)
                d = std::min(d, x + 0.5);
            if (open_sides & 2)
                d = std::min(d, TILE_SIZE - x - 0.5);
            if (open_sides & 4)
                d = std::min(d, (y + 0.5) / 1.6);  // the far wall shows more
            if (open_sides & 8)
                d = std::min(d, TILE_SIZE - y - 0.5);
            const double noise = pixel_noise(x, y, 500) * 0.12;
            Rgba c = shade(HOLE_COLOR, 0.94 + noise);
            if (d < RIM)
                c = mix(shade(HOLE_RIM_COLOR, 0.9 + noise), c, d / RIM);
            tile.set(x, y, c);
        }
    }
    return tile;
}

unsigned open_sides(const Terrain& terrain, const TerrainCell& cell) {
    auto solid = [&](int dx, int dy) {
        const TerrainCell* next = terrain.cell_at(cell.cx + dx, cell.cy + dy);
        return next && !is_hole(next);
    };
    return (solid(-1, 0) ? 1u : 0u) | (solid(1, 0) ? 2u : 0u) | (solid(0, -1) ? 4u : 0u) |
           (solid(0, 1) ? 8u : 0u);
}

}  // namespace

PixelCanvas paint_terrain(const Terrain& terrain, const SceneryLooks& scenery,
                          const Sprites& sprites) {
    // Every cell is painted over, so the picture starts transparent (the cheapest fill).
    PixelCanvas canvas(std::max(1, terrain.width * TILE_SIZE), std::max(1, terrain.height * TILE_SIZE));
    std::array<std::optional<PixelCanvas>, 16> hole_tiles;
    for (const TerrainCell& cell : terrain.cells) {
        const int left = cell.cx * TILE_SIZE, top = cell.cy * TILE_SIZE;
        if (is_hole(&cell)) {
            std::optional<PixelCanvas>& tile = hole_tiles[open_sides(terrain, cell)];
            if (!tile)
                tile = paint_hole_tile(open_sides(terrain, cell));
            canvas.draw(*tile, left, top);
        } else if (cell.is_sand) {
            canvas.draw(sprites.sand_tile, left, top);
        } else {
            const auto variant = static_cast<std::size_t>(
                pixel_noise(cell.cx, cell.cy, 40) * GROUND_VARIANTS);
            canvas.draw(sprites.ground_tiles[std::min<std::size_t>(variant, GROUND_VARIANTS - 1)],
                        left, top);
        }
    }
    for (const RockLook& rock : scenery.rocks)
        canvas.draw_transformed(sprites.rock_images[static_cast<std::size_t>(rock.variant)],
                                rock.x, rock.y, rock.scale, rock.tilt, rock.mirrored,
                                {static_cast<std::uint8_t>(rock.tint[0] * 255),
                                 static_cast<std::uint8_t>(rock.tint[1] * 255),
                                 static_cast<std::uint8_t>(rock.tint[2] * 255), 255});
    for (const FoliageLook& leaves : scenery.leaves)
        for (int i = 0; i < leaves.tuft_count; ++i) {
            const FoliageLook::Tuft& tuft = leaves.tufts[static_cast<std::size_t>(i)];
            canvas.draw_transformed(sprites.foliage_image, leaves.x + tuft.offset_x,
                                    leaves.y + tuft.offset_y, tuft.scale, 0, tuft.offset_x < 0,
                                    {255, 255, 255, 255});
        }
    return canvas;
}

}  // namespace veldra
