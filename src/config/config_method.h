#pragma once
// A behaviour formula of the configuration, compiled once at load time. It is called with a
// human's traits, its energy as a fraction of its maximum and, for three kinds of key, a third
// argument: the running action's weight, the elapsed fraction of the trial, or a candidate's
// relative distance.

#include <cmath>
#include <limits>
#include <optional>

#include "config/personality_traits.h"
#include "expression/expression.h"

namespace veldra {

// Which variable the third call argument binds.
enum class ConfigMethodKind { plain, weight, time, distance };

// The nine names the formulas read. They are set before every evaluation and keep their values
// afterwards; one block per loaded configuration (ConfigsState), shared by every formula.
struct ExpressionGlobals {
    double values[EXPR_VAR_COUNT] = {};
};

inline constexpr double UNDEFINED_NUMBER = std::numeric_limits<double>::quiet_NaN();

class ConfigMethod {
public:
    ConfigMethod() = default;
    ConfigMethod(CompiledExpression expression, ConfigMethodKind kind, ExpressionGlobals* globals)
        : expression_(std::move(expression)), kind_(kind), globals_(globals) {}

    // A variable the call does not bind is undefined, which reads as NaN in a formula.
    double operator()(const PersonalityTraits& traits, double energy_level = UNDEFINED_NUMBER,
                      double third = UNDEFINED_NUMBER) const {
        double* v = globals_->values;
        v[static_cast<int>(ExprVar::O)] = traits.openness;
        v[static_cast<int>(ExprVar::C)] = traits.conscientiousness;
        v[static_cast<int>(ExprVar::E)] = traits.extraversion;
        v[static_cast<int>(ExprVar::A)] = traits.agreeableness;
        v[static_cast<int>(ExprVar::N)] = traits.neuroticism;
        v[static_cast<int>(ExprVar::ENERGY_LEVEL)] = energy_level;
        v[static_cast<int>(ExprVar::WEIGHT)] =
            kind_ == ConfigMethodKind::weight ? third : UNDEFINED_NUMBER;
        v[static_cast<int>(ExprVar::TIME)] =
            kind_ == ConfigMethodKind::time ? third : UNDEFINED_NUMBER;
        v[static_cast<int>(ExprVar::DISTANCE)] =
            kind_ == ConfigMethodKind::distance ? third : UNDEFINED_NUMBER;
        return expression_->evaluate(v);
    }

    bool is_set() const { return expression_.has_value(); }
    ConfigMethodKind kind() const { return kind_; }
    ExprVarMask variables_read() const { return expression_ ? expression_->variables_read() : 0; }
    std::string_view source() const {
        return expression_ ? expression_->source() : std::string_view{};
    }

private:
    std::optional<CompiledExpression> expression_;
    ConfigMethodKind kind_ = ConfigMethodKind::plain;
    ExpressionGlobals* globals_ = nullptr;
};

// The variables a key's formula is given: the five traits always; ENERGY_LEVEL where the
// callers pass the human's energy (action and exchange weights, target weights, the running
// action's modifier, the score); and the third argument of its kind. Another variable reads
// NaN: a formula may name one only in a branch that the offered traits never take, which the
// load-time check of every formula's results makes sure of (config_formula_check.h).
ExprVarMask config_formula_variables(std::string_view key);

}  // namespace veldra
