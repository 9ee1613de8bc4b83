#pragma once
// Behaviour formulas ("clamp(1 + 2*C*(1 - ENERGY_LEVEL), 0, 5)") compiled once when a
// configuration loads and then evaluated many times per tick. The language is described for
// researchers in docs/expressions.md.

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <variant>

namespace veldra {

// The nine names a formula can read, in the order of the array passed to evaluate().
enum class ExprVar : std::uint8_t { O, C, E, A, N, ENERGY_LEVEL, WEIGHT, TIME, DISTANCE };
inline constexpr int EXPR_VAR_COUNT = 9;

// A set of variables: which ones a formula is given. A formula of a key that is not given
// ENERGY_LEVEL would read NaN there, so the compiler refuses the name instead.
using ExprVarMask = std::uint16_t;
constexpr ExprVarMask expr_var_bit(ExprVar var) {
    return static_cast<ExprVarMask>(1u << static_cast<unsigned>(var));
}
constexpr bool expr_var_mask_has(ExprVarMask mask, ExprVar var) {
    return (mask & expr_var_bit(var)) != 0;
}
inline constexpr ExprVarMask EXPR_ALL_VARS = (1u << EXPR_VAR_COUNT) - 1;

// The name a formula reads `var` by ("O", "ENERGY_LEVEL").
std::string_view expr_var_name(ExprVar var);

namespace detail {
struct Instr;
struct Program;
using Runner = double (*)(const Instr* code, const double* variables) noexcept;
}  // namespace detail

// A compiled formula. Copies share one immutable program, so holding one in a configuration
// struct and copying that struct is cheap. A default-constructed expression evaluates to NaN.
class CompiledExpression {
public:
    CompiledExpression() noexcept;
    CompiledExpression(const CompiledExpression& other) noexcept = default;
    CompiledExpression& operator=(const CompiledExpression& other) noexcept = default;
    // A moved-from expression is left default-constructed.
    CompiledExpression(CompiledExpression&& other) noexcept;
    CompiledExpression& operator=(CompiledExpression&& other) noexcept;
    ~CompiledExpression() = default;

    // `variables` points to EXPR_VAR_COUNT values in ExprVar order. Never allocates or
    // throws; division by zero and domain errors give IEEE infinities and NaN. Touches no
    // shared state, so several threads may evaluate one expression at once.
    double evaluate(const double* variables) const noexcept { return run_(code_, variables); }

    // The formula as written in the configuration.
    std::string_view source() const noexcept;
    // The variables the formula names anywhere, in a branch taken or not.
    ExprVarMask variables_read() const noexcept;
    // Length of the compiled program, in instructions: a rough measure of its cost.
    std::size_t instruction_count() const noexcept;

private:
    friend class ExpressionCompiler;
    explicit CompiledExpression(std::shared_ptr<const detail::Program> program) noexcept;
    void reset() noexcept;  // to the default state

    std::shared_ptr<const detail::Program> program_;
    // program_'s first instruction and its evaluator, kept here so evaluate() skips one
    // indirection.
    const detail::Instr* code_;
    detail::Runner run_;
};

struct ExpressionError {
    std::size_t column;   // 1-based byte position in the source where the problem was found
    std::string message;  // e.g. "expected ')'", "unknown name \"foo\""
};

// Stateless; one compiler can serve a whole configuration file.
class ExpressionCompiler {
public:
    std::variant<CompiledExpression, ExpressionError> compile_expression_from_string(
        std::string_view source, ExprVarMask given = EXPR_ALL_VARS) const;
};

}  // namespace veldra
