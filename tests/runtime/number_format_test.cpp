#include "runtime/number_format.h"

#include <gtest/gtest.h>

#include <clocale>
#include <cmath>
#include <limits>

#include "runtime/gc.h"

namespace veldra {
namespace {

TEST(NumberToString, WholeAndFractionalNumbers) {
    const std::pair<double, const char*> cases[] = {
        {0, "0"},
        {-1, "-1"},
        {0.5, "0.5"},
        {0.1, "0.1"},
        {12.345, "12.35"},  // half away from zero on the written digits
        {-12.345, "-12.35"},
        {1.005, "1.01"},
        {2.675, "2.68"},
        {0.125, "0.13"},
        {3.14159, "3.14"},
        {1.999, "2"},
        {-99.995, "-100"},
        {9.9949, "9.99"},
        {4294967296.0, "4294967296"},
        {1e21, "1000000000000000000000"},
        {-0.001, "0"},
        {-0.0, "0"},
        {0.004, "0"},
        {0.005, "0.01"},
        {5e-324, "0"},
    };
    for (const auto& [number, text] : cases)
        EXPECT_EQ(number_to_string(number), text) << number;
}

TEST(NumberToString, NonFiniteNumbers) {
    EXPECT_EQ(number_to_string(std::nan("")), "nan");
    EXPECT_EQ(number_to_string(std::numeric_limits<double>::infinity()), "inf");
    EXPECT_EQ(number_to_string(-std::numeric_limits<double>::infinity()), "-inf");
    EXPECT_EQ(number_to_string(std::numeric_limits<double>::max()).size(), 309u);
}

TEST(NumberToString, IgnoresTheCLocale) {
    const char* previous = std::setlocale(LC_NUMERIC, nullptr);
    const std::string saved = previous ? previous : "C";
    if (!std::setlocale(LC_NUMERIC, "de_DE.UTF-8") && !std::setlocale(LC_NUMERIC, "fr_FR.UTF-8"))
        GTEST_SKIP() << "no locale with a decimal comma installed";
    const std::string text = number_to_string(0.5);
    std::setlocale(LC_NUMERIC, saved.c_str());
    EXPECT_EQ(text, "0.5");
}

class ValueToStringTest : public ::testing::Test {
protected:
    GcScope collector;
};

TEST_F(ValueToStringTest, Scalars) {
    EXPECT_EQ(to_string(Value(2.5)), "2.5");
    EXPECT_EQ(to_string(Value(true)), "true");
    EXPECT_EQ(to_string(Value(false)), "false");
    EXPECT_EQ(to_string(Value()), "undefined");
    EXPECT_EQ(to_string(Value::unset()), "undefined");
    EXPECT_EQ(to_string(Value("as \"is\"")), "as \"is\"");
    EXPECT_EQ(to_string(Value::instance(NO_INSTANCE)), "-4");
}

TEST_F(ValueToStringTest, ContainersQuoteTheirStrings) {
    Value s = Value::make_struct();
    s.set("name", "A \"b\"\n");
    s.set("list", Value::array({1, 0.25, "x", Value::array()}));
    s.set("empty", Value::make_struct());
    EXPECT_EQ(to_string(s),
              "{ name : \"A \\\"b\\\"\\n\", list : [ 1,0.25,\"x\",[ ] ], empty : { } }");
}

TEST_F(ValueToStringTest, CyclesAreCut) {
    Value s = Value::make_struct();
    s.set("me", s);
    s.set("n", 1);
    EXPECT_EQ(to_string(s), "{ me : <cycle>, n : 1 }");
    s.remove("me");
}

}  // namespace
}  // namespace veldra
