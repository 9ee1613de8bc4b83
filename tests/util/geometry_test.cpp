#include "util/geometry.h"

#include <gtest/gtest.h>

#include <cmath>
#include <compare>
#include <limits>
#include <random>
#include <vector>

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

// Ranges right at the distance and an ulp either side are where skipping the root could turn
// an answer; far ends of the doubles, NaN and negative ranges must fall back to the root.
TEST(Geometry, PointDistanceCompareGivesTheAnswerOfTheRoot) {
    constexpr double inf = std::numeric_limits<double>::infinity();
    constexpr double nan = std::numeric_limits<double>::quiet_NaN();
    std::mt19937 gen(9);
    std::uniform_real_distribution<double> unit(-1.0, 1.0);
    for (double scale : {1e-170, 1e-161, 1e-155, 1e-101, 1e-3, 1.0, 64.0, 3000.0, 1e99, 1e160}) {
        for (int round = 0; round < 4000; ++round) {
            const double x1 = scale * unit(gen);
            const double y1 = scale * unit(gen);
            // Whole pixels now and then, as creatures standing on cell centres have.
            const double x2 = round % 3 == 0 ? std::round(x1 + 300 * unit(gen)) : scale * unit(gen);
            const double y2 = round % 3 == 0 ? std::round(y1 + 300 * unit(gen)) : scale * unit(gen);
            const double d = point_distance(x1, y1, x2, y2);
            const std::vector<double> ranges{d,
                                             std::nextafter(d, inf),
                                             std::nextafter(d, 0.0),
                                             d * (1 + 1e-10),
                                             d * (1 - 1e-10),
                                             d * (1 + 1e-8),
                                             d * (1 - 1e-8),
                                             scale * std::abs(unit(gen)),
                                             0.0,
                                             -d,
                                             inf,
                                             nan};
            for (double r : ranges) {
                EXPECT_EQ(point_distance_compare(x1, y1, x2, y2, r), d <=> r)
                    << "from (" << x1 << ", " << y1 << ") to (" << x2 << ", " << y2 << "), range "
                    << r;
            }
        }
    }
    EXPECT_EQ(point_distance_compare(nan, 0, 0, 0, 10), std::partial_ordering::unordered);
    EXPECT_EQ(point_distance_compare(inf, 0, 0, 0, 10), std::partial_ordering::greater);
    EXPECT_EQ(point_distance_compare(1, 1, 4, 5, 5), std::partial_ordering::equivalent);
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
