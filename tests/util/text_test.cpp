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

}  // namespace
}  // namespace veldra
