// Compiled behaviour formulas against the same formulas written by hand in C++ and against
// muparser. Every iteration loads a different set of the nine variables, the way a tick feeds
// one human after another.

#include <benchmark/benchmark.h>
#include <muParser.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <random>
#include <string>
#include <variant>
#include <vector>

#include "bench_formulas.h"
#include "expression/expression.h"

namespace veldra {
namespace {

using Vars = std::array<double, EXPR_VAR_COUNT>;

constexpr std::size_t SET_COUNT = 1024;  // a power of two, so picking a set is a mask

// Traits in [-1, 1] (the shipped configuration's scale), energy level, time and distance in
// [0, 1], weights in [0, 5].
const std::vector<Vars>& variable_sets() {
    static const std::vector<Vars> sets = [] {
        std::mt19937_64 engine(20240601);
        std::uniform_real_distribution<double> unit(0.0, 1.0);
        std::vector<Vars> result(SET_COUNT);
        for (Vars& vars : result) {
            for (int i = 0; i < EXPR_VAR_COUNT; ++i) {
                const double value = unit(engine);
                switch (static_cast<ExprVar>(i)) {
                    case ExprVar::ENERGY_LEVEL:
                    case ExprVar::TIME:
                    case ExprVar::DISTANCE:
                        vars[i] = value;
                        break;
                    case ExprVar::WEIGHT:
                        vars[i] = 5.0 * value;
                        break;
                    default:
                        vars[i] = 2.0 * value - 1.0;
                        break;
                }
            }
        }
        return result;
    }();
    return sets;
}

double v(const double* vars, ExprVar var) {
    return vars[static_cast<int>(var)];
}

// The formulas of bench_formulas.h as a programmer would write them in C++. Lambdas, so each
// has its own type and is inlined into its benchmark loop.
const auto native_action_weight = [](const double* x) {
    using enum ExprVar;
    return std::clamp(1 + 2 * v(x, C) * (1 - v(x, ENERGY_LEVEL)) - 0.5 * v(x, N), 0.0, 5.0);
};
const auto native_action_weight_long = [](const double* x) {
    using enum ExprVar;
    return std::clamp(
        1 + 2 * v(x, C) * (1 - v(x, ENERGY_LEVEL)) - 0.5 * v(x, N) + 0.25 * v(x, O) * v(x, E), 0.0,
        5.0);
};
const auto native_target_weight = [](const double* x) {
    return (1 - v(x, ExprVar::DISTANCE)) * (0.5 + 0.5 * v(x, ExprVar::A));
};
const auto native_energy_switch = [](const double* x) {
    using enum ExprVar;
    return v(x, ENERGY_LEVEL) > 0.5 ? 1 + v(x, E) : 0.2;
};
const auto native_current_action = [](const double* x) {
    return v(x, ExprVar::WEIGHT) * (1 + v(x, ExprVar::C));
};
const auto native_trial_score = [](const double* x) {
    using enum ExprVar;
    return 0.7 * v(x, TIME) + 0.3 * std::max(0.0, v(x, ENERGY_LEVEL) - 0.2);
};

// Runs `evaluate` on a fresh copy of the next variable set each iteration.
template <class Evaluate>
void run_loop(benchmark::State& state, double* vars, Evaluate evaluate) {
    const std::vector<Vars>& sets = variable_sets();
    std::size_t i = 0;
    for (auto _ : state) {
        const Vars& next = sets[i++ & (SET_COUNT - 1)];
        for (int j = 0; j < EXPR_VAR_COUNT; ++j) {
            vars[j] = next[j];
        }
        double result = evaluate(vars);
        benchmark::DoNotOptimize(result);
    }
}

template <class Native>
void bench_native(benchmark::State& state, Native native) {
    double vars[EXPR_VAR_COUNT];
    run_loop(state, vars, native);
}

CompiledExpression compile_or_die(const char* source) {
    auto result = ExpressionCompiler().compile_expression_from_string(source);
    if (auto* error = std::get_if<ExpressionError>(&result)) {
        std::fprintf(stderr, "bench formula \"%s\" does not compile: %s\n", source,
                     error->message.c_str());
        std::abort();
    }
    return std::get<CompiledExpression>(std::move(result));
}

// Refuses to time a compiled formula that disagrees with its hand-written twin.
template <class Native>
bool agrees(const CompiledExpression& compiled, Native native) {
    for (const Vars& vars : variable_sets()) {
        if (std::fabs(compiled.evaluate(vars.data()) - native(vars.data())) > 1e-12) {
            return false;
        }
    }
    return true;
}

template <class Native>
void bench_compiled(benchmark::State& state, const char* source, Native native) {
    const CompiledExpression expression = compile_or_die(source);
    if (!agrees(expression, native)) {
        state.SkipWithError("compiled result differs from the hand-written formula");
        return;
    }
    double vars[EXPR_VAR_COUNT];
    run_loop(state, vars, [&](const double* x) { return expression.evaluate(x); });
}

double mu_clamp(double x, double lo, double hi) {
    return std::min(std::max(x, lo), hi);
}

void bench_muparser(benchmark::State& state, const char* source) {
    static constexpr const char* NAMES[EXPR_VAR_COUNT] = {
        "O", "C", "E", "A", "N", "ENERGY_LEVEL", "WEIGHT", "TIME", "DISTANCE"};
    double vars[EXPR_VAR_COUNT] = {};  // bound by address: the parser reads them in place
    mu::Parser parser;
    try {
        for (int i = 0; i < EXPR_VAR_COUNT; ++i) {
            parser.DefineVar(NAMES[i], &vars[i]);
        }
        parser.DefineFun("clamp", mu_clamp);
        parser.SetExpr(source);
        parser.Eval();
    } catch (const mu::Parser::exception_type& error) {
        state.SkipWithError(error.GetMsg().c_str());
        return;
    }
    run_loop(state, vars, [&](const double*) { return parser.Eval(); });
}

// With --benchmark_repetitions, the fastest repetition is reported too: on a shared machine it
// is the figure least disturbed by other work.
double fastest(const std::vector<double>& times) {
    return *std::min_element(times.begin(), times.end());
}

template <class Native>
void register_formula(const bench::BenchFormula& formula, Native native) {
    const std::string name = formula.name;
    benchmark::RegisterBenchmark((name + "/compiled").c_str(), bench_compiled<Native>,
                                 formula.source, native)
        ->ComputeStatistics("min", fastest);
    benchmark::RegisterBenchmark((name + "/native").c_str(), bench_native<Native>, native)
        ->ComputeStatistics("min", fastest);
    benchmark::RegisterBenchmark((name + "/muparser").c_str(), bench_muparser, formula.source)
        ->ComputeStatistics("min", fastest);
}

const bool registered = [] {
    register_formula(bench::FORMULA_ACTION_WEIGHT, native_action_weight);
    register_formula(bench::FORMULA_ACTION_WEIGHT_LONG, native_action_weight_long);
    register_formula(bench::FORMULA_TARGET_WEIGHT, native_target_weight);
    register_formula(bench::FORMULA_ENERGY_SWITCH, native_energy_switch);
    register_formula(bench::FORMULA_CURRENT_ACTION, native_current_action);
    register_formula(bench::FORMULA_TRIAL_SCORE, native_trial_score);
    return true;
}();

}  // namespace
}  // namespace veldra

BENCHMARK_MAIN();
