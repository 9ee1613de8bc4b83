#include <gtest/gtest.h>

#include <string>

#include "expression/expression.h"
#include "expression_test_util.h"

namespace veldra::test {
namespace {

void expect_error(std::string_view source, std::size_t column, std::string_view message) {
    const ExpressionError error = compile_error(source);
    EXPECT_EQ(error.column, column) << "source: " << source;
    EXPECT_EQ(error.message, message) << "source: " << source;
}

TEST(ExpressionErrors, EmptyAndIncompleteInput) {
    expect_error("", 1, "empty expression");
    expect_error(" \t\n", 1, "empty expression");
    expect_error("1 +", 4, "unexpected end of expression");
    expect_error("-", 2, "unexpected end of expression");
    expect_error("(1 + 2", 7, "expected ')'");
    expect_error("C ? 1", 6, "expected ':'");
    expect_error("C ? 1 2", 7, "expected ':'");
}

TEST(ExpressionErrors, TrailingTokensPointAtTheFirstExtraToken) {
    expect_error("1 2", 3, "unexpected '2'");
    expect_error("C)", 2, "unexpected ')'");
    expect_error("C (1)", 3, "unexpected '('");
    expect_error("clamp(C, 0, 1) E", 16, "unexpected 'E'");
    expect_error("1 * / 2", 5, "unexpected '/'");
}

TEST(ExpressionErrors, BadCharactersNamesAndNumbers) {
    expect_error("1 $ 2", 3, "unexpected character '$'");
    expect_error("C = 1", 3, "unexpected character '='");
    expect_error("C & E", 3, "unexpected character '&'");
    expect_error("2 * \xC3\xA9", 5, "unexpected character '\xC3\xA9'");
    expect_error("1 + foo", 5, "unknown name \"foo\"");
    expect_error("energy_level", 1,
                 "unknown name \"energy_level\"; did you mean \"ENERGY_LEVEL\"?");
    expect_error("PI", 1, "unknown name \"PI\"; did you mean \"pi\"?");
    expect_error("1e999", 1, "number out of range");
}

// Every function refuses one argument too few and (unless it takes any number) one too many,
// and accepts the right count.
TEST(ExpressionErrors, FunctionArgumentCounts) {
    struct Function {
        std::string name;
        int arguments;
        bool at_least;
    };
    const Function functions[] = {{"min", 2, true},   {"max", 2, true},    {"clamp", 3, false},
                                  {"abs", 1, false},  {"sqrt", 1, false},  {"exp", 1, false},
                                  {"log", 1, false},  {"pow", 2, false},   {"floor", 1, false},
                                  {"ceil", 1, false}, {"round", 1, false}, {"sign", 1, false},
                                  {"lerp", 3, false}};
    auto call = [](const std::string& name, int count) {
        std::string source = "2 * " + name + "(";
        for (int i = 0; i < count; ++i) {
            source += i == 0 ? "C" : ", C";
        }
        return source + ")";
    };
    for (const Function& f : functions) {
        const std::string message = "function \"" + f.name + "\" takes " +
                                    (f.at_least ? "at least " : "") + std::to_string(f.arguments) +
                                    (f.arguments == 1 ? " argument" : " arguments");
        expect_error(call(f.name, f.arguments - 1), 5, message);
        if (!f.at_least) {
            expect_error(call(f.name, f.arguments + 1), 5, message);
        }
        EXPECT_EQ(compile_error(call(f.name, f.arguments + (f.at_least ? 3 : 0))).column, 0u)
            << f.name;
    }
}

TEST(ExpressionErrors, FunctionCallSyntax) {
    expect_error("sqrt 2", 6, "expected '(' after \"sqrt\"");
    expect_error("max", 4, "expected '(' after \"max\"");
    expect_error("min(1 2)", 7, "expected ',' or ')'");
    expect_error("min(1,)", 7, "unexpected ')'");
    expect_error("min(1, 2", 9, "expected ',' or ')'");
}

TEST(ExpressionErrors, NestingIsCappedWithoutExhaustingTheStack) {
    const int huge = 100000;
    EXPECT_EQ(compile_error(std::string(huge, '(') + "1" + std::string(huge, ')')).message,
              "expression nested too deeply");
    EXPECT_EQ(compile_error(std::string(huge, '-') + "1").message, "expression nested too deeply");
    std::string calls, powers;
    for (int i = 0; i < huge; ++i) {
        calls += "abs(";
        powers += "C^";
    }
    EXPECT_EQ(compile_error(calls).message, "expression nested too deeply");
    EXPECT_EQ(compile_error(powers + "1").message, "expression nested too deeply");

    // Ordinary deep formulas still work.
    std::string deep = "C";
    for (int i = 0; i < 200; ++i) {
        deep = "(1 + " + deep + ")";
    }
    EXPECT_EQ(eval(deep, vars_with({{ExprVar::C, 0.5}})), 200.5);
}

TEST(ExpressionErrors, RightLeaningFormulasUseTheOperandStack) {
    // Each level leaves min(C, E) waiting while its right operand is computed:
    // g(n) = 1 - g(n - 1).
    std::string right;
    for (int i = 0; i < 150; ++i) {
        right += "min(C, E) - (";
    }
    right += "C" + std::string(150, ')');
    const Vars ones = vars_with({{ExprVar::C, 1}, {ExprVar::E, 1}});
    EXPECT_EQ(eval(right, ones), 1);
    EXPECT_EQ(eval("min(C, E) - (" + right + ")", ones), 0);
    // Two waiting values per level: past the operand stack, refused rather than overrun.
    std::string wide;
    for (int i = 0; i < 200; ++i) {
        wide += "min(C, E) - min(C, E)*(";
    }
    wide += "C" + std::string(200, ')');
    EXPECT_EQ(compile_error(wide).message, "expression nested too deeply");
}

TEST(ExpressionErrors, LongFlatFormulasAreNotNesting) {
    std::string sum = "C";
    std::string args = "min(C";
    for (int i = 0; i < 100000; ++i) {
        sum += " + C*E";
        args += ", C";
    }
    const Vars vars = vars_with({{ExprVar::C, 1}, {ExprVar::E, 1}});
    EXPECT_EQ(eval(sum, vars), 100001);
    EXPECT_EQ(eval(args + ")", vars), 1);
}

}  // namespace
}  // namespace veldra::test
