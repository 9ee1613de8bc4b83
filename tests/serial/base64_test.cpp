#include "serial/base64.h"

#include <gtest/gtest.h>

namespace veldra {
namespace {

// The test vectors of RFC 4648, section 10: every padding length.
TEST(Base64Test, EncodesTheStandardVectorsWithPadding) {
    EXPECT_EQ(base64_encode(""), "");
    EXPECT_EQ(base64_encode("f"), "Zg==");
    EXPECT_EQ(base64_encode("fo"), "Zm8=");
    EXPECT_EQ(base64_encode("foo"), "Zm9v");
    EXPECT_EQ(base64_encode("foob"), "Zm9vYg==");
    EXPECT_EQ(base64_encode("fooba"), "Zm9vYmE=");
    EXPECT_EQ(base64_encode("foobar"), "Zm9vYmFy");
}

TEST(Base64Test, EncodesBytesAboveSevenBitsAndTheLastLettersOfTheAlphabet) {
    EXPECT_EQ(base64_encode(std::string("\xff\xfe\xfd", 3)), "//79");
    EXPECT_EQ(base64_encode(std::string("\0\0\0", 3)), "AAAA");
    EXPECT_EQ(base64_encode("game:s3cr\xc3\xa9t"), "Z2FtZTpzM2Nyw6l0");
}

}  // namespace
}  // namespace veldra
