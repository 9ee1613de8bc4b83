#pragma once
// Turns a formula's text into an Ast, or the first error found in it.

#include <string_view>
#include <variant>

#include "expression/ast.h"
#include "expression/expression.h"

namespace veldra::detail {

// Deeper nesting (parentheses, calls, branches, prefix operators, exponents) is refused, which
// keeps the parser's recursion bounded whatever the input.
inline constexpr int MAX_NESTING = 256;

struct ParsedExpression {
    Ast ast;
    NodeId root = NO_NODE;
    ExprVarMask reads = 0;  // every variable the text names, taken branch or not
};

// The name a formula reads `var` by ("ENERGY_LEVEL").
std::string_view variable_name(ExprVar var);

// A name of a variable outside `given` is an error at its column.
std::variant<ParsedExpression, ExpressionError> parse_expression(std::string_view source,
                                                                 ExprVarMask given);

}  // namespace veldra::detail
