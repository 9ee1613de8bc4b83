#pragma once
// An axis-aligned rectangle in room pixels, from the left-top corner (x1, y1) to the
// right-bottom corner (x2, y2).

namespace veldra {

struct Rect {
    double x1 = 0.0;
    double y1 = 0.0;
    double x2 = 0.0;
    double y2 = 0.0;

    double get_width() const { return x2 - x1; }
    double get_height() const { return y2 - y1; }
    double get_area() const { return get_width() * get_height(); }
    double get_center_x() const { return (x1 + x2) * 0.5; }
    double get_center_y() const { return (y1 + y2) * 0.5; }
};

}  // namespace veldra
