#include "expression/expression.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <numbers>
#include <string>

#include "expression_test_util.h"

namespace veldra::test {
namespace {

using enum ExprVar;

TEST(ExpressionLanguage, PrecedenceAndAssociativity) {
    EXPECT_EQ(eval("1 + 2 * 3"), 7);
    EXPECT_EQ(eval("(1 + 2) * 3"), 9);
    EXPECT_EQ(eval("10 - 4 - 3"), 3);
    EXPECT_EQ(eval("100 / 10 / 5"), 2);
    EXPECT_EQ(eval("2 * 3 % 4"), 2);
    EXPECT_EQ(eval("2 + 7 % 4"), 5);
    // ^ binds tighter than unary minus on its left, takes a unary operand on its right, and
    // groups to the right.
    EXPECT_EQ(eval("-2^2"), -4);
    EXPECT_EQ(eval("(-2)^2"), 4);
    EXPECT_EQ(eval("2^-1"), 0.5);
    EXPECT_EQ(eval("2^3^2"), 512);
    EXPECT_EQ(eval("-2^-2"), -0.25);
    EXPECT_EQ(eval("2 * 3^2"), 18);
    EXPECT_EQ(eval("--2"), 2);
    EXPECT_EQ(eval("+-+2"), -2);
}

TEST(ExpressionLanguage, ComparisonsAndLogic) {
    EXPECT_EQ(eval("3 >= 3"), 1);
    EXPECT_EQ(eval("3 > 3"), 0);
    EXPECT_EQ(eval("2 <= 1"), 0);
    EXPECT_EQ(eval("2 != 2"), 0);
    EXPECT_EQ(eval("1 + 1 < 3"), 1);    // arithmetic before comparison
    EXPECT_EQ(eval("1 < 2 == 1"), 1);   // ordering before equality
    EXPECT_EQ(eval("1 || 1 && 0"), 1);  // && before ||
    EXPECT_EQ(eval("0 || 2 < 1"), 0);
    EXPECT_EQ(eval("2 && -3"), 1);  // results are 1 or 0 whatever the operands
    EXPECT_EQ(eval("!0 + 1"), 2);   // ! is unary: binds tighter than +
    EXPECT_EQ(eval("!(0 + 1)"), 0);
    EXPECT_EQ(eval("!2 == 0"), 1);
    EXPECT_EQ(eval("0/0 && 1"), 1);  // NaN counts as true
    EXPECT_EQ(eval("0/0 == 0/0"), 0);
    EXPECT_EQ(eval("0/0 != 0/0"), 1);
}

TEST(ExpressionLanguage, TernaryIsLowestAndGroupsRight) {
    EXPECT_EQ(eval("0 ? 1 : 0 ? 2 : 3"), 3);
    EXPECT_EQ(eval("1 ? 0 ? 4 : 5 : 6"), 5);
    EXPECT_EQ(eval("1 ? 2 : 3 + 10"), 2);
    EXPECT_EQ(eval("0 ? 2 : 3 + 10"), 13);
    EXPECT_EQ(eval("1 - 1 ? 5 : 6"), 6);
    EXPECT_EQ(eval("0 || 0 ? 5 : 6"), 6);
    const char* bands = "C < 0.3 ? 1 : C < 0.6 ? 2 : 3";
    EXPECT_EQ(eval(bands, vars_with({{C, 0.1}})), 1);
    EXPECT_EQ(eval(bands, vars_with({{C, 0.5}})), 2);
    EXPECT_EQ(eval(bands, vars_with({{C, 0.9}})), 3);
    EXPECT_EQ(eval("C ? E : A", vars_with({{C, 0.0}, {E, 4}, {A, 5}})), 5);
    EXPECT_EQ(eval("C ? E : A", vars_with({{C, 0.0 / 0.0}, {E, 4}, {A, 5}})), 4);
}

TEST(ExpressionLanguage, NumbersAndWhitespace) {
    EXPECT_EQ(eval("123"), 123);
    EXPECT_EQ(eval(".5"), 0.5);
    EXPECT_EQ(eval("1."), 1);
    EXPECT_EQ(eval("1e-3"), 0.001);
    EXPECT_EQ(eval("1.5E2"), 150);
    EXPECT_EQ(eval("2e+1"), 20);
    EXPECT_EQ(eval(" \t1\n+\r2 "), 3);
    EXPECT_EQ(eval("0.1"), 0.1);  // read exactly as the nearest double
}

TEST(ExpressionLanguage, VariablesAreReadFromTheArrayInExprVarOrder) {
    const char* names[EXPR_VAR_COUNT] = {"O",      "C",    "E",       "A", "N", "ENERGY_LEVEL",
                                         "WEIGHT", "TIME", "DISTANCE"};
    for (int i = 0; i < EXPR_VAR_COUNT; ++i) {
        SCOPED_TRACE(names[i]);
        const CompiledExpression expression = compile_ok(std::string(names[i]) + " * 2");
        Vars first{}, second{};
        first[i] = 1.5;
        second[i] = -4;
        EXPECT_EQ(expression.evaluate(first.data()), 3);
        EXPECT_EQ(expression.evaluate(second.data()), -8);
    }
    // Lower-case e is the constant, upper-case E the variable.
    EXPECT_EQ(eval("e", vars_with({{E, 7}})), std::numbers::e);
    EXPECT_EQ(eval("E", vars_with({{E, 7}})), 7);
    EXPECT_EQ(eval("pi"), std::numbers::pi);
}

TEST(ExpressionLanguage, Functions) {
    EXPECT_EQ(eval("min(3, 1, 2)"), 1);
    EXPECT_EQ(eval("max(1, 5, 2, 4)"), 5);
    EXPECT_EQ(eval("clamp(7, 0, 5)"), 5);
    EXPECT_EQ(eval("clamp(-1, 0, 5)"), 0);
    EXPECT_EQ(eval("clamp(C, 0, 1)", vars_with({{C, 0.25}})), 0.25);
    EXPECT_EQ(eval("abs(-2)"), 2);
    EXPECT_EQ(eval("sqrt(9)"), 3);
    EXPECT_EQ(eval("exp(0)"), 1);
    EXPECT_EQ(eval("log(e)"), 1);
    EXPECT_EQ(eval("pow(2, 10)"), 1024);
    EXPECT_EQ(eval("floor(-1.5)"), -2);
    EXPECT_EQ(eval("ceil(-1.5)"), -1);
    EXPECT_EQ(eval("round(2.5)"), 3);
    EXPECT_EQ(eval("round(-2.5)"), -3);
    EXPECT_EQ(eval("round(0.49)"), 0);
    EXPECT_EQ(eval("sign(-3)"), -1);
    EXPECT_EQ(eval("sign(0)"), 0);
    EXPECT_EQ(eval("sign(2)"), 1);
    EXPECT_EQ(eval("lerp(2, 4, 0.25)"), 2.5);
    EXPECT_EQ(eval("5.5 % 2"), 1.5);
    EXPECT_EQ(eval("-5 % 3"), -2);  // the result takes the sign of the dividend
    EXPECT_EQ(eval("max(min(C, 1), 0)", vars_with({{C, 3}})), 1);
}

TEST(ExpressionLanguage, IeeeResultsInsteadOfFailures) {
    constexpr double inf = std::numeric_limits<double>::infinity();
    EXPECT_EQ(eval("1/0"), inf);
    EXPECT_EQ(eval("-1/C"), -inf);
    EXPECT_EQ(eval("log(0)"), -inf);
    EXPECT_TRUE(std::isnan(eval("0/0")));
    EXPECT_TRUE(std::isnan(eval("sqrt(-1)")));
    EXPECT_TRUE(std::isnan(eval("5 % C")));
    EXPECT_TRUE(std::isnan(eval("log(-C)", vars_with({{C, 1}}))));
    EXPECT_TRUE(std::isnan(eval("sign(C)", vars_with({{C, std::nan("")}}))));
    // NaN is never swallowed by min, max or clamp, whichever side it is on.
    EXPECT_TRUE(std::isnan(eval("min(0/0, 1)")));
    EXPECT_TRUE(std::isnan(eval("max(1, C)", vars_with({{C, std::nan("")}}))));
    EXPECT_TRUE(std::isnan(eval("clamp(C, 0, 1)", vars_with({{C, std::nan("")}}))));
}

TEST(ExpressionLanguage, ConstantPartsFoldAway) {
    EXPECT_EQ(compile_ok("1 + 2*3 - sqrt(16) + max(1, 2, 3)").instruction_count(), 2u);
    EXPECT_EQ(compile_ok("1 ? C : E").instruction_count(), 2u);
    // Folding never reassociates: (C + 1) + 2 is not C + 3 in floating point.
    const Vars big = vars_with({{C, 1e16}});
    EXPECT_EQ(eval("C + 1 + 2", big), (1e16 + 1) + 2);
    EXPECT_EQ(eval("C + (1 + 2)", big), 1e16 + 3);
}

TEST(CompiledExpression, DefaultIsNaNAndCopiesShareTheProgram) {
    const Vars vars = vars_with({{C, 2}});
    CompiledExpression empty;
    EXPECT_TRUE(std::isnan(empty.evaluate(vars.data())));
    EXPECT_EQ(empty.source(), "");

    CompiledExpression copy;
    {
        const CompiledExpression original = compile_ok("C * 10");
        copy = original;
    }
    EXPECT_EQ(copy.evaluate(vars.data()), 20);
    EXPECT_EQ(copy.source(), "C * 10");

    CompiledExpression moved = std::move(copy);
    EXPECT_EQ(moved.evaluate(vars.data()), 20);
    EXPECT_TRUE(std::isnan(copy.evaluate(vars.data())));  // NOLINT: moved-from is defined
    EXPECT_EQ(copy.source(), "");
}

}  // namespace
}  // namespace veldra::test
