#include "platform/local_time.h"

#include <gtest/gtest.h>

namespace veldra::platform {
namespace {

TEST(LocalTimeNow, IsACalendarDate) {
    // struct tm counts years from 1900 and months from 0; a date passed on unconverted fails.
    const LocalDateTime now = local_time_now();
    EXPECT_GE(now.year, 2024);
    EXPECT_GE(now.month, 1);
    EXPECT_LE(now.month, 12);
    EXPECT_GE(now.day, 1);
    EXPECT_LE(now.day, 31);
}

}  // namespace
}  // namespace veldra::platform
