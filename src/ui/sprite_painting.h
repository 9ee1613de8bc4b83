#pragma once
// The painters behind make_sprites, one per kind of picture. Each returns a fresh canvas, so
// tests can look at the pixels without a renderer.

#include "ui/pixel_canvas.h"

namespace veldra {

PixelCanvas paint_ground_tile(int variant);
PixelCanvas paint_sand_tile();
PixelCanvas paint_rock(int variant);
PixelCanvas paint_foliage();
PixelCanvas paint_human(Rgba body);
PixelCanvas paint_monster();
PixelCanvas paint_food();
PixelCanvas paint_action_icon(std::size_t action_type_index);

// The colours the level's ground is painted in, for the pits and rims painted around them.
inline constexpr Rgba GRASS_COLOR{104, 162, 78};
inline constexpr Rgba SAND_COLOR{226, 200, 150};
inline constexpr Rgba HOLE_COLOR{30, 26, 24};
inline constexpr Rgba HOLE_RIM_COLOR{112, 84, 56};

}  // namespace veldra
