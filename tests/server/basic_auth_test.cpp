#include "server/basic_auth.h"

#include <gtest/gtest.h>

namespace veldra {
namespace {

TEST(BasicAuthTest, Base64DecodesTheStandardVectorsAndRefusesAnythingElse) {
    // RFC 4648, section 10.
    EXPECT_EQ(base64_decode(""), "");
    EXPECT_EQ(base64_decode("Zg=="), "f");
    EXPECT_EQ(base64_decode("Zm8="), "fo");
    EXPECT_EQ(base64_decode("Zm9v"), "foo");
    EXPECT_EQ(base64_decode("Zm9vYmFy"), "foobar");
    EXPECT_EQ(base64_decode("+/+/"), std::string("\xfb\xff\xbf", 3));
    EXPECT_EQ(base64_decode("Zm9"), std::nullopt);   // not a multiple of four
    EXPECT_EQ(base64_decode("Zm-v"), std::nullopt);  // the URL alphabet is not this one
    EXPECT_EQ(base64_decode("Z=9v"), std::nullopt);  // padding only at the end
    EXPECT_EQ(base64_decode("Z==="), std::nullopt);  // at most two padding characters
}

TEST(BasicAuthTest, ConstantTimeEqualsComparesWholeTexts) {
    EXPECT_TRUE(constant_time_equals("secret", "secret"));
    EXPECT_TRUE(constant_time_equals("", ""));
    EXPECT_FALSE(constant_time_equals("secreT", "secret"));
    EXPECT_FALSE(constant_time_equals("secret", "secret2"));
    EXPECT_FALSE(constant_time_equals("secret2", "secret"));
    EXPECT_FALSE(constant_time_equals("", "secret"));
    EXPECT_FALSE(constant_time_equals(std::string("secret\0", 7), "secret"));
}

TEST(BasicAuthTest, OnlyTheExactUserAndPasswordMatch) {
    const BasicCredentials credentials{.username = "lab", .password = "pa:ss"};
    EXPECT_TRUE(basic_auth_matches("Basic bGFiOnBhOnNz", credentials));  // lab:pa:ss
    EXPECT_TRUE(basic_auth_matches("BASIC  bGFiOnBhOnNz", credentials));
    EXPECT_FALSE(basic_auth_matches("Basic bGFiOnBhOg==", credentials));  // lab:pa:
    EXPECT_FALSE(basic_auth_matches("Basic TGFiOnBhOnNz", credentials));  // Lab:pa:ss
    EXPECT_FALSE(basic_auth_matches("bGFiOnBhOnNz", credentials));
    EXPECT_FALSE(basic_auth_matches("", credentials));
}

}  // namespace
}  // namespace veldra
