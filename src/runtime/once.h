#pragma once
// Start-up initialisers that must run once per program keep a flag in the state they set up
// and call this first. A repeated call is a programming fault, reported with the call stack
// so the second caller can be found.

#include <string_view>
#include "runtime/source_location.h"

namespace veldra {

inline constexpr std::string_view ONCE_ONLY_MESSAGE =
    "Function that was supposed to be called only once was called more than once.";

// True on the first call for `called` (and sets it). On later calls logs ONCE_ONLY_MESSAGE,
// a line break and the call stack through log_error, and returns false.
bool once_only_first_call(bool& called, SourceLocation where = SourceLocation::current());

}  // namespace veldra
