#pragma once
// Shorthands for the expression tests: compile-or-fail and evaluate with named variables.

#include <gtest/gtest.h>

#include <array>
#include <string_view>
#include <variant>

#include "expression/expression.h"

namespace veldra::test {

using Vars = std::array<double, EXPR_VAR_COUNT>;

inline Vars vars_with(std::initializer_list<std::pair<ExprVar, double>> values) {
    Vars vars{};
    for (const auto& [var, value] : values) {
        vars[static_cast<int>(var)] = value;
    }
    return vars;
}

// Fails the test (and returns a default expression, which evaluates to NaN) on a compile error.
inline CompiledExpression compile_ok(std::string_view source) {
    auto result = ExpressionCompiler().compile_expression_from_string(source);
    if (const auto* error = std::get_if<ExpressionError>(&result)) {
        ADD_FAILURE() << "\"" << source << "\" failed at column " << error->column << ": "
                      << error->message;
        return {};
    }
    return std::get<CompiledExpression>(std::move(result));
}

inline double eval(std::string_view source, const Vars& vars = {}) {
    return compile_ok(source).evaluate(vars.data());
}

// The error, or a column-0 marker (never produced by the compiler) when it compiled.
inline ExpressionError compile_error(std::string_view source) {
    auto result = ExpressionCompiler().compile_expression_from_string(source);
    if (auto* error = std::get_if<ExpressionError>(&result)) {
        return *error;
    }
    return ExpressionError{0, "compiled"};
}

}  // namespace veldra::test
