#pragma once
// Random, playable levels: a circular island of open ground cut out of Perlin noise, with rocks
// inside, up to three patches of sand, the player near the centre, then monsters, food and
// humans with a random personality on free cells. Every choice comes from the given Rng, so the
// same generator state and arguments give the same level, cell for cell.

#include <optional>

#include "util/rng.h"
#include "world/level.h"

namespace veldra {

// Up to this many attempts; a failed attempt (open ground in pieces, no room for the player)
// leaves the generator advanced and the next attempt starts afresh.
inline constexpr int LEVEL_GENERATOR_MAX_ATTEMPTS = 999;

// The largest width and height the level-set generator asks for. Every attempt can fail where
// the thin-feature sweeps leave cells flipping back and forth for ever, and such a spot becomes
// likelier with every cell: a 400 x 400 level takes about ten attempts (a second), 800 x 800 some
// seventy (half a minute), and 1000 x 1000 mostly none in all 999.
inline constexpr int MAX_GENERATED_LEVEL_SIDE = 400;

// A level with an empty name, or nothing when every attempt failed (for example 2 x 2, which
// is border only). Counts larger than the room available are cut short: the level then simply
// has fewer sand cells or things.
std::optional<Level> generate_level(const LevelCellTypeTable& types, int width, int height,
                                    int num_monsters, int num_food, int num_humans, int num_sand,
                                    Rng& rng);

}  // namespace veldra
