#pragma once
// A cheap record of which game functions are running, for diagnostics: once-only initialisers
// and the uncaught-rejection handler print it. A function opts in with VELDRA_SCOPE() at its
// top; the marker costs two stores and no allocation.

#include <string>
#include <vector>
#include "runtime/source_location.h"

namespace veldra {

class CallstackScope {
public:
    explicit CallstackScope(SourceLocation where = SourceLocation::current());
    ~CallstackScope();
    CallstackScope(const CallstackScope&) = delete;
    CallstackScope& operator=(const CallstackScope&) = delete;
};

// Innermost frame first, each "function (file:line)". `where` is added as the innermost frame
// so that a caller without its own scope marker still shows up.
std::vector<std::string> debug_get_callstack(SourceLocation where = SourceLocation::current());

// The frames joined by "\n".
std::string debug_callstack_text(SourceLocation where = SourceLocation::current());

}  // namespace veldra

#define VELDRA_SCOPE() ::veldra::CallstackScope veldra_callstack_scope_##__LINE__
