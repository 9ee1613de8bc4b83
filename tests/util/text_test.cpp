#include "util/text.h"

#include <gtest/gtest.h>

namespace veldra {
namespace {

TEST(TryStringToReal, RefusesWhatNoSettingMeans) {
    EXPECT_EQ(try_string_to_real(" +2.5 "), 2.5);
    for (const char* text : {"nan", "-nan", "inf", "-inf", "infinity", "1e999", "", "1,5", "0x10"})
        EXPECT_FALSE(try_string_to_real(text)) << text;
}

TEST(TryStringToWholeNumber, TakesDigitsWithinTheRangeOnly) {
    EXPECT_EQ(try_string_to_whole_number(" 42 ", 1, 100), 42u);
    EXPECT_EQ(try_string_to_whole_number("18446744073709551615", 0, UINT64_MAX), UINT64_MAX);
    for (const char* text : {"0", "101", "-1", "+5", "1e2", "2.0", "inf", "nan", "",
                             "18446744073709551616", "99999999999999999999999"})
        EXPECT_FALSE(try_string_to_whole_number(text, 1, 100)) << text;
}

// A number too large is not "not a whole number": the message says what the limit is.
TEST(WholeNumberProblem, TellsTooLargeFromNotANumber) {
    EXPECT_EQ(whole_number_problem(" 42 ", 1, 100), "");
    EXPECT_EQ(whole_number_problem("101", 1, 100), "is too large: at most 100");
    EXPECT_EQ(whole_number_problem("99999999999999999999999", 1, 100), "is too large: at most 100");
    EXPECT_EQ(whole_number_problem("0", 1, 100), "is too small: at least 1");
    for (const char* text : {"-1", "+5", "1e2", "2.0", "nan", "", "12abc"})
        EXPECT_EQ(whole_number_problem(text, 1, 100), "is not a whole number") << text;
}

TEST(StringWithoutUtf8Bom, DropsTheMarkAtTheStartOnly) {
    EXPECT_EQ(string_without_utf8_bom("\xEF\xBB\xBFwait x"), "wait x");
    EXPECT_EQ(string_without_utf8_bom("wait \xEF\xBB\xBF"), "wait \xEF\xBB\xBF");
    EXPECT_EQ(string_without_utf8_bom("\xEF\xBB"), "\xEF\xBB");
}

}  // namespace
}  // namespace veldra
