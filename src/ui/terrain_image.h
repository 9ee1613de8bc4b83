#pragma once
// The level's ground painted once into one picture of the level's size (64 pixels a cell):
// grass, sand, pits, boulders and leaves. Drawing it is one texture a frame, where drawing cell
// by cell would be hundreds, too slow for the software renderer on a large level.

#include "runtime/renderer.h"
#include "ui/pixel_canvas.h"
#include "ui/scenery_looks.h"
#include "ui/sprites.h"
#include "world/terrain.h"

namespace veldra {

PixelCanvas paint_terrain(const Terrain& terrain, const SceneryLooks& scenery,
                          const Sprites& sprites);

}  // namespace veldra
