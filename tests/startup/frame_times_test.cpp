#include "startup/frame_times.h"

#include <gtest/gtest.h>

#include <string>

namespace veldra {
namespace {

TEST(FrameTimesTest, PercentilesAreNearestRank) {
    EXPECT_EQ(percentile({}, 0.5), 0);
    EXPECT_EQ(percentile({7}, 0.99), 7);
    std::vector<double> hundred;
    for (int i = 100; i >= 1; --i)
        hundred.push_back(i);  // unsorted on purpose
    EXPECT_EQ(percentile(hundred, 0.5), 50);
    EXPECT_EQ(percentile(hundred, 0.99), 99);
    EXPECT_EQ(percentile(hundred, 1), 100);
    EXPECT_EQ(percentile(hundred, 0), 1);
    EXPECT_EQ(percentile({1, 2, 3}, 0.5), 2);
}

TEST(FrameTimesTest, StartUpEndsWithTheFirstFrameThatShowsSomething) {
    FrameTimes times(FrameTimes::Clock::now());
    for (bool drawn : {false, false, true, true, true}) {
        times.frame_started();
        times.frame_finished(drawn);
    }
    EXPECT_EQ(times.frame_ms().size(), 5u);
    EXPECT_GE(times.first_frame_ms(), times.frame_ms()[0]);
    // The steady frames are the two after the first drawn one.
    EXPECT_EQ(times.summary().rfind("2 frames:", 0), 0u) << times.summary();
}

}  // namespace
}  // namespace veldra
