#include "ui/terrain_image.h"

#include <algorithm>

#include "ui/sprite_painting.h"

namespace veldra {

namespace {

bool is_hole(const TerrainCell* cell) { return cell && !cell->is_traversable && !cell->is_rock; }

// A dark pit whose edges toward solid ground show a band of earth fading into the dark, the
// upper edge deepest, as if lit from above.
void paint_hole(PixelCanvas& canvas, const Terrain& terrain, const TerrainCell& cell) {
    const int left = cell.cx * TILE_SIZE, top = cell.cy * TILE_SIZE;
    auto solid = [&](int dx, int dy) {
        const TerrainCell* next = terrain.cell_at(cell.cx + dx, cell.cy + dy);
        return next && !is_hole(next);
    };
    const bool open_left = solid(-1, 0), open_right = solid(1, 0);
    const bool open_top = solid(0, -1), open_bottom = solid(0, 1);
    constexpr double RIM = 10;
    for (int y = 0; y < TILE_SIZE; ++y) {
        for (int x = 0; x < TILE_SIZE; ++x) {
            double edge = 1e9;  // pixels to the nearest edge toward the ground
            if (open_left)
                edge = std::min(edge, x + 0.5);
            if (open_right)
                edge = std::min(edge, TILE_SIZE - x - 0.5);
            if (open_bottom)
                edge = std::min(edge, TILE_SIZE - y - 0.5);
            const double top_edge = open_top ? (y + 0.5) / 1.6 : 1e9;  // the far wall shows more
            const double d = std::min(edge, top_edge);
            const double noise = pixel_noise(left + x, top + y, 500) * 0.12;
            Rgba c = shade(HOLE_COLOR, 0.94 + noise);
            if (d < RIM)
                c = mix(shade(HOLE_RIM_COLOR, 0.9 + noise), c, d / RIM);
            canvas.set(left + x, top + y, c);
        }
    }
}

}  // namespace

PixelCanvas paint_terrain(const Terrain& terrain, const SceneryLooks& scenery,
                          const Sprites& sprites) {
    PixelCanvas canvas(std::max(1, terrain.width * TILE_SIZE), std::max(1, terrain.height * TILE_SIZE),
                       GRASS_COLOR);
    for (const TerrainCell& cell : terrain.cells) {
        const int left = cell.cx * TILE_SIZE, top = cell.cy * TILE_SIZE;
        if (is_hole(&cell)) {
            paint_hole(canvas, terrain, cell);
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
