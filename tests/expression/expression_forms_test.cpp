// Every operation in every operand form the code generator picks must compute what the
// operation computes (ops.h); a handler table out of step with the opcode numbering fails here.

#include <gtest/gtest.h>

#include <cmath>
#include <cstring>
#include <string>
#include <vector>

#include "expression/compiled_program.h"
#include "expression/ops.h"
#include "expression_test_util.h"

namespace veldra::test {
namespace {

using detail::Op;
using enum ExprVar;

struct Syntax {
    Op op;
    const char* pattern;  // X, Y, Z stand for the operands
};

const Syntax UNARY[] = {
    {Op::Neg, "-X"},         {Op::Not, "!X"},       {Op::Abs, "abs(X)"},     {Op::Sqrt, "sqrt(X)"},
    {Op::Exp, "exp(X)"},     {Op::Log, "log(X)"},   {Op::Floor, "floor(X)"}, {Op::Ceil, "ceil(X)"},
    {Op::Round, "round(X)"}, {Op::Sign, "sign(X)"}, {Op::Square, "X^2"},
};
const Syntax BINARY[] = {
    {Op::Add, "X + Y"},  {Op::Sub, "X - Y"}, {Op::Mul, "X * Y"},     {Op::Div, "X / Y"},
    {Op::Mod, "X % Y"},  {Op::Pow, "X ^ Y"}, {Op::Lt, "X < Y"},      {Op::Le, "X <= Y"},
    {Op::Gt, "X > Y"},   {Op::Ge, "X >= Y"}, {Op::Eq, "X == Y"},     {Op::Ne, "X != Y"},
    {Op::And, "X && Y"}, {Op::Or, "X || Y"}, {Op::Min, "min(X, Y)"}, {Op::Max, "max(X, Y)"},
};
const Syntax TERNARY[] = {
    {Op::Select, "X ? Y : Z"}, {Op::Clamp, "clamp(X, Y, Z)"}, {Op::Lerp, "lerp(X, Y, Z)"}};

static_assert(std::size(UNARY) + std::size(BINARY) + std::size(TERNARY) == detail::OP_COUNT,
              "an operation is missing from the form tests");

// Operands: a variable, a constant, and computed values ("max(C, C)" is C, but neither a leaf
// nor an arithmetic pair, so it reaches the operation through the accumulator).
constexpr double K = 0.75;
struct Operand {
    const char* text;
    double (*value)(const Vars&);
};
const Operand VAR_C{"C", [](const Vars& v) { return v[1]; }};
const Operand VAR_E{"E", [](const Vars& v) { return v[2]; }};
const Operand VAR_A{"A", [](const Vars& v) { return v[3]; }};
const Operand CONST{"0.75", [](const Vars&) { return K; }};
const Operand CONST_LOW{"0.25", [](const Vars&) { return 0.25; }};
const Operand COMPUTED_C{"max(C, C)", [](const Vars& v) { return v[1]; }};
const Operand COMPUTED_E{"max(E, E)", [](const Vars& v) { return v[2]; }};
const Operand COMPUTED_A{"max(A, A)", [](const Vars& v) { return v[3]; }};

std::string fill(std::string pattern, const std::vector<Operand>& operands) {
    const char names[] = {'X', 'Y', 'Z'};
    for (std::size_t i = 0; i < operands.size(); ++i) {
        pattern.replace(pattern.find(names[i]), 1, operands[i].text);
    }
    return pattern;
}

double apply(const Syntax& syntax, const std::vector<Operand>& operands, const Vars& vars) {
    double args[3] = {};
    for (std::size_t i = 0; i < operands.size(); ++i) {
        args[i] = operands[i].value(vars);
    }
    return detail::apply_op(syntax.op, args);
}

const std::vector<Vars> VAR_SETS = {
    vars_with({{C, 0.3}, {E, 0.6}, {A, -1}, {N, 2}}),
    vars_with({{C, 0.6}, {E, 0.6}, {A, 0}, {N, -0.5}}),
    vars_with({{C, 0}, {E, -2.5}, {A, 3}, {N, 0.75}}),
    vars_with({{C, -1.5}, {E, 0}, {A, 0.5}, {N, 1}}),
    vars_with({{C, std::nan("")}, {E, 1}, {A, 0.25}, {N, 3}}),
};

bool same_value(double a, double b) {
    return (std::isnan(a) && std::isnan(b)) || std::memcmp(&a, &b, sizeof a) == 0;
}

template <class Expected>
void expect_source(const std::string& source, Expected expected) {
    const CompiledExpression expression = compile_ok(source);
    for (const Vars& vars : VAR_SETS) {
        const double actual = expression.evaluate(vars.data());
        EXPECT_TRUE(same_value(actual, expected(vars)))
            << source << " with C=" << vars[1] << ": " << actual << " != " << expected(vars);
    }
}

// Also checks the operation as a branch of a select, where its first instruction pushes
// (N is never 0 in VAR_SETS, so the branch is taken).
void expect_form(const Syntax& syntax, const std::vector<Operand>& operands, bool as_branch) {
    const std::string inner = fill(syntax.pattern, operands);
    const std::string source = as_branch ? "N ? (" + inner + ") : C" : inner;
    expect_source(source, [&](const Vars& vars) { return apply(syntax, operands, vars); });
}

TEST(ExpressionForms, UnaryOperations) {
    for (const Syntax& syntax : UNARY) {
        expect_form(syntax, {VAR_C}, false);
        expect_form(syntax, {COMPUTED_C}, false);
        expect_form(syntax, {VAR_C}, true);
    }
}

TEST(ExpressionForms, BinaryOperations) {
    const std::vector<std::vector<Operand>> shapes = {
        {VAR_C, VAR_E},      {VAR_C, CONST},      {CONST, VAR_E},      {COMPUTED_C, VAR_E},
        {COMPUTED_C, CONST}, {VAR_C, COMPUTED_E}, {CONST, COMPUTED_E}, {COMPUTED_C, COMPUTED_E},
    };
    for (const Syntax& syntax : BINARY) {
        for (const auto& shape : shapes) {
            expect_form(syntax, shape, false);
        }
        for (const auto& leaves : {shapes[0], shapes[1], shapes[2]}) {
            expect_form(syntax, leaves, true);
        }
    }
}

// The other operand of the outer operation is computed (acc_pair, pair_acc) or a constant
// (const_pair, pair_const; also as a select branch, where it needs a separate push).
TEST(ExpressionForms, ArithmeticWithAnArithmeticPairOperand) {
    const std::vector<std::vector<Operand>> pairs = {
        {VAR_C, VAR_E}, {VAR_C, CONST}, {CONST, VAR_E}};
    for (const Syntax& outer : BINARY) {
        for (const Syntax& inner : BINARY) {
            if (!detail::is_arith(outer.op) || !detail::is_arith(inner.op)) {
                continue;
            }
            for (const auto& pair : pairs) {
                const std::string pair_text = "(" + fill(inner.pattern, pair) + ")";
                const Operand pair_operand{pair_text.c_str(), nullptr};
                for (const Operand& other : {COMPUTED_A, CONST_LOW}) {
                    const auto expected = [&](bool pair_first) {
                        return [&, pair_first](const Vars& vars) {
                            const double p = apply(inner, pair, vars);
                            const double o = other.value(vars);
                            const double args[2] = {pair_first ? p : o, pair_first ? o : p};
                            return detail::apply_op(outer.op, args);
                        };
                    };
                    const std::string other_first = fill(outer.pattern, {other, pair_operand});
                    const std::string pair_first = fill(outer.pattern, {pair_operand, other});
                    expect_source(other_first, expected(false));
                    expect_source(pair_first, expected(true));
                    expect_source("N ? (" + pair_first + ") : C", expected(true));
                }
            }
        }
    }
}

TEST(ExpressionForms, TernaryOperations) {
    for (const Syntax& syntax : TERNARY) {
        expect_form(syntax, {VAR_C, VAR_E, VAR_A}, false);
        expect_form(syntax, {COMPUTED_C, VAR_E, CONST}, false);
        expect_form(syntax, {COMPUTED_C, COMPUTED_E, COMPUTED_A}, true);
        expect_form(syntax, {VAR_C, CONST_LOW, CONST}, false);
        expect_form(syntax, {COMPUTED_C, CONST_LOW, CONST}, true);
    }
}

}  // namespace
}  // namespace veldra::test
