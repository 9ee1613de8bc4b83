#include "expression/expression.h"

#include <limits>

#include "expression/codegen.h"
#include "expression/compiled_program.h"
#include "expression/parser.h"

namespace veldra {
namespace {

// What a default-constructed expression runs: a constant NaN, the language's "undefined".
constexpr detail::Instr UNDEFINED_CODE[] = {
    {detail::opcode(detail::Fixed::load_const), 0, 0, std::numeric_limits<double>::quiet_NaN()},
    {detail::opcode(detail::Fixed::ret), 0, 0, 0.0},
};

}  // namespace

CompiledExpression::CompiledExpression() noexcept {
    reset();
}

CompiledExpression::CompiledExpression(std::shared_ptr<const detail::Program> program) noexcept
    : program_(std::move(program)),
      code_(program_->code.data()),
      run_(detail::runner_for(program_->code)) {}

CompiledExpression::CompiledExpression(CompiledExpression&& other) noexcept
    : program_(std::move(other.program_)), code_(other.code_), run_(other.run_) {
    other.reset();
}

CompiledExpression& CompiledExpression::operator=(CompiledExpression&& other) noexcept {
    if (this != &other) {
        program_ = std::move(other.program_);
        code_ = other.code_;
        run_ = other.run_;
        other.reset();
    }
    return *this;
}

void CompiledExpression::reset() noexcept {
    program_.reset();
    code_ = UNDEFINED_CODE;
    run_ = detail::runner_for(UNDEFINED_CODE);
}

std::string_view CompiledExpression::source() const noexcept {
    return program_ ? std::string_view(program_->source) : std::string_view();
}

std::string_view expr_var_name(ExprVar var) {
    return detail::variable_name(var);
}

ExprVarMask CompiledExpression::variables_read() const noexcept {
    return program_ ? program_->reads : 0;
}

std::size_t CompiledExpression::instruction_count() const noexcept {
    return program_ ? program_->code.size() : 0;
}

std::variant<CompiledExpression, ExpressionError>
ExpressionCompiler::compile_expression_from_string(std::string_view source,
                                                   ExprVarMask given) const {
    auto parsed = detail::parse_expression(source, given);
    if (auto* error = std::get_if<ExpressionError>(&parsed)) {
        return std::move(*error);
    }
    const auto& [ast, root, reads] = std::get<detail::ParsedExpression>(parsed);
    auto code = detail::generate_code(ast, root);
    if (!code) {
        return ExpressionError{1, "expression nested too deeply"};
    }
    auto program = std::make_shared<detail::Program>(
        detail::Program{std::string(source), std::move(*code), reads});
    return CompiledExpression(std::move(program));
}

}  // namespace veldra
