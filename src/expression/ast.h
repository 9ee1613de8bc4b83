#pragma once
// The parsed form of one formula: a flat array of nodes that refer to their operands by index.
// Building a node folds it on the spot when all its operands are constants.

#include <cstdint>
#include <initializer_list>
#include <vector>

#include "expression/expression.h"
#include "expression/ops.h"

namespace veldra::detail {

using NodeId = std::int32_t;
inline constexpr NodeId NO_NODE = -1;

struct Node {
    enum class Kind : std::uint8_t { constant, variable, apply };
    Kind kind = Kind::constant;
    Op op = Op::Neg;                               // apply only
    ExprVar var = ExprVar::O;                      // variable only
    double value = 0.0;                            // constant only
    NodeId args[3] = {NO_NODE, NO_NODE, NO_NODE};  // apply only: op_arity(op) operands

    bool is_leaf() const { return kind != Kind::apply; }
};

class Ast {
public:
    NodeId constant(double value);
    NodeId variable(ExprVar var);
    // Operands are evaluated left to right in the formula's order; folds constant operations
    // and writes x^2 as a square (see Op::Square) before folding, so both paths agree.
    NodeId apply(Op op, std::initializer_list<NodeId> args);

    const Node& operator[](NodeId id) const { return nodes_[static_cast<std::size_t>(id)]; }
    bool is_constant(NodeId id, double value) const;

private:
    NodeId add(const Node& node);

    std::vector<Node> nodes_;
};

}  // namespace veldra::detail
