#include "platform/os_name.h"

#include <gtest/gtest.h>

namespace veldra::platform {
namespace {

TEST(OsReleasePrettyName, TakesTheFirstNonEmptyPrettyNameWithoutQuotes) {
    EXPECT_EQ(os_release_pretty_name("NAME=\"Debian GNU/Linux\"\n"
                                     "PRETTY_NAME=\"Debian GNU/Linux 12 (bookworm)\"\n"
                                     "VERSION_ID=\"12\"\n"),
              "Debian GNU/Linux 12 (bookworm)");
    EXPECT_EQ(os_release_pretty_name("PRETTY_NAME='Alpine Linux v3.19'\r\n"), "Alpine Linux v3.19");
    EXPECT_EQ(os_release_pretty_name("PRETTY_NAME=Gentoo\n"), "Gentoo");
    EXPECT_EQ(os_release_pretty_name("PRETTY_NAME=\"\"\nPRETTY_NAME=\"Second\"\n"), "Second");
}

TEST(OsReleasePrettyName, NoneWithoutAPrettyName) {
    EXPECT_EQ(os_release_pretty_name(""), std::nullopt);
    EXPECT_EQ(os_release_pretty_name("NAME=\"Debian GNU/Linux\"\nID=debian\n"), std::nullopt);
    EXPECT_EQ(os_release_pretty_name("# PRETTY_NAME=\"Commented\"\n"), std::nullopt);
    EXPECT_EQ(os_release_pretty_name("PRETTY_NAME=\n"), std::nullopt);
}

}  // namespace
}  // namespace veldra::platform
