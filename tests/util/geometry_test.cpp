#include "util/geometry.h"

#include <gtest/gtest.h>

#include "util/rect.h"

namespace veldra {
namespace {

TEST(Rect, Measures) {
    const Rect rect{64, 128, 128, 192};
    EXPECT_EQ(rect.get_width(), 64);
    EXPECT_EQ(rect.get_height(), 64);
    EXPECT_EQ(rect.get_area(), 4096);
    EXPECT_EQ(rect.get_center_x(), 96);
    EXPECT_EQ(rect.get_center_y(), 160);
}

TEST(Geometry, PointDistance) {
    EXPECT_EQ(point_distance(1, 1, 4, 5), 5.0);
    EXPECT_EQ(point_distance(-2, 0, -2, 0), 0.0);
}

TEST(LineOnRectangle, CrossingAndEndsInside) {
    EXPECT_TRUE(line_on_rectangle(-10, 5, 30, 5, 0, 0, 10, 10));   // straight through
    EXPECT_TRUE(line_on_rectangle(-5, 15, 15, -5, 0, 0, 10, 10));  // diagonal through
    EXPECT_TRUE(line_on_rectangle(5, 5, 50, 50, 0, 0, 10, 10));    // one end inside
    EXPECT_TRUE(line_on_rectangle(2, 2, 3, 3, 0, 0, 10, 10));      // wholly inside
    EXPECT_TRUE(line_on_rectangle(4, 4, 4, 4, 0, 0, 10, 10));      // a point inside
    EXPECT_TRUE(line_on_rectangle(-10, 5, 30, 5, 10, 10, 0, 0));   // corners swapped
}

TEST(LineOnRectangle, EdgesAndCornersCount) {
    EXPECT_TRUE(line_on_rectangle(-5, 0, 20, 0, 0, 0, 10, 10));    // along the top edge
    EXPECT_TRUE(line_on_rectangle(10, -5, 10, 3, 0, 0, 10, 10));   // ends on the right edge
    EXPECT_TRUE(line_on_rectangle(-5, 5, 5, -5, 0, 0, 10, 10));    // through the corner only
    EXPECT_TRUE(line_on_rectangle(-5, 25, 25, -5, 0, 0, 10, 10));  // grazes corner (10, 10)
}

TEST(LineOnRectangle, Misses) {
    EXPECT_FALSE(line_on_rectangle(-5, 26, 26, -5, 0, 0, 10, 10));  // just past the corner
    EXPECT_FALSE(line_on_rectangle(11, -5, 11, 20, 0, 0, 10, 10));  // beside the right edge
    EXPECT_FALSE(line_on_rectangle(-5, -1, 20, -1, 0, 0, 10, 10));  // above the top edge
    EXPECT_FALSE(line_on_rectangle(20, 20, 30, 30, 0, 0, 10, 10));  // same line, past the box
    EXPECT_FALSE(line_on_rectangle(-5, 5, -0.5, 5, 0, 0, 10, 10));  // stops short of the edge
    EXPECT_FALSE(line_on_rectangle(-4, 12, 12, 28, 0, 0, 10, 10));  // inside the box, not the rect
}

}  // namespace
}  // namespace veldra
