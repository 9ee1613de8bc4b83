// The evaluator: runs a program of program.h. This is the hot path of every behaviour decision,
// so dispatch jumps straight from one handler to the next through a table of label addresses
// (a GCC/Clang extension); other compilers get an equivalent switch loop.

#include "expression/expression.h"
#include "expression/program.h"

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

// One handler per form; the label lists below must follow the form enums' order.
#define VELDRA_EXPR_UNARY_HANDLER(op, form, push, operand)            \
    VELDRA_EXPR_HANDLER(op##_##form, opcode(Op::op, UnaryForm::form)) \
    push;                                                             \
    acc = unary<Op::op>(operand);                                     \
    VELDRA_EXPR_NEXT(1);

#define VELDRA_EXPR_UNARY_HANDLERS(op)                       \
    VELDRA_EXPR_UNARY_HANDLER(op, acc, (void)0, acc)         \
    VELDRA_EXPR_UNARY_HANDLER(op, var, (void)0, vars[ip->x]) \
    VELDRA_EXPR_UNARY_HANDLER(op, push_var, *sp++ = acc, vars[ip->x])

#define VELDRA_EXPR_BINARY_HANDLER(op, form, push, left, right)        \
    VELDRA_EXPR_HANDLER(op##_##form, opcode(Op::op, BinaryForm::form)) \
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

#define VELDRA_EXPR_TERNARY_HANDLERS(op)                    \
    VELDRA_EXPR_HANDLER(op##_stack, ternary_opcode(Op::op)) \
    sp -= 2;                                                \
    acc = ternary<Op::op>(sp[0], sp[1], acc);               \
    VELDRA_EXPR_NEXT(1);

#define VELDRA_EXPR_UNARY_LABELS(op) &&op##_acc, &&op##_var, &&op##_push_var,
#define VELDRA_EXPR_BINARY_LABELS(op)                                                     \
    &&op##_stack_acc, &&op##_acc_var, &&op##_acc_const, &&op##_var_acc, &&op##_const_acc, \
        &&op##_var_var, &&op##_var_const, &&op##_const_var, &&op##_push_var_var,          \
        &&op##_push_var_const, &&op##_push_const_var,
#define VELDRA_EXPR_TERNARY_LABELS(op) &&op##_stack,

double run_program(const Instr* ip, const double* vars) noexcept {
#if VELDRA_EXPR_COMPUTED_GOTO
    static const void* const HANDLERS[] = {
        &&load_var,
        &&load_const,
        &&push_load_var,
        &&push_load_const,
        &&clamp_const_const,
        &&ret,
        VELDRA_EXPR_UNARY_OPS(VELDRA_EXPR_UNARY_LABELS)
            VELDRA_EXPR_BINARY_OPS(VELDRA_EXPR_BINARY_LABELS)
                VELDRA_EXPR_TERNARY_OPS(VELDRA_EXPR_TERNARY_LABELS)};
    static_assert(sizeof(HANDLERS) / sizeof(HANDLERS[0]) == OPCODE_COUNT,
                  "handler table out of step with the opcode numbering in program.h");
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
    VELDRA_EXPR_HANDLER(clamp_const_const, opcode(Fixed::clamp_const_const))
    acc = ternary<Op::Clamp>(acc, ip[0].k, ip[1].k);
    VELDRA_EXPR_NEXT(2);
    VELDRA_EXPR_UNARY_OPS(VELDRA_EXPR_UNARY_HANDLERS)
    VELDRA_EXPR_BINARY_OPS(VELDRA_EXPR_BINARY_HANDLERS)
    VELDRA_EXPR_TERNARY_OPS(VELDRA_EXPR_TERNARY_HANDLERS)
    VELDRA_EXPR_HANDLER(ret, opcode(Fixed::ret))
    return acc;
#if !VELDRA_EXPR_COMPUTED_GOTO
}
}
#endif
}

}  // namespace veldra::detail
