#pragma once
// Plane geometry on room pixels and cell coordinates.

namespace veldra {

double point_distance(double x1, double y1, double x2, double y2);

// Whether the segment (x1, y1)-(x2, y2) touches the rectangle with corners (rx1, ry1) and
// (rx2, ry2), given in either order. Edges count: a segment that only grazes an edge or a
// corner touches. Exact for whole-number coordinates, which is what terrain queries pass.
bool line_on_rectangle(double x1, double y1, double x2, double y2, double rx1, double ry1,
                       double rx2, double ry2);

}  // namespace veldra
