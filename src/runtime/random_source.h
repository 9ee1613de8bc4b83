#pragma once
// The engine's global random source. The game uses it only to make seeds (`randomize` at
// start-up); every random choice of a trial comes from that trial's own Rng.

#include <cstdint>

namespace veldra {

// Seeds the global source from the clock.
void randomize();

// A whole number in 0 .. 2^32, both ends included, from the global source.
double random_seed_value();

}  // namespace veldra
