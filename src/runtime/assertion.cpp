#include "runtime/assertion.h"

#include <cstdio>
#include <cstdlib>

namespace veldra {

// Only stdio: the failure may come from inside the logger or the process state, so it must not go
// through either. One fprintf, so lines of two failing processes never interleave mid-line.
void detail::assertion_failed(const char* file, unsigned line, const char* condition,
                              std::string_view hint) noexcept {
    std::fprintf(stderr, "%s:%u: assertion failed: %s (%.*s)\n", file, line, condition,
                 static_cast<int>(hint.size()), hint.data());
    std::fflush(stderr);
    std::abort();
}

}  // namespace veldra
