#include "config/config_formula_check.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <span>
#include <type_traits>
#include <vector>

#include "runtime/number_format.h"

namespace veldra {

namespace {

constexpr std::array<ExprVar, 5> TRAIT_VARS = {ExprVar::O, ExprVar::C, ExprVar::E, ExprVar::A,
                                               ExprVar::N};

std::vector<double> numbers_of(const Value& options) {
    std::vector<double> values;
    for (std::size_t i = 0; options.is_array() && i < options.size(); ++i)
        if (options.at(i).is_number())
            values.push_back(options.at(i).as_number());
    return values;
}

// The smallest, middle and largest of `values`.
std::vector<double> ends_and_middle(std::vector<double> values) {
    std::sort(values.begin(), values.end());
    values.erase(std::unique(values.begin(), values.end()), values.end());
    if (values.size() <= 3)
        return values;
    return {values.front(), values[values.size() / 2], values.back()};
}

// Where one formula is evaluated: the values of each trait, the energy levels and the third
// arguments. A variable the formula does not name takes one value, whichever.
struct Situations {
    std::array<std::vector<double>, 5> traits;
    std::vector<double> energy_levels;
    std::vector<double> thirds;  // computed per traits and energy when `third_is_weight`
    bool third_is_weight = false;

    std::size_t evaluations() const {
        std::size_t count = energy_levels.size() * (third_is_weight ? 9 : thirds.size());
        for (const auto& values : traits)
            count *= values.size();
        return count;
    }
};

Situations situations_of(const GameConfigurations& configs, std::string_view key,
                         const ConfigMethod& method) {
    const ExprVarMask reads = method.variables_read();
    const ExprVarMask given = config_formula_variables(key);
    auto varies = [&](ExprVar var) {
        return expr_var_mask_has(reads, var) && expr_var_mask_has(given, var);
    };
    const Value* options[5] = {&configs.options_openness, &configs.options_conscientiousness,
                               &configs.options_extraversion, &configs.options_agreeableness,
                               &configs.options_neuroticism};
    Situations s;
    for (std::size_t i = 0; i < TRAIT_VARS.size(); ++i) {
        std::vector<double> values = numbers_of(*options[i]);
        if (values.empty())
            values.push_back(0);
        if (!expr_var_mask_has(reads, TRAIT_VARS[i]))
            values.resize(1);
        s.traits[i] = std::move(values);
    }
    const bool with_energy = expr_var_mask_has(given, ExprVar::ENERGY_LEVEL);
    s.energy_levels = varies(ExprVar::ENERGY_LEVEL) ? std::vector<double>{0, 0.5, 1}
                      : with_energy                 ? std::vector<double>{1}
                                                    : std::vector<double>{UNDEFINED_NUMBER};
    switch (method.kind()) {
        case ConfigMethodKind::weight:
            s.third_is_weight = varies(ExprVar::WEIGHT);
            s.thirds = {1};
            break;
        case ConfigMethodKind::time:
            s.thirds = varies(ExprVar::TIME) ? std::vector<double>{0.5, 1} : std::vector<double>{1};
            break;
        case ConfigMethodKind::distance:
            s.thirds =
                varies(ExprVar::DISTANCE) ? std::vector<double>{0, 0.5, 1} : std::vector<double>{0};
            break;
        case ConfigMethodKind::plain:
            s.thirds = {UNDEFINED_NUMBER};
            break;
    }
    if (s.evaluations() > MAX_CHECKED_EVALUATIONS)
        for (auto& values : s.traits)
            values = ends_and_middle(std::move(values));
    return s;
}

std::array<double, 9> action_weights(const GameConfigurations& c, const PersonalityTraits& t,
                                     double energy) {
    return {c.weight_approach_food(t, energy),  c.weight_approach_monster(t, energy),
            c.weight_approach_human(t, energy), c.weight_avoid_monster(t, energy),
            c.weight_avoid_human(t, energy),    c.weight_attack_monster(t, energy),
            c.weight_attack_human(t, energy),   c.weight_exchange_with_human(t, energy),
            c.weight_explore(t, energy)};
}

std::string describe(std::string_view key, const ConfigMethod& method, double result,
                     const PersonalityTraits& t, double energy, double third) {
    std::string text =
        "Configuration variable \"" + std::string(key) + "\" (\"" + std::string(method.source()) +
        "\") gives " + (std::isnan(result) ? "NaN" : "an infinity") +
        " for O=" + number_to_string(t.openness) + ", C=" + number_to_string(t.conscientiousness) +
        ", E=" + number_to_string(t.extraversion) + ", A=" + number_to_string(t.agreeableness) +
        ", N=" + number_to_string(t.neuroticism);
    const ExprVarMask given = config_formula_variables(key);
    if (expr_var_mask_has(given, ExprVar::ENERGY_LEVEL))
        text += ", ENERGY_LEVEL=" + number_to_string(energy);
    const ExprVar third_var = method.kind() == ConfigMethodKind::weight ? ExprVar::WEIGHT
                              : method.kind() == ConfigMethodKind::time ? ExprVar::TIME
                                                                        : ExprVar::DISTANCE;
    if (method.kind() != ConfigMethodKind::plain)
        text += ", " + std::string(expr_var_name(third_var)) + "=" + number_to_string(third);
    text +=
        ": a formula must give a number for every combination of the trait values in "
        "options_*.";
    const ExprVarMask not_given = static_cast<ExprVarMask>(method.variables_read() & ~given);
    for (int i = 0; i < EXPR_VAR_COUNT; ++i) {
        const auto var = static_cast<ExprVar>(i);
        if (expr_var_mask_has(not_given, var))
            text += " It reads " + std::string(expr_var_name(var)) +
                    ", which this key's formula is not given (NaN there).";
    }
    return text;
}

// The first situation in which `method` gives no number, described; empty when there is none.
std::string method_problem(const GameConfigurations& configs, std::string_view key,
                           const ConfigMethod& method) {
    const Situations s = situations_of(configs, key, method);
    PersonalityTraits t;
    for (double o : s.traits[0])
        for (double c : s.traits[1])
            for (double e : s.traits[2])
                for (double a : s.traits[3])
                    for (double n : s.traits[4]) {
                        t = PersonalityTraits{o, c, e, a, n};
                        for (double energy : s.energy_levels) {
                            const auto weights = s.third_is_weight
                                                     ? action_weights(configs, t, energy)
                                                     : std::array<double, 9>{};
                            const std::span<const double> thirds =
                                s.third_is_weight ? std::span<const double>(weights)
                                                  : std::span<const double>(s.thirds);
                            for (double third : thirds) {
                                const double result = method(t, energy, third);
                                if (!std::isfinite(result))
                                    return describe(key, method, result, t, energy, third);
                            }
                        }
                    }
    return {};
}

}  // namespace

std::string config_formulas_problem(const GameConfigurations& configs) {
    std::string problem;
    visit_config_fields(
        configs, [&](std::string_view key, std::string_view, ConfigRule, const auto& field) {
            if constexpr (std::is_same_v<std::decay_t<decltype(field)>, ConfigMethod>) {
                if (problem.empty() && field.is_set())
                    problem = method_problem(configs, key, field);
            }
        });
    return problem;
}

}  // namespace veldra
