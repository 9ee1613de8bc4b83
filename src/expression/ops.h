#pragma once
// The operations of the formula language and what each one computes. Constant folding and the
// evaluator both call these functions, so a folded formula gives bit for bit the result the
// unfolded one would.

#include <bit>
#include <cmath>
#include <cstdint>

#include "util/portable_math.h"

namespace veldra::detail {

// The operation lists drive the operation enum, the opcode layout and the evaluator's handler
// table; keeping them as lists means one edit adds an operation everywhere.
#define VELDRA_EXPR_UNARY_OPS(X) \
    X(Neg) X(Not) X(Abs) X(Sqrt) X(Exp) X(Log) X(Floor) X(Ceil) X(Round) X(Sign) X(Square)
#define VELDRA_EXPR_BINARY_OPS(X) \
    X(Add)                        \
    X(Sub)                        \
    X(Mul) X(Div) X(Mod) X(Pow) X(Lt) X(Le) X(Gt) X(Ge) X(Eq) X(Ne) X(And) X(Or) X(Min) X(Max)
#define VELDRA_EXPR_TERNARY_OPS(X) X(Select) X(Clamp) X(Lerp)

enum class Op : std::uint8_t {
#define VELDRA_EXPR_ENUM_ENTRY(name) name,
    VELDRA_EXPR_UNARY_OPS(VELDRA_EXPR_ENUM_ENTRY) VELDRA_EXPR_BINARY_OPS(VELDRA_EXPR_ENUM_ENTRY)
        VELDRA_EXPR_TERNARY_OPS(VELDRA_EXPR_ENUM_ENTRY)
#undef VELDRA_EXPR_ENUM_ENTRY
};

inline constexpr int FIRST_BINARY_OP = static_cast<int>(Op::Add);
inline constexpr int FIRST_TERNARY_OP = static_cast<int>(Op::Select);
inline constexpr int OP_COUNT = static_cast<int>(Op::Lerp) + 1;

constexpr int op_arity(Op op) {
    const int index = static_cast<int>(op);
    return index < FIRST_BINARY_OP ? 1 : index < FIRST_TERNARY_OP ? 2 : 3;
}

// Operations computed by a call into the maths library rather than a few instructions.
constexpr bool calls_library(Op op) {
    switch (op) {
        case Op::Sqrt:  // inline, but with a library call to set errno for negative input
        case Op::Exp:
        case Op::Log:
        case Op::Floor:
        case Op::Ceil:
        case Op::Round:
        case Op::Mod:
        case Op::Pow:
            return true;
        default:
            return false;
    }
}

// Truth values are 1 and 0; any operand other than 0 counts as true, NaN included.
inline double truth(bool value) {
    return value ? 1.0 : 0.0;
}

// NaN in either argument gives NaN, so a broken input shows up in the result instead of being
// silently replaced by the other argument. The first comparison is the shape compilers turn
// into a single min/max instruction (no data-dependent branch); it yields `a` when either is
// NaN, and the NaN test on `b` is a branch that is never taken in practice.
inline double nan_min(double a, double b) {
    const double smaller = b < a ? b : a;
    return b != b ? b : smaller;
}
inline double nan_max(double a, double b) {
    const double larger = b > a ? b : a;
    return b != b ? b : larger;
}

template <Op op>
inline double unary(double x) {
    if constexpr (op == Op::Neg)
        return -x;
    if constexpr (op == Op::Not)
        return truth(x == 0.0);
    if constexpr (op == Op::Abs)
        return std::fabs(x);
    if constexpr (op == Op::Sqrt)
        return std::sqrt(x);
    if constexpr (op == Op::Exp)
        return portable::exp(x);
    if constexpr (op == Op::Log)
        return portable::log(x);
    if constexpr (op == Op::Floor)
        return std::floor(x);
    if constexpr (op == Op::Ceil)
        return std::ceil(x);
    if constexpr (op == Op::Round)
        return std::round(x);  // halves away from zero
    // Zero keeps its sign and NaN stays NaN.
    if constexpr (op == Op::Sign)
        return x > 0.0 ? 1.0 : (x < 0.0 ? -1.0 : x);
    // x^2 is written so often that it gets the exact product instead of a pow() call.
    if constexpr (op == Op::Square)
        return x * x;
}

template <Op op>
inline double binary(double a, double b) {
    if constexpr (op == Op::Add)
        return a + b;
    if constexpr (op == Op::Sub)
        return a - b;
    if constexpr (op == Op::Mul)
        return a * b;
    if constexpr (op == Op::Div)
        return a / b;
    if constexpr (op == Op::Mod)
        return std::fmod(a, b);
    if constexpr (op == Op::Pow)
        return portable::pow(a, b);
    if constexpr (op == Op::Lt)
        return truth(a < b);
    if constexpr (op == Op::Le)
        return truth(a <= b);
    if constexpr (op == Op::Gt)
        return truth(a > b);
    if constexpr (op == Op::Ge)
        return truth(a >= b);
    if constexpr (op == Op::Eq)
        return truth(a == b);
    if constexpr (op == Op::Ne)
        return truth(a != b);
    if constexpr (op == Op::And)
        return truth((a != 0.0) & (b != 0.0));
    if constexpr (op == Op::Or)
        return truth((a != 0.0) | (b != 0.0));
    if constexpr (op == Op::Min)
        return nan_min(a, b);
    if constexpr (op == Op::Max)
        return nan_max(a, b);
}

template <Op op>
inline double ternary(double a, double b, double c) {
    if constexpr (op == Op::Select) {
        // Both branches are always computed (they cannot fail or have effects), and picking
        // one by mask keeps the evaluator free of data-dependent branches.
        const std::uint64_t mask = std::uint64_t{0} - static_cast<std::uint64_t>(a != 0.0);
        return std::bit_cast<double>((std::bit_cast<std::uint64_t>(b) & mask) |
                                     (std::bit_cast<std::uint64_t>(c) & ~mask));
    }
    if constexpr (op == Op::Clamp)
        return nan_min(nan_max(a, b), c);
    // Spelled out rather than std::lerp so every platform's build gives the same bits.
    if constexpr (op == Op::Lerp)
        return a + (b - a) * c;
}

// Applies any operation to args[0 .. op_arity(op)); for constant folding.
double apply_op(Op op, const double* args);

}  // namespace veldra::detail
