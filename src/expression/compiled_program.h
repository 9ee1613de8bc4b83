#pragma once
// The compiled form of a formula: a flat array of instructions for a small accumulator machine.
// The accumulator holds the value being built; an operand stack holds values waiting for their
// partner. Most operations come in several forms that read a variable or an inline constant
// directly, so a formula like "0.5*A" is one instruction instead of three.

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "expression/expression.h"
#include "expression/ops.h"

namespace veldra::detail {

// acc = f(acc); acc = f(var x); push acc, then acc = f(var x).
enum class UnaryForm : std::uint8_t { acc, var, push_var };
inline constexpr int UNARY_FORM_COUNT = 3;

// Operand order is left, right: var_acc means acc = (var x) op acc. stack_acc pops the left
// operand; the push_ forms push acc before loading, which starts a right operand that needs
// the stack.
enum class BinaryForm : std::uint8_t {
    stack_acc,
    acc_var,
    acc_const,
    var_acc,
    const_acc,
    var_var,
    var_const,
    const_var,
    push_var_var,
    push_var_const,
    push_const_var,
};
inline constexpr int BINARY_FORM_COUNT = 11;

// The first operand is always in acc when a ternary operation runs; the others come from the
// stack or directly from a leaf. acc_const_const is two instructions long: the second one only
// holds the third operand in its k.
enum class TernaryForm : std::uint8_t {
    stack_stack_acc,
    stack_acc_var,
    stack_acc_const,
    acc_const_const
};
inline constexpr int TERNARY_FORM_COUNT = 4;

// Pair forms fuse an arithmetic operation with an operand that is itself an arithmetic
// operation on two leaves (a "pair"), so "2*C*(1 - ENERGY_LEVEL)", "... - 0.5*N" or
// "0.5 + 0.5*A" need no operand stack:
//   acc_pair:   acc = acc op1 (x op2 y)      pair_acc:   acc = (x op2 y) op1 acc
//   const_pair: acc = k op1 (x op2 y)        pair_const: acc = (x op2 y) op1 k
// The const forms are two instructions long; the pair's own constant, if any, is in the
// second one's k.
enum class PairShape : std::uint8_t { var_var, var_const, const_var };
inline constexpr int PAIR_SHAPE_COUNT = 3;
enum class PairForm : std::uint8_t { acc_pair, pair_acc, const_pair, pair_const };
inline constexpr int PAIR_FORM_COUNT = 4;
inline constexpr int ARITH_OP_COUNT = 4;  // Add, Sub, Mul, Div: the first binary operations

#define VELDRA_EXPR_ARITH_OPS(X) X(Add) X(Sub) X(Mul) X(Div)
static_assert(static_cast<int>(Op::Add) == FIRST_BINARY_OP &&
                  static_cast<int>(Op::Div) == FIRST_BINARY_OP + 3,
              "pair opcodes assume Add, Sub, Mul, Div lead the binary operations");

constexpr bool is_arith(Op op) {
    return op == Op::Add || op == Op::Sub || op == Op::Mul || op == Op::Div;
}

// Opcode numbering: the fixed instructions, then UNARY_FORM_COUNT opcodes per unary operation,
// BINARY_FORM_COUNT per binary operation and TERNARY_FORM_COUNT per ternary operation, each
// group in the order of the operation lists; then the pair forms, ordered by op1, op2, shape
// and form.
enum class Fixed : std::uint16_t {
    load_var,
    load_const,
    push_load_var,
    push_load_const,
    push,
    ret,  // also fills the data slot of two-instruction forms
};
inline constexpr int FIXED_OPCODE_COUNT = 6;
inline constexpr int UNARY_OPCODE_BASE = FIXED_OPCODE_COUNT;
inline constexpr int BINARY_OPCODE_BASE = UNARY_OPCODE_BASE + FIRST_BINARY_OP * UNARY_FORM_COUNT;
inline constexpr int TERNARY_OPCODE_BASE =
    BINARY_OPCODE_BASE + (FIRST_TERNARY_OP - FIRST_BINARY_OP) * BINARY_FORM_COUNT;
inline constexpr int PAIR_OPCODE_BASE =
    TERNARY_OPCODE_BASE + (OP_COUNT - FIRST_TERNARY_OP) * TERNARY_FORM_COUNT;
inline constexpr int OPCODE_COUNT =
    PAIR_OPCODE_BASE + ARITH_OP_COUNT * ARITH_OP_COUNT * PAIR_SHAPE_COUNT * PAIR_FORM_COUNT;

constexpr std::uint16_t opcode(Fixed fixed) {
    return static_cast<std::uint16_t>(fixed);
}
constexpr std::uint16_t opcode(Op op, UnaryForm form) {
    return static_cast<std::uint16_t>(UNARY_OPCODE_BASE + static_cast<int>(op) * UNARY_FORM_COUNT +
                                      static_cast<int>(form));
}
constexpr std::uint16_t opcode(Op op, BinaryForm form) {
    return static_cast<std::uint16_t>(BINARY_OPCODE_BASE +
                                      (static_cast<int>(op) - FIRST_BINARY_OP) * BINARY_FORM_COUNT +
                                      static_cast<int>(form));
}
constexpr std::uint16_t opcode(Op op, TernaryForm form) {
    return static_cast<std::uint16_t>(
        TERNARY_OPCODE_BASE + (static_cast<int>(op) - FIRST_TERNARY_OP) * TERNARY_FORM_COUNT +
        static_cast<int>(form));
}

constexpr std::uint16_t pair_opcode(Op op1, Op op2, PairShape shape, PairForm form) {
    const int arith1 = static_cast<int>(op1) - FIRST_BINARY_OP;
    const int arith2 = static_cast<int>(op2) - FIRST_BINARY_OP;
    return static_cast<std::uint16_t>(
        PAIR_OPCODE_BASE +
        ((arith1 * ARITH_OP_COUNT + arith2) * PAIR_SHAPE_COUNT + static_cast<int>(shape)) *
            PAIR_FORM_COUNT +
        static_cast<int>(form));
}

struct Instr {
    std::uint16_t opcode = 0;
    std::uint8_t x = 0;  // index of the first variable operand
    std::uint8_t y = 0;  // index of the second variable operand (var_var forms)
    double k = 0.0;      // constant operand
};

// The operation an opcode performs; none for loads, data slots and the pair forms (which are
// arithmetic only).
constexpr std::optional<Op> opcode_op(std::uint16_t code) {
    if (code < UNARY_OPCODE_BASE || code >= PAIR_OPCODE_BASE) {
        return std::nullopt;
    }
    if (code < BINARY_OPCODE_BASE) {
        return static_cast<Op>((code - UNARY_OPCODE_BASE) / UNARY_FORM_COUNT);
    }
    if (code < TERNARY_OPCODE_BASE) {
        return static_cast<Op>(FIRST_BINARY_OP + (code - BINARY_OPCODE_BASE) / BINARY_FORM_COUNT);
    }
    return static_cast<Op>(FIRST_TERNARY_OP + (code - TERNARY_OPCODE_BASE) / TERNARY_FORM_COUNT);
}

// The evaluator for a program (vm.cpp). Programs that never call the maths library get a lean
// build of the evaluator that needs no saved registers, which is most of the fixed cost of a
// short formula.
Runner runner_for(std::span<const Instr> code);

// Deepest operand stack a program may use. Values wait on the stack only inside nested
// operands, so real formulas need a handful; the compiler refuses programs that need more.
inline constexpr int STACK_CAPACITY = 256;

struct Program {
    std::string source;
    std::vector<Instr> code;  // ends with Fixed::ret
    ExprVarMask reads = 0;
};

}  // namespace veldra::detail
