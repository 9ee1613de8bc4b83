#include "server/admin_password_file.h"

#include <gtest/gtest.h>

#include <fstream>

#include "support/scratch_directory.h"

namespace veldra {
namespace {

using veldra::testing::ScratchDirectory;

class AdminPasswordFileTest : public ::testing::Test {
protected:
    ScratchDirectory scratch{"admin_password_file"};
    std::string path = (scratch.path() / "admin_password").string();

    AdminPasswordRead read_text(const std::string& text) {
        std::ofstream(path) << text;
        return read_admin_password_file(path);
    }
};

TEST_F(AdminPasswordFileTest, TheFirstLineWithoutSurroundingSpaceIsThePassword) {
    EXPECT_EQ(read_text("  long enough pw \r\nsecond line\n").password, "long enough pw");
    EXPECT_EQ(read_text("12345678").password, "12345678");  // no line end
}

TEST_F(AdminPasswordFileTest, AShortEmptyOrMissingPasswordIsRefusedWithoutShowingIt) {
    for (const std::string text : {"", "\n\nlong enough below\n", "short7!\n", "   1234567   \n"}) {
        const AdminPasswordRead read = read_text(text);
        EXPECT_FALSE(read.password) << text;
        EXPECT_NE(read.error.find("at least 8"), std::string::npos) << read.error;
        EXPECT_EQ(read.error.find("short7"), std::string::npos);
    }
    const AdminPasswordRead missing = read_admin_password_file((scratch.path() / "none").string());
    EXPECT_FALSE(missing.password);
    EXPECT_NE(missing.error.find("none"), std::string::npos);
}

}  // namespace
}  // namespace veldra
