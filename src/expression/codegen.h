#pragma once
// Turns a (folded) Ast into the instruction array of compiled_program.h.

#include <optional>
#include <vector>

#include "expression/ast.h"
#include "expression/compiled_program.h"

namespace veldra::detail {

// Empty when the program would need more than STACK_CAPACITY stack slots.
std::optional<std::vector<Instr>> generate_code(const Ast& ast, NodeId root);

}  // namespace veldra::detail
