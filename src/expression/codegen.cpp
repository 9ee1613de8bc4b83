#include "expression/codegen.h"

#include <algorithm>
#include <cassert>

#include "runtime/assertion.h"

namespace veldra::detail {
namespace {

// How a binary node is computed: the operand named first runs first and leaves its value in
// acc; the other is then read directly (leaf or pair) or from the stack.
enum class BinaryPlan {
    single,      // both operands are leaves: one instruction
    const_pair,  // a constant and an arithmetic pair: one (two-slot) instruction
    acc_leaf,    // a first, then acc op leaf b
    leaf_acc,    // b first, then leaf a op acc
    acc_pair,    // a first, then acc op pair b
    pair_acc,    // b first, then pair a op acc
    stack,       // a first, push, b, then pop op acc
};

class CodeGenerator {
public:
    explicit CodeGenerator(const Ast& ast) : ast_(ast) {}
    std::optional<std::vector<Instr>> run(NodeId root);

private:
    void generate(NodeId id, bool push);
    BinaryPlan plan(const Node& node) const;
    NodeId first_operand(const Node& node) const;
    void emit_single(const Node& node, bool push);
    void emit_rest(const Node& node);
    void emit_binary_rest(const Node& node);
    void emit_ternary_rest(const Node& node);
    void emit_leaf_operand(Op op, NodeId leaf, BinaryForm var_form, BinaryForm const_form);
    void emit_pair(Op op1, NodeId pair, PairForm form, double constant);
    void emit(std::uint16_t opcode, std::uint8_t x, std::uint8_t y, double k, int stack_change);
    // The second instruction of a two-instruction form: only its k is read.
    void emit_data(double k) { emit(opcode(Fixed::ret), 0, 0, k, 0); }

    std::uint8_t var_index(NodeId id) const { return static_cast<std::uint8_t>(ast_[id].var); }
    double value(NodeId id) const { return ast_[id].value; }
    bool is_var(NodeId id) const { return ast_[id].kind == Node::Kind::variable; }
    bool is_const(NodeId id) const { return ast_[id].kind == Node::Kind::constant; }
    bool is_leaf(NodeId id) const { return ast_[id].is_leaf(); }
    bool is_pair(NodeId id) const {
        const Node& node = ast_[id];
        return !node.is_leaf() && is_arith(node.op) && is_leaf(node.args[0]) &&
               is_leaf(node.args[1]);
    }

    const Ast& ast_;
    std::vector<Instr> code_;
    int depth_ = 0;
    int max_depth_ = 0;
};

std::optional<std::vector<Instr>> CodeGenerator::run(NodeId root) {
    generate(root, false);
    emit(opcode(Fixed::ret), 0, 0, 0.0, 0);
    VELDRA_ASSERT(depth_ == 0, "CodeGenerator: unbalanced operand stack");
    if (max_depth_ > STACK_CAPACITY) {
        return std::nullopt;
    }
    return std::move(code_);
}

void CodeGenerator::emit(std::uint16_t op, std::uint8_t x, std::uint8_t y, double k,
                         int stack_change) {
    code_.push_back(Instr{op, x, y, k});
    depth_ += stack_change;
    max_depth_ = std::max(max_depth_, depth_);
}

BinaryPlan CodeGenerator::plan(const Node& node) const {
    const NodeId a = node.args[0];
    const NodeId b = node.args[1];
    const bool arith = is_arith(node.op);
    if (is_leaf(a) && is_leaf(b)) {
        return BinaryPlan::single;
    }
    if (arith && ((is_const(a) && is_pair(b)) || (is_pair(a) && is_const(b)))) {
        return BinaryPlan::const_pair;
    }
    if (is_leaf(b)) {
        return BinaryPlan::acc_leaf;
    }
    if (is_leaf(a)) {
        return BinaryPlan::leaf_acc;
    }
    if (arith && is_pair(b)) {
        return BinaryPlan::acc_pair;
    }
    if (arith && is_pair(a)) {
        return BinaryPlan::pair_acc;
    }
    return BinaryPlan::stack;
}

// The operand whose code runs first, or NO_NODE when the whole node is one instruction.
NodeId CodeGenerator::first_operand(const Node& node) const {
    if (node.is_leaf()) {
        return NO_NODE;
    }
    switch (op_arity(node.op)) {
        case 1:
            return is_var(node.args[0]) ? NO_NODE : node.args[0];
        case 2:
            switch (plan(node)) {
                case BinaryPlan::single:
                case BinaryPlan::const_pair:
                    return NO_NODE;
                case BinaryPlan::leaf_acc:
                case BinaryPlan::pair_acc:
                    return node.args[1];
                default:
                    return node.args[0];
            }
        default:
            return node.args[0];
    }
}

// Left-leaning chains ("a + b + c + ...") can be as long as the formula, so the first operands
// are followed in a loop; only the other operands recurse, and their depth is the nesting depth.
void CodeGenerator::generate(NodeId id, bool push) {
    std::vector<const Node*> chain{&ast_[id]};
    for (NodeId next = first_operand(ast_[id]); next != NO_NODE; next = first_operand(ast_[next])) {
        chain.push_back(&ast_[next]);
    }
    emit_single(*chain.back(), push);
    for (auto it = chain.rbegin() + 1; it != chain.rend(); ++it) {
        emit_rest(**it);
    }
}

// A node computed by one instruction: a leaf, a unary operation of a variable, or a binary
// operation of two leaves (never two constants: those were folded).
void CodeGenerator::emit_single(const Node& node, bool push) {
    const int pushed = push ? 1 : 0;
    if (node.is_leaf()) {
        const bool var = node.kind == Node::Kind::variable;
        const Fixed load = var ? (push ? Fixed::push_load_var : Fixed::load_var)
                               : (push ? Fixed::push_load_const : Fixed::load_const);
        emit(opcode(load), static_cast<std::uint8_t>(node.var), 0, var ? 0.0 : node.value, pushed);
        return;
    }
    const NodeId a = node.args[0];
    if (op_arity(node.op) == 1) {
        emit(opcode(node.op, push ? UnaryForm::push_var : UnaryForm::var), var_index(a), 0, 0.0,
             pushed);
        return;
    }
    const NodeId b = node.args[1];
    if (plan(node) == BinaryPlan::const_pair) {
        // No push variants of these: a separate push is rarely needed.
        if (push) {
            emit(opcode(Fixed::push), 0, 0, 0.0, 1);
        }
        if (is_const(a)) {
            emit_pair(node.op, b, PairForm::const_pair, value(a));
        } else {
            emit_pair(node.op, a, PairForm::pair_const, value(b));
        }
        return;
    }
    VELDRA_ASSERT(is_var(a) || is_var(b), "CodeGenerator: constant operation was not folded");
    if (is_var(a) && is_var(b)) {
        emit(opcode(node.op, push ? BinaryForm::push_var_var : BinaryForm::var_var), var_index(a),
             var_index(b), 0.0, pushed);
    } else if (is_var(a)) {
        emit(opcode(node.op, push ? BinaryForm::push_var_const : BinaryForm::var_const),
             var_index(a), 0, value(b), pushed);
    } else {
        emit(opcode(node.op, push ? BinaryForm::push_const_var : BinaryForm::const_var),
             var_index(b), 0, value(a), pushed);
    }
}

// Emits what follows the first operand's code, which has left its value in acc.
void CodeGenerator::emit_rest(const Node& node) {
    switch (op_arity(node.op)) {
        case 1:
            emit(opcode(node.op, UnaryForm::acc), 0, 0, 0.0, 0);
            return;
        case 2:
            emit_binary_rest(node);
            return;
        default:
            emit_ternary_rest(node);
            return;
    }
}

void CodeGenerator::emit_ternary_rest(const Node& node) {
    const NodeId b = node.args[1];
    const NodeId c = node.args[2];
    if (is_const(b) && is_const(c)) {
        emit(opcode(node.op, TernaryForm::acc_const_const), 0, 0, value(b), 0);
        emit_data(value(c));
        return;
    }
    generate(b, true);
    if (is_var(c)) {
        emit(opcode(node.op, TernaryForm::stack_acc_var), var_index(c), 0, 0.0, -1);
    } else if (is_const(c)) {
        emit(opcode(node.op, TernaryForm::stack_acc_const), 0, 0, value(c), -1);
    } else {
        generate(c, true);
        emit(opcode(node.op, TernaryForm::stack_stack_acc), 0, 0, 0.0, -2);
    }
}

void CodeGenerator::emit_binary_rest(const Node& node) {
    const NodeId a = node.args[0];
    const NodeId b = node.args[1];
    switch (plan(node)) {
        case BinaryPlan::acc_leaf:
            emit_leaf_operand(node.op, b, BinaryForm::acc_var, BinaryForm::acc_const);
            return;
        case BinaryPlan::leaf_acc:
            emit_leaf_operand(node.op, a, BinaryForm::var_acc, BinaryForm::const_acc);
            return;
        case BinaryPlan::acc_pair:
            emit_pair(node.op, b, PairForm::acc_pair, 0.0);
            return;
        case BinaryPlan::pair_acc:
            emit_pair(node.op, a, PairForm::pair_acc, 0.0);
            return;
        case BinaryPlan::stack:
            generate(b, true);
            emit(opcode(node.op, BinaryForm::stack_acc), 0, 0, 0.0, -1);
            return;
        case BinaryPlan::single:
        case BinaryPlan::const_pair:
            assert(false && "CodeGenerator: a single-instruction node has no rest");
            return;
    }
}

void CodeGenerator::emit_leaf_operand(Op op, NodeId leaf, BinaryForm var_form,
                                      BinaryForm const_form) {
    if (is_var(leaf)) {
        emit(opcode(op, var_form), var_index(leaf), 0, 0.0, 0);
    } else {
        emit(opcode(op, const_form), 0, 0, value(leaf), 0);
    }
}

// The const forms carry `constant` in the first instruction and the pair's own constant in a
// second one.
void CodeGenerator::emit_pair(Op op1, NodeId pair, PairForm form, double constant) {
    const Node& node = ast_[pair];
    const NodeId x = node.args[0];
    const NodeId y = node.args[1];
    const bool two_slots = form == PairForm::const_pair || form == PairForm::pair_const;
    PairShape shape = PairShape::var_var;
    std::uint8_t var = var_index(x);
    double pair_constant = 0.0;
    if (!is_var(y)) {
        shape = PairShape::var_const;
        pair_constant = value(y);
    } else if (!is_var(x)) {
        shape = PairShape::const_var;
        var = var_index(y);
        pair_constant = value(x);
    }
    const std::uint16_t code = pair_opcode(op1, node.op, shape, form);
    if (two_slots) {
        emit(code, var, var_index(y), constant, 0);
        emit_data(pair_constant);
    } else {
        emit(code, var, var_index(y), pair_constant, 0);
    }
}

}  // namespace

std::optional<std::vector<Instr>> generate_code(const Ast& ast, NodeId root) {
    return CodeGenerator(ast).run(root);
}

}  // namespace veldra::detail
