#include "platform/screenshot_name.h"

#include <gtest/gtest.h>

#include <regex>

namespace veldra::platform {
namespace {

TEST(ScreenshotName, IsZeroPaddedDateTimeAndMilliseconds) {
    EXPECT_EQ(screenshot_file_name({2024, 3, 7, 9, 5, 1}, 7), "veldra-20240307-090501-007.png");
    EXPECT_EQ(screenshot_file_name({1999, 12, 31, 23, 59, 59}, 999),
              "veldra-19991231-235959-999.png");
    EXPECT_TRUE(std::regex_match(screenshot_file_name_now(),
                                 std::regex(R"(veldra-\d{8}-\d{6}-\d{3}\.png)")));
}

}  // namespace
}  // namespace veldra::platform
