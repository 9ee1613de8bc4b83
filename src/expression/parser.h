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
};

// A name of a variable outside `given` is an error at its column.
std::variant<ParsedExpression, ExpressionError> parse_expression(std::string_view source,
                                                                 ExprVarMask given);

}  // namespace veldra::detail
