// The formula compiler, and evaluating whatever compiles.
#include <cmath>

#include "expression/expression.h"
#include "fuzz/fuzz_support.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace veldra;
    const std::string_view source = fuzzing::as_text(data, size);
    const ExpressionCompiler compiler;
    for (ExprVarMask given : {EXPR_ALL_VARS, ExprVarMask{0x1F}}) {
        auto compiled = compiler.compile_expression_from_string(source, given);
        if (auto* expression = std::get_if<CompiledExpression>(&compiled)) {
            const double variables[EXPR_VAR_COUNT] = {1, -1, 0.5, 0, 2, 0.25, 3, 0.75, 1e300};
            (void)expression->evaluate(variables);
            if (expression->source() != source)
                __builtin_trap();
        } else if (std::get<ExpressionError>(compiled).message.empty()) {
            __builtin_trap();  // every refusal says why
        }
    }
    return 0;
}
