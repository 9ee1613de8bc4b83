#include "expression/codegen.h"

#include <algorithm>
#include <cassert>

namespace veldra::detail {
namespace {

class CodeGenerator {
public:
    explicit CodeGenerator(const Ast& ast) : ast_(ast) {}
    std::optional<std::vector<Instr>> run(NodeId root);

private:
    void generate(NodeId id, bool push);
    NodeId first_operand(const Node& node) const;
    void emit_single(const Node& node, bool push);
    void emit_rest(const Node& node);
    void emit(std::uint16_t opcode, std::uint8_t x, std::uint8_t y, double k, int stack_change);

    std::uint8_t var_index(NodeId id) const { return static_cast<std::uint8_t>(ast_[id].var); }
    double value(NodeId id) const { return ast_[id].value; }
    bool is_var(NodeId id) const { return ast_[id].kind == Node::Kind::variable; }
    bool is_leaf(NodeId id) const { return ast_[id].is_leaf(); }
    bool is_const(NodeId id) const { return ast_[id].kind == Node::Kind::constant; }

    const Ast& ast_;
    std::vector<Instr> code_;
    int depth_ = 0;
    int max_depth_ = 0;
};

std::optional<std::vector<Instr>> CodeGenerator::run(NodeId root) {
    generate(root, false);
    emit(opcode(Fixed::ret), 0, 0, 0.0, 0);
    assert(depth_ == 0 && "CodeGenerator: unbalanced operand stack");
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

// The operand whose code runs first, or NO_NODE when the whole node is one instruction.
NodeId CodeGenerator::first_operand(const Node& node) const {
    if (node.is_leaf()) {
        return NO_NODE;
    }
    const NodeId* args = node.args;
    switch (op_arity(node.op)) {
        case 1:
            return is_var(args[0]) ? NO_NODE : args[0];
        case 2:
            if (is_leaf(args[0])) {
                return is_leaf(args[1]) ? NO_NODE : args[1];
            }
            return args[0];
        default:
            return args[0];
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

void CodeGenerator::emit_single(const Node& node, bool push) {
    const int pushed = push ? 1 : 0;
    if (node.kind == Node::Kind::constant) {
        emit(opcode(push ? Fixed::push_load_const : Fixed::load_const), 0, 0, node.value, pushed);
        return;
    }
    if (node.kind == Node::Kind::variable) {
        emit(opcode(push ? Fixed::push_load_var : Fixed::load_var),
             static_cast<std::uint8_t>(node.var), 0, 0.0, pushed);
        return;
    }
    const NodeId a = node.args[0];
    if (op_arity(node.op) == 1) {
        emit(opcode(node.op, push ? UnaryForm::push_var : UnaryForm::var), var_index(a), 0, 0.0,
             pushed);
        return;
    }
    const NodeId b = node.args[1];
    assert((is_var(a) || is_var(b)) && "CodeGenerator: constant operation was not folded");
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
    const NodeId* args = node.args;
    switch (op_arity(node.op)) {
        case 1:
            emit(opcode(node.op, UnaryForm::acc), 0, 0, 0.0, 0);
            return;
        case 2:
            if (is_leaf(args[1])) {
                const bool var = is_var(args[1]);
                emit(opcode(node.op, var ? BinaryForm::acc_var : BinaryForm::acc_const),
                     var ? var_index(args[1]) : 0, 0, var ? 0.0 : value(args[1]), 0);
            } else if (is_leaf(args[0])) {
                const bool var = is_var(args[0]);
                emit(opcode(node.op, var ? BinaryForm::var_acc : BinaryForm::const_acc),
                     var ? var_index(args[0]) : 0, 0, var ? 0.0 : value(args[0]), 0);
            } else {
                generate(args[1], true);
                emit(opcode(node.op, BinaryForm::stack_acc), 0, 0, 0.0, -1);
            }
            return;
        default:
            if (node.op == Op::Clamp && is_const(args[1]) && is_const(args[2])) {
                emit(opcode(Fixed::clamp_const_const), 0, 0, value(args[1]), 0);
                emit(opcode(Fixed::ret), 0, 0, value(args[2]), 0);  // data only, never run
                return;
            }
            generate(args[1], true);
            generate(args[2], true);
            emit(ternary_opcode(node.op), 0, 0, 0.0, -2);
            return;
    }
}

}  // namespace

std::optional<std::vector<Instr>> generate_code(const Ast& ast, NodeId root) {
    return CodeGenerator(ast).run(root);
}

}  // namespace veldra::detail
