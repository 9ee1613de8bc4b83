#include "util/geometry.h"

#include <algorithm>
#include <cmath>

namespace veldra {

namespace {

struct Point {
    double x;
    double y;
};

// Twice the signed area of (a, b, c): > 0 when c lies left of a->b, 0 when collinear.
double orientation(Point a, Point b, Point c) {
    return (b.x - a.x) * (c.y - a.y) - (b.y - a.y) * (c.x - a.x);
}

int sign(double value) {
    return (value > 0.0) - (value < 0.0);
}

// For c collinear with a-b: whether c lies within the segment's bounding box.
bool within_box(Point a, Point b, Point c) {
    return std::min(a.x, b.x) <= c.x && c.x <= std::max(a.x, b.x) && std::min(a.y, b.y) <= c.y &&
           c.y <= std::max(a.y, b.y);
}

// Closed segments p1-p2 and q1-q2 share at least one point.
bool segments_touch(Point p1, Point p2, Point q1, Point q2) {
    const int d1 = sign(orientation(q1, q2, p1));
    const int d2 = sign(orientation(q1, q2, p2));
    const int d3 = sign(orientation(p1, p2, q1));
    const int d4 = sign(orientation(p1, p2, q2));
    if (d1 * d2 < 0 && d3 * d4 < 0)
        return true;
    return (d1 == 0 && within_box(q1, q2, p1)) || (d2 == 0 && within_box(q1, q2, p2)) ||
           (d3 == 0 && within_box(p1, p2, q1)) || (d4 == 0 && within_box(p1, p2, q2));
}

}  // namespace

bool line_on_rectangle(double x1, double y1, double x2, double y2, double rx1, double ry1,
                       double rx2, double ry2) {
    const double left = std::min(rx1, rx2);
    const double right = std::max(rx1, rx2);
    const double top = std::min(ry1, ry2);
    const double bottom = std::max(ry1, ry2);
    // Disjoint bounding boxes cannot touch; this settles most cells of a terrain query.
    if (std::max(x1, x2) < left || std::min(x1, x2) > right || std::max(y1, y2) < top ||
        std::min(y1, y2) > bottom) {
        return false;
    }
    const auto inside = [&](double x, double y) {
        return left <= x && x <= right && top <= y && y <= bottom;
    };
    if (inside(x1, y1) || inside(x2, y2))
        return true;
    const Point a{x1, y1};
    const Point b{x2, y2};
    const Point corners[4] = {{left, top}, {right, top}, {right, bottom}, {left, bottom}};
    for (int i = 0; i < 4; ++i) {
        if (segments_touch(a, b, corners[i], corners[(i + 1) % 4]))
            return true;
    }
    return false;
}

}  // namespace veldra
