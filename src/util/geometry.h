#pragma once
// Plane geometry on room pixels and cell coordinates.

#include <cmath>
#include <compare>

namespace veldra {

// sqrt is correctly rounded everywhere, unlike hypot; the level generator compares these
// distances against a radius, so the last bit must not depend on the platform's libm. Defined
// here because creatures ask it millions of times a batch, mostly from one-line callers.
inline double point_distance(double x1, double y1, double x2, double y2) {
    const double dx = x2 - x1;
    const double dy = y2 - y1;
    return std::sqrt(dx * dx + dy * dy);
}

// point_distance(x1, y1, x2, y2) <=> r, the very answer, NaN's unordered included, for callers
// that only compare the distance with a range (in sight, within reach). The square root, most of
// the cost, is taken only when the squared distance lies within a relative 1e-9 of r squared:
// outside that band the rounding of r * r (half an ulp) cannot turn the answer, and sqrt, being
// correctly rounded and monotonic, keeps a strict inequality between the squares strict.
inline std::partial_ordering point_distance_compare(double x1, double y1, double x2, double y2,
                                                    double r) {
    const double dx = x2 - x1;
    const double dy = y2 - y1;
    const double square = dx * dx + dy * dy;
    // Far from the ends of the range of doubles, r * r is a normal number; this also turns NaN
    // and negative ranges away.
    if (r >= 1e-100 && r <= 1e100) {
        const double r_square = r * r;
        if (square < r_square * (1 - 1e-9))
            return std::partial_ordering::less;
        if (square > r_square * (1 + 1e-9))
            return std::partial_ordering::greater;
    }
    return std::sqrt(square) <=> r;
}

// Whether the segment (x1, y1)-(x2, y2) touches the rectangle with corners (rx1, ry1) and
// (rx2, ry2), given in either order. Edges count: a segment that only grazes an edge or a
// corner touches. Exact for whole-number coordinates, which is what terrain queries pass.
bool line_on_rectangle(double x1, double y1, double x2, double y2, double rx1, double ry1,
                       double rx2, double ry2);

}  // namespace veldra
