#pragma once
// The formula workbench's model: a configuration formula picked by its key, edited as text,
// checked as the loader would compile it, and evaluated over the traits the configuration
// offers and over energy, so a designer sees what an edit does before it touches a trial.
// Applying it goes through configuration_apply.h; the panel (workbench_panel.h) only shows this.

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "config/config_method.h"
#include "config/game_configurations.h"

namespace veldra {

// Every configuration key that holds a formula, in the configuration table's order.
const std::vector<std::string>& callable_configuration_keys();
// The formula of `key` in `configs`, or nullptr when the key holds none.
const ConfigMethod* find_configuration_method(const GameConfigurations& configs,
                                              std::string_view key);

struct FormulaProblem {
    int line = 1;    // 1-based, in the edited text
    int column = 1;  // 1-based byte in that line
    std::string message;
};
// "line 2, column 7: expected ')'".
std::string describe_formula_problem(const FormulaProblem& problem);

// The edited text compiled as the loader compiles `key`'s formula (with the variables that key
// is given); the problem when it does not compile.
struct CheckedFormula {
    std::optional<CompiledExpression> compiled;
    std::optional<FormulaProblem> problem;
};
CheckedFormula check_formula(std::string_view key, std::string_view text);

// Energy ratios the table shows, empty to full.
inline constexpr double WORKBENCH_ENERGIES[] = {0, 0.25, 0.5, 0.75, 1};

// Values of a formula: one row per offered value of each trait (the other four at 0), one
// column per WORKBENCH_ENERGIES entry. `third` is the value of the key's third argument
// (weight, time or distance) where it has one.
struct FormulaTable {
    struct Row {
        std::string label;  // "O = -1"
        PersonalityTraits traits;
        std::vector<double> values;
    };
    std::vector<Row> rows;
};
FormulaTable formula_table(const GameConfigurations& configs, ConfigMethodKind kind,
                           const CompiledExpression& formula, double third);

// The formula's value at `samples` energy ratios from 0 to 1, for a small plot.
std::vector<float> formula_energy_curve(ConfigMethodKind kind, const CompiledExpression& formula,
                                        const PersonalityTraits& traits, double third, int samples);

}  // namespace veldra
