// The evaluator: runs a program of compiled_program.h. This is the hot path of every behaviour
// decision, so dispatch jumps straight from one handler to the next through a table of label
// addresses (a GCC/Clang extension); other compilers get an equivalent switch loop. It is built
// twice: with every operation, and lean, without the ones that call the maths library.

#include "expression/compiled_program.h"
#include "expression/expression.h"

#if defined(__GNUC__) && !defined(VELDRA_EXPR_SWITCH_DISPATCH)
#define VELDRA_EXPR_COMPUTED_GOTO 1
#else
#define VELDRA_EXPR_COMPUTED_GOTO 0
#endif

namespace veldra::detail {

#if VELDRA_EXPR_COMPUTED_GOTO
#define VELDRA_EXPR_HANDLER(label, code) \
    label:
#define VELDRA_EXPR_NEXT(length) \
    ip += (length);              \
    goto* HANDLERS[ip->opcode]
#else
#define VELDRA_EXPR_HANDLER(label, code) case (code):
#define VELDRA_EXPR_NEXT(length) \
    ip += (length);              \
    continue
#endif

// The lean build never runs operations that call the library, so their handlers are dropped.
#define VELDRA_EXPR_REQUIRE(op)                            \
    if constexpr (!WithLibrary && calls_library(Op::op)) { \
        unreachable();                                     \
    }

// One handler per form; the label lists below must follow the form enums' order.
#define VELDRA_EXPR_UNARY_HANDLER(op, form, push, operand)            \
    VELDRA_EXPR_HANDLER(op##_##form, opcode(Op::op, UnaryForm::form)) \
    VELDRA_EXPR_REQUIRE(op);                                          \
    push;                                                             \
    acc = unary<Op::op>(operand);                                     \
    VELDRA_EXPR_NEXT(1);

#define VELDRA_EXPR_UNARY_HANDLERS(op)                       \
    VELDRA_EXPR_UNARY_HANDLER(op, acc, (void)0, acc)         \
    VELDRA_EXPR_UNARY_HANDLER(op, var, (void)0, vars[ip->x]) \
    VELDRA_EXPR_UNARY_HANDLER(op, push_var, *sp++ = acc, vars[ip->x])

#define VELDRA_EXPR_BINARY_HANDLER(op, form, push, left, right)        \
    VELDRA_EXPR_HANDLER(op##_##form, opcode(Op::op, BinaryForm::form)) \
    VELDRA_EXPR_REQUIRE(op);                                           \
    push;                                                              \
    acc = binary<Op::op>(left, right);                                 \
    VELDRA_EXPR_NEXT(1);

#define VELDRA_EXPR_BINARY_HANDLERS(op)                                                 \
    VELDRA_EXPR_BINARY_HANDLER(op, stack_acc, --sp, *sp, acc)                           \
    VELDRA_EXPR_BINARY_HANDLER(op, acc_var, (void)0, acc, vars[ip->x])                  \
    VELDRA_EXPR_BINARY_HANDLER(op, acc_const, (void)0, acc, ip->k)                      \
    VELDRA_EXPR_BINARY_HANDLER(op, var_acc, (void)0, vars[ip->x], acc)                  \
    VELDRA_EXPR_BINARY_HANDLER(op, const_acc, (void)0, ip->k, acc)                      \
    VELDRA_EXPR_BINARY_HANDLER(op, var_var, (void)0, vars[ip->x], vars[ip->y])          \
    VELDRA_EXPR_BINARY_HANDLER(op, var_const, (void)0, vars[ip->x], ip->k)              \
    VELDRA_EXPR_BINARY_HANDLER(op, const_var, (void)0, ip->k, vars[ip->x])              \
    VELDRA_EXPR_BINARY_HANDLER(op, push_var_var, *sp++ = acc, vars[ip->x], vars[ip->y]) \
    VELDRA_EXPR_BINARY_HANDLER(op, push_var_const, *sp++ = acc, vars[ip->x], ip->k)     \
    VELDRA_EXPR_BINARY_HANDLER(op, push_const_var, *sp++ = acc, ip->k, vars[ip->x])

#define VELDRA_EXPR_TERNARY_HANDLER(op, form, pop, a, b, c, length)     \
    VELDRA_EXPR_HANDLER(op##_##form, opcode(Op::op, TernaryForm::form)) \
    VELDRA_EXPR_REQUIRE(op);                                            \
    pop;                                                                \
    acc = ternary<Op::op>(a, b, c);                                     \
    VELDRA_EXPR_NEXT(length);

#define VELDRA_EXPR_TERNARY_HANDLERS(op)                                            \
    VELDRA_EXPR_TERNARY_HANDLER(op, stack_stack_acc, sp -= 2, sp[0], sp[1], acc, 1) \
    VELDRA_EXPR_TERNARY_HANDLER(op, stack_acc_var, --sp, *sp, acc, vars[ip->x], 1)  \
    VELDRA_EXPR_TERNARY_HANDLER(op, stack_acc_const, --sp, *sp, acc, ip->k, 1)      \
    VELDRA_EXPR_TERNARY_HANDLER(op, acc_const_const, (void)0, acc, ip[0].k, ip[1].k, 2)

#define VELDRA_EXPR_PAIR_FORM(op1, op2, shape, form, left, right, length)                \
    VELDRA_EXPR_HANDLER(op1##_##op2##_##shape##_##form,                                  \
                        pair_opcode(Op::op1, Op::op2, PairShape::shape, PairForm::form)) \
    acc = binary<Op::op1>(left, right);                                                  \
    VELDRA_EXPR_NEXT(length);

// The pair's value for each shape; `k2` is where the pair's constant sits: this instruction's
// k, or the second instruction's for the const forms.
#define VELDRA_EXPR_PAIR_var_var(op2, k2) binary<Op::op2>(vars[ip->x], vars[ip->y])
#define VELDRA_EXPR_PAIR_var_const(op2, k2) binary<Op::op2>(vars[ip->x], k2)
#define VELDRA_EXPR_PAIR_const_var(op2, k2) binary<Op::op2>(k2, vars[ip->x])

#define VELDRA_EXPR_PAIR_HANDLER(op1, op2, shape)                                                  \
    VELDRA_EXPR_PAIR_FORM(op1, op2, shape, acc_pair, acc, VELDRA_EXPR_PAIR_##shape(op2, ip->k), 1) \
    VELDRA_EXPR_PAIR_FORM(op1, op2, shape, pair_acc, VELDRA_EXPR_PAIR_##shape(op2, ip->k), acc, 1) \
    VELDRA_EXPR_PAIR_FORM(op1, op2, shape, const_pair, ip->k,                                      \
                          VELDRA_EXPR_PAIR_##shape(op2, ip[1].k), 2)                               \
    VELDRA_EXPR_PAIR_FORM(op1, op2, shape, pair_const, VELDRA_EXPR_PAIR_##shape(op2, ip[1].k),     \
                          ip->k, 2)

#define VELDRA_EXPR_PAIR_SHAPES(op1, op2)         \
    VELDRA_EXPR_PAIR_HANDLER(op1, op2, var_var)   \
    VELDRA_EXPR_PAIR_HANDLER(op1, op2, var_const) \
    VELDRA_EXPR_PAIR_HANDLER(op1, op2, const_var)

// The inner operation list is spelled out: a macro cannot expand the list it is expanded from.
#define VELDRA_EXPR_PAIR_HANDLERS(op1) \
    VELDRA_EXPR_PAIR_SHAPES(op1, Add)  \
    VELDRA_EXPR_PAIR_SHAPES(op1, Sub)  \
    VELDRA_EXPR_PAIR_SHAPES(op1, Mul) VELDRA_EXPR_PAIR_SHAPES(op1, Div)

#define VELDRA_EXPR_PAIR_FORM_LABELS(op1, op2, shape)                       \
    &&op1##_##op2##_##shape##_acc_pair, &&op1##_##op2##_##shape##_pair_acc, \
        &&op1##_##op2##_##shape##_const_pair, &&op1##_##op2##_##shape##_pair_const,
#define VELDRA_EXPR_PAIR_SHAPE_LABELS(op1, op2)       \
    VELDRA_EXPR_PAIR_FORM_LABELS(op1, op2, var_var)   \
    VELDRA_EXPR_PAIR_FORM_LABELS(op1, op2, var_const) \
    VELDRA_EXPR_PAIR_FORM_LABELS(op1, op2, const_var)
#define VELDRA_EXPR_PAIR_LABELS(op1)        \
    VELDRA_EXPR_PAIR_SHAPE_LABELS(op1, Add) \
    VELDRA_EXPR_PAIR_SHAPE_LABELS(op1, Sub) \
    VELDRA_EXPR_PAIR_SHAPE_LABELS(op1, Mul) VELDRA_EXPR_PAIR_SHAPE_LABELS(op1, Div)

#define VELDRA_EXPR_UNARY_LABELS(op) &&op##_acc, &&op##_var, &&op##_push_var,
#define VELDRA_EXPR_BINARY_LABELS(op)                                                     \
    &&op##_stack_acc, &&op##_acc_var, &&op##_acc_const, &&op##_var_acc, &&op##_const_acc, \
        &&op##_var_var, &&op##_var_const, &&op##_const_var, &&op##_push_var_var,          \
        &&op##_push_var_const, &&op##_push_const_var,
#define VELDRA_EXPR_TERNARY_LABELS(op) \
    &&op##_stack_stack_acc, &&op##_stack_acc_var, &&op##_stack_acc_const, &&op##_acc_const_const,

[[noreturn]] inline void unreachable() {
#if defined(__GNUC__)
    __builtin_unreachable();
#elif defined(_MSC_VER)
    __assume(false);
#endif
}

template <bool WithLibrary>
double run_program(const Instr* ip, const double* vars) noexcept {
#if VELDRA_EXPR_COMPUTED_GOTO
    static const void* const HANDLERS[] = {
        &&load_var,
        &&load_const,
        &&push_load_var,
        &&push_load_const,
        &&push,
        &&ret,
        VELDRA_EXPR_UNARY_OPS(VELDRA_EXPR_UNARY_LABELS)
            VELDRA_EXPR_BINARY_OPS(VELDRA_EXPR_BINARY_LABELS)
                VELDRA_EXPR_TERNARY_OPS(VELDRA_EXPR_TERNARY_LABELS)
                    VELDRA_EXPR_ARITH_OPS(VELDRA_EXPR_PAIR_LABELS)};
    static_assert(sizeof(HANDLERS) / sizeof(HANDLERS[0]) == OPCODE_COUNT,
                  "handler table out of step with the opcode numbering in compiled_program.h");
#endif
    double stack[STACK_CAPACITY];  // left uninitialised: only slots written by a push are read
    double* sp = stack;
    double acc = 0.0;
#if VELDRA_EXPR_COMPUTED_GOTO
    goto* HANDLERS[ip->opcode];
#else
    for (;;) {
        switch (ip->opcode) {
#endif
    VELDRA_EXPR_HANDLER(load_var, opcode(Fixed::load_var))
    acc = vars[ip->x];
    VELDRA_EXPR_NEXT(1);
    VELDRA_EXPR_HANDLER(load_const, opcode(Fixed::load_const))
    acc = ip->k;
    VELDRA_EXPR_NEXT(1);
    VELDRA_EXPR_HANDLER(push_load_var, opcode(Fixed::push_load_var))
    *sp++ = acc;
    acc = vars[ip->x];
    VELDRA_EXPR_NEXT(1);
    VELDRA_EXPR_HANDLER(push_load_const, opcode(Fixed::push_load_const))
    *sp++ = acc;
    acc = ip->k;
    VELDRA_EXPR_NEXT(1);
    VELDRA_EXPR_HANDLER(push, opcode(Fixed::push))
    *sp++ = acc;
    VELDRA_EXPR_NEXT(1);
    VELDRA_EXPR_UNARY_OPS(VELDRA_EXPR_UNARY_HANDLERS)
    VELDRA_EXPR_BINARY_OPS(VELDRA_EXPR_BINARY_HANDLERS)
    VELDRA_EXPR_TERNARY_OPS(VELDRA_EXPR_TERNARY_HANDLERS)
    VELDRA_EXPR_ARITH_OPS(VELDRA_EXPR_PAIR_HANDLERS)
    VELDRA_EXPR_HANDLER(ret, opcode(Fixed::ret))
    return acc;
#if !VELDRA_EXPR_COMPUTED_GOTO
}
}
#endif
}

Runner runner_for(std::span<const Instr> code) {
    for (const Instr& instr : code) {
        const std::optional<Op> op = opcode_op(instr.opcode);
        if (op && calls_library(*op)) {
            return run_program<true>;
        }
    }
    return run_program<false>;
}

}  // namespace veldra::detail
