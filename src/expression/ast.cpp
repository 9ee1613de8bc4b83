#include "expression/ast.h"

#include <cassert>

#include "runtime/assertion.h"

namespace veldra::detail {

double apply_op(Op op, const double* args) {
    switch (op) {
#define VELDRA_EXPR_APPLY_UNARY(name) \
    case Op::name:                    \
        return unary<Op::name>(args[0]);
#define VELDRA_EXPR_APPLY_BINARY(name) \
    case Op::name:                     \
        return binary<Op::name>(args[0], args[1]);
#define VELDRA_EXPR_APPLY_TERNARY(name) \
    case Op::name:                      \
        return ternary<Op::name>(args[0], args[1], args[2]);
        VELDRA_EXPR_UNARY_OPS(VELDRA_EXPR_APPLY_UNARY)
        VELDRA_EXPR_BINARY_OPS(VELDRA_EXPR_APPLY_BINARY)
        VELDRA_EXPR_TERNARY_OPS(VELDRA_EXPR_APPLY_TERNARY)
#undef VELDRA_EXPR_APPLY_UNARY
#undef VELDRA_EXPR_APPLY_BINARY
#undef VELDRA_EXPR_APPLY_TERNARY
    }
    assert(false && "apply_op: operation missing from the operation lists?");
    return 0.0;
}

NodeId Ast::add(const Node& node) {
    nodes_.push_back(node);
    return static_cast<NodeId>(nodes_.size() - 1);
}

NodeId Ast::constant(double value) {
    Node node;
    node.kind = Node::Kind::constant;
    node.value = value;
    return add(node);
}

NodeId Ast::variable(ExprVar var) {
    Node node;
    node.kind = Node::Kind::variable;
    node.var = var;
    return add(node);
}

bool Ast::is_constant(NodeId id, double value) const {
    const Node& node = (*this)[id];
    return node.kind == Node::Kind::constant && node.value == value;
}

NodeId Ast::apply(Op op, std::initializer_list<NodeId> args) {
    VELDRA_ASSERT(static_cast<int>(args.size()) == op_arity(op), "Ast::apply: wrong operand count");
    const NodeId* arg = args.begin();
    if (op == Op::Pow && is_constant(arg[1], 2.0)) {
        return apply(Op::Square, {arg[0]});
    }
    // Both branches of a select are side-effect free, so a known condition just picks one.
    if (op == Op::Select && (*this)[arg[0]].kind == Node::Kind::constant) {
        return (*this)[arg[0]].value != 0.0 ? arg[1] : arg[2];
    }
    Node node;
    node.kind = Node::Kind::apply;
    node.op = op;
    double values[3] = {};
    bool all_constant = true;
    for (std::size_t i = 0; i < args.size(); ++i) {
        const Node& operand = (*this)[arg[i]];
        node.args[i] = arg[i];
        values[i] = operand.value;
        all_constant = all_constant && operand.kind == Node::Kind::constant;
    }
    if (all_constant) {
        // The operand nodes stay in the array unused; a formula is parsed once, so the waste
        // is a few bytes at load time.
        return constant(apply_op(op, values));
    }
    return add(node);
}

}  // namespace veldra::detail
