#pragma once
// Two-dimensional gradient noise: the quintic fade and four fixed diagonal gradients, no
// octaves. The level generator makes one per level attempt from the level's Rng, so a seed
// reproduces the same noise field. Immutable after construction; get never allocates.

#include <vector>

#include "util/rng.h"

namespace veldra {

class PerlinGeneratorCpu2d {
public:
    // `size` is the period in both axes, in noise units; a power of two, because lattice
    // coordinates are wrapped with the mask size - 1. The permutation is shuffled with `rng`.
    PerlinGeneratorCpu2d(int size, Rng& rng);

    // The noise at (x, y), in [0, 1]; exactly 0.5 at whole-number points. Any real coordinates,
    // negative ones included.
    double get(double x, double y) const;

    int size() const { return size_; }

private:
    int size_;
    std::vector<int> permutation_;  // a shuffle of 0 .. size - 1, then the same again
};

}  // namespace veldra
