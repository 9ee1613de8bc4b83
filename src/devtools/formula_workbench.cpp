#include "devtools/formula_workbench.h"

#include <array>

#include "expression/expression.h"
#include "runtime/number_format.h"

namespace veldra {

namespace {

// A formula evaluated on its own block of variables, never the live configuration's.
double evaluate(ConfigMethodKind kind, const CompiledExpression& formula,
                const PersonalityTraits& traits, double energy, double third) {
    ExpressionGlobals globals;
    const ConfigMethod method(formula, kind, &globals);
    return method(traits, energy, third);
}

FormulaProblem locate(std::string_view text, const ExpressionError& error) {
    FormulaProblem problem;
    problem.message = error.message;
    const std::size_t end = std::min(text.size(), error.column > 0 ? error.column - 1 : 0);
    for (std::size_t i = 0; i < end; ++i) {
        if (text[i] == '\n') {
            ++problem.line;
            problem.column = 1;
        } else {
            ++problem.column;
        }
    }
    return problem;
}

}  // namespace

const std::vector<std::string>& callable_configuration_keys() {
    static const std::vector<std::string> keys = [] {
        std::vector<std::string> found;
        const GameConfigurations configs;
        visit_config_fields(configs,
                            [&](const char* name, std::string_view type, ConfigRule, const auto&) {
                                if (type == "method")
                                    found.emplace_back(name);
                            });
        return found;
    }();
    return keys;
}

const ConfigMethod* find_configuration_method(const GameConfigurations& configs,
                                              std::string_view key) {
    const ConfigMethod* found = nullptr;
    visit_config_fields(
        configs, [&](const char* name, std::string_view, ConfigRule, const auto& field) {
            if constexpr (std::is_same_v<std::decay_t<decltype(field)>, ConfigMethod>)
                if (key == name)
                    found = &field;
        });
    return found;
}

std::string describe_formula_problem(const FormulaProblem& problem) {
    return "line " + std::to_string(problem.line) + ", column " + std::to_string(problem.column) +
           ": " + problem.message;
}

CheckedFormula check_formula(std::string_view key, std::string_view text) {
    CheckedFormula checked;
    auto result =
        ExpressionCompiler().compile_expression_from_string(text, config_formula_variables(key));
    if (auto* error = std::get_if<ExpressionError>(&result))
        checked.problem = locate(text, *error);
    else
        checked.compiled = std::get<CompiledExpression>(std::move(result));
    return checked;
}

FormulaTable formula_table(const GameConfigurations& configs, ConfigMethodKind kind,
                           const CompiledExpression& formula, double third) {
    const std::array<std::pair<const char*, const Value*>, 5> traits{{
        {"O", &configs.options_openness},
        {"C", &configs.options_conscientiousness},
        {"E", &configs.options_extraversion},
        {"A", &configs.options_agreeableness},
        {"N", &configs.options_neuroticism},
    }};
    FormulaTable table;
    for (std::size_t t = 0; t < traits.size(); ++t) {
        const Value& options = *traits[t].second;
        if (!options.is_array())
            continue;
        for (std::size_t i = 0; i < options.size(); ++i) {
            if (!options.at(i).is_number())
                continue;
            const double value = options.at(i).as_number();
            FormulaTable::Row row;
            row.label = std::string(traits[t].first) + " = " + number_to_string(value);
            double* fields[5] = {&row.traits.openness, &row.traits.conscientiousness,
                                 &row.traits.extraversion, &row.traits.agreeableness,
                                 &row.traits.neuroticism};
            *fields[t] = value;
            for (double energy : WORKBENCH_ENERGIES)
                row.values.push_back(evaluate(kind, formula, row.traits, energy, third));
            table.rows.push_back(std::move(row));
        }
    }
    return table;
}

std::vector<float> formula_energy_curve(ConfigMethodKind kind, const CompiledExpression& formula,
                                        const PersonalityTraits& traits, double third,
                                        int samples) {
    std::vector<float> curve;
    for (int i = 0; i < samples; ++i) {
        const double energy = samples > 1 ? static_cast<double>(i) / (samples - 1) : 1;
        curve.push_back(static_cast<float>(evaluate(kind, formula, traits, energy, third)));
    }
    return curve;
}

}  // namespace veldra
