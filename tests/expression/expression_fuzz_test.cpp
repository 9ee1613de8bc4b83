// Random and mangled formulas must compile or be refused with a sensible column, never crash;
// and folding constants must not change any result. Run under the sanitizers
// (-DVELDRA_SANITIZE=ON) after changing the lexer, parser or code generator.

#include <gtest/gtest.h>

#include <cmath>
#include <cstring>
#include <random>
#include <string>
#include <vector>

#include "expression_test_util.h"

namespace veldra::test {
namespace {

using Engine = std::mt19937;

std::size_t pick(Engine& engine, std::size_t count) {
    return std::uniform_int_distribution<std::size_t>(0, count - 1)(engine);
}

Vars random_vars(Engine& engine) {
    std::uniform_real_distribution<double> value(-3.0, 3.0);
    Vars vars;
    for (double& v : vars) {
        v = value(engine);
    }
    return vars;
}

void expect_compiles_or_fails_cleanly(const std::string& source, Engine& engine) {
    auto result = ExpressionCompiler().compile_expression_from_string(source);
    if (const auto* error = std::get_if<ExpressionError>(&result)) {
        EXPECT_GE(error->column, 1u) << source;
        EXPECT_LE(error->column, source.size() + 1) << source;
        EXPECT_FALSE(error->message.empty()) << source;
        return;
    }
    const CompiledExpression& expression = std::get<CompiledExpression>(result);
    EXPECT_EQ(expression.source(), source);
    const Vars vars = random_vars(engine);
    static_cast<void>(expression.evaluate(vars.data()));
}

TEST(ExpressionFuzz, RandomTokenSoup) {
    static const char* const PIECES[] = {"C",        "E",     "ENERGY_LEVEL",
                                         "DISTANCE", "e",     "pi",
                                         "x",        "1",     "0.5",
                                         ".5",       "1e3",   "2e",
                                         "1e999",    "(",     "(",
                                         ")",        ")",     ",",
                                         "+",        "-",     "*",
                                         "/",        "%",     "^",
                                         "!",        "<",     "<=",
                                         ">=",       "==",    "!=",
                                         "&&",       "||",    "?",
                                         ":",        "=",     "&",
                                         "|",        "min(",  "max(",
                                         "clamp(",   "lerp(", "sqrt(",
                                         "pow(",     "round", " ",
                                         "\t",       "$",     "\xC3\xA9",
                                         "\xFF",     "\0"};
    Engine engine(12345);
    for (int i = 0; i < 4000; ++i) {
        std::string source;
        const std::size_t length = 1 + pick(engine, 25);
        for (std::size_t j = 0; j < length; ++j) {
            const char* piece = PIECES[pick(engine, std::size(PIECES))];
            source += *piece == '\0' ? std::string(1, '\0') : std::string(piece);
        }
        expect_compiles_or_fails_cleanly(source, engine);
    }
}

TEST(ExpressionFuzz, MutatedFormulas) {
    static const char* const FORMULAS[] = {
        "clamp(1 + 2*C*(1 - ENERGY_LEVEL) - 0.5*N, 0, 5)",
        "(1 - DISTANCE) * (0.5 + 0.5*A)",
        "WEIGHT * (1 + C)",
        "ENERGY_LEVEL > 0.5 ? 1 + E : 0.2",
        "min(1, TIME^2 + 0.5*sqrt(ENERGY_LEVEL), max(O, -N, 2e-1)) % 3",
        "!(C >= 0.5 && E != 0 || A <= .25) ? lerp(O, 1, TIME) : round(pow(2, N))"};
    static const char ALPHABET[] = "CEONAT()+-*/%^!<>=&|?:,.0123456789e ";
    Engine engine(777);
    for (int i = 0; i < 4000; ++i) {
        std::string source = FORMULAS[pick(engine, std::size(FORMULAS))];
        const std::size_t edits = 1 + pick(engine, 3);
        for (std::size_t e = 0; e < edits && !source.empty(); ++e) {
            const std::size_t at = pick(engine, source.size());
            switch (pick(engine, 4)) {
                case 0:
                    source.erase(at, 1 + pick(engine, 4));
                    break;
                case 1:
                    source.insert(at, 1, ALPHABET[pick(engine, sizeof ALPHABET - 1)]);
                    break;
                case 2:
                    source.insert(at,
                                  source.substr(pick(engine, source.size()), 1 + pick(engine, 6)));
                    break;
                default:
                    std::swap(source[at], source[pick(engine, source.size())]);
                    break;
            }
        }
        expect_compiles_or_fails_cleanly(source, engine);
    }
}

// Random well-formed formulas, written twice: with plain literals, which fold, and with each
// literal k written as (k+DISTANCE), which cannot fold but equals k when DISTANCE is 0.
class FormulaWriter {
public:
    explicit FormulaWriter(Engine& engine) : engine_(engine) {}

    struct Pair {
        std::string folding;
        std::string unfoldable;
    };

    Pair write(int depth) {
        if (depth == 0 || pick(engine_, 4) == 0) {
            return leaf();
        }
        static const char* const PREFIX[] = {"-",   "!",     "abs",  "sqrt",  "exp",
                                             "log", "floor", "ceil", "round", "sign"};
        static const char* const INFIX[] = {"+",  "-", "*",  "/",  "%",  "^",  "<",
                                            "<=", ">", ">=", "==", "!=", "&&", "||"};
        static const char* const CALLS[] = {"min", "max", "pow", "clamp", "lerp"};
        switch (pick(engine_, 4)) {
            case 0:
                return call(PREFIX[pick(engine_, std::size(PREFIX))], 1, depth);
            case 1: {
                const Pair a = write(depth - 1);
                const Pair b = write(depth - 1);
                const std::string op = INFIX[pick(engine_, std::size(INFIX))];
                return {"(" + a.folding + ")" + op + "(" + b.folding + ")",
                        "(" + a.unfoldable + ")" + op + "(" + b.unfoldable + ")"};
            }
            case 2: {
                const std::string name = CALLS[pick(engine_, std::size(CALLS))];
                const std::size_t count = name == "pow"                    ? 2
                                          : name == "min" || name == "max" ? 2 + pick(engine_, 3)
                                                                           : 3;
                return call(name, count, depth);
            }
            default: {
                const Pair c = write(depth - 1);
                const Pair a = write(depth - 1);
                const Pair b = write(depth - 1);
                return {"(" + c.folding + ")?(" + a.folding + "):(" + b.folding + ")",
                        "(" + c.unfoldable + ")?(" + a.unfoldable + "):(" + b.unfoldable + ")"};
            }
        }
    }

private:
    Pair leaf() {
        static const char* const VARIABLES[] = {"O",      "C",   "E", "A", "N", "ENERGY_LEVEL",
                                                "WEIGHT", "TIME"};
        static const char* const LITERALS[] = {"0",   "0.5", "1",    "2",  "3",
                                               "0.1", "10",  "1e-3", "2.5"};
        if (pick(engine_, 2) == 0) {
            const std::string name = VARIABLES[pick(engine_, std::size(VARIABLES))];
            return {name, name};
        }
        const std::string literal = LITERALS[pick(engine_, std::size(LITERALS))];
        return {literal, "(" + literal + "+DISTANCE)"};
    }

    // Prefix operators are written like calls too: "-(x)", "!(x)".
    Pair call(const std::string& name, std::size_t count, int depth) {
        Pair result{name + "(", name + "("};
        for (std::size_t i = 0; i < count; ++i) {
            const Pair arg = write(depth - 1);
            const char* separator = i == 0 ? "" : ",";
            result.folding += separator + arg.folding;
            result.unfoldable += separator + arg.unfoldable;
        }
        result.folding += ")";
        result.unfoldable += ")";
        return result;
    }

    Engine& engine_;
};

TEST(ExpressionFuzz, FoldingNeverChangesAResult) {
    Engine engine(2024);
    FormulaWriter writer(engine);
    int folded_somewhere = 0;
    for (int i = 0; i < 2000; ++i) {
        const FormulaWriter::Pair formula = writer.write(5);
        const CompiledExpression folding = compile_ok(formula.folding);
        const CompiledExpression unfoldable = compile_ok(formula.unfoldable);
        folded_somewhere += folding.instruction_count() < unfoldable.instruction_count();
        for (int j = 0; j < 4; ++j) {
            Vars vars = random_vars(engine);
            vars[static_cast<int>(ExprVar::DISTANCE)] = 0.0;
            const double a = folding.evaluate(vars.data());
            const double b = unfoldable.evaluate(vars.data());
            ASSERT_TRUE((std::isnan(a) && std::isnan(b)) || std::memcmp(&a, &b, sizeof a) == 0)
                << formula.folding << "\n = " << a << " but unfolded = " << b;
        }
    }
    EXPECT_GT(folded_somewhere, 500);  // the comparison is only worth something if folding ran
}

}  // namespace
}  // namespace veldra::test
