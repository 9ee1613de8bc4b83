#include "world/perlin.h"
#include "runtime/assertion.h"

#include <cmath>

namespace veldra {

namespace detail {

std::vector<int> make_perlin_permutation(int size, Rng& rng) {
    std::vector<int> permutation(size);
    for (int i = 0; i < size; ++i)
        permutation[i] = i;
    rng.rng_array_shuffle(permutation);
    // Doubled, so that P[P[X + 1] + Y + 1] never needs a second wrap.
    permutation.resize(2 * static_cast<std::size_t>(size));
    for (int i = 0; i < size; ++i)
        permutation[size + i] = permutation[i];
    return permutation;
}

// Hash v picks one of the diagonals (1, 1), (-1, 1), (-1, -1), (1, -1).
double get_constant_vector_x(int v) {
    const int h = v & 3;
    return (h == 0 || h == 3) ? 1.0 : -1.0;
}

double get_constant_vector_y(int v) {
    const int h = v & 3;
    return h < 2 ? 1.0 : -1.0;
}

// 6t^5 - 15t^4 + 10t^3: flat at both ends, so lattice cells join without creases.
double fade(double t) {
    return t * t * t * (t * (6.0 * t - 15.0) + 10.0);
}

double corner_dot(int hash, double dx, double dy) {
    return get_constant_vector_x(hash) * dx + get_constant_vector_y(hash) * dy;
}

}  // namespace detail

PerlinGeneratorCpu2d::PerlinGeneratorCpu2d(int size, Rng& rng)
    : size_(size), permutation_(detail::make_perlin_permutation(size, rng)) {
    VELDRA_ASSERT(size > 0 && (size & (size - 1)) == 0, "Perlin size must be a power of two");
}

double PerlinGeneratorCpu2d::get(double x, double y) const {
    const double fx = std::floor(x);
    const double fy = std::floor(y);
    const int mask = size_ - 1;
    // Wrap through a 64-bit integer so that large negative coordinates mask correctly.
    const int X = static_cast<int>(static_cast<long long>(fx) & mask);
    const int Y = static_cast<int>(static_cast<long long>(fy) & mask);
    const double xf = x - fx;
    const double yf = y - fy;

    const std::vector<int>& P = permutation_;
    const double top_right = detail::corner_dot(P[P[X + 1] + Y + 1], xf - 1.0, yf - 1.0);
    const double top_left = detail::corner_dot(P[P[X] + Y + 1], xf, yf - 1.0);
    const double bottom_right = detail::corner_dot(P[P[X + 1] + Y], xf - 1.0, yf);
    const double bottom_left = detail::corner_dot(P[P[X] + Y], xf, yf);

    const double u = detail::fade(xf);
    const double w = detail::fade(yf);
    const double left = bottom_left + w * (top_left - bottom_left);
    const double right = bottom_right + w * (top_right - bottom_right);
    const double n = left + u * (right - left);
    return (n + 1.0) * 0.5;
}

}  // namespace veldra
