#include "platform/executable_path.h"

#include <gtest/gtest.h>

namespace veldra::platform {
namespace {

TEST(ExecutablePath, NamesThisTestProgram) {
    const auto path = executable_path();
    ASSERT_TRUE(path);
    EXPECT_TRUE(path->is_absolute());
    EXPECT_EQ(path->stem(), "test_platform");  // Windows adds ".exe"
}

}  // namespace
}  // namespace veldra::platform
