#pragma once
// std::source_location where the compiler provides it (g++ 12); the same builtins by hand where
// the standard library cannot offer it (clang 14 with libstdc++).

#include <version>
#if defined(__cpp_lib_source_location)
#include <source_location>
#endif

namespace veldra {

#if defined(__cpp_lib_source_location)
using SourceLocation = std::source_location;
#else
class SourceLocation {
public:
    static constexpr SourceLocation current(const char* file = __builtin_FILE(),
                                            const char* function = __builtin_FUNCTION(),
                                            unsigned line = __builtin_LINE()) noexcept {
        SourceLocation where;
        where.file_ = file;
        where.function_ = function;
        where.line_ = line;
        return where;
    }
    constexpr const char* file_name() const noexcept { return file_; }
    constexpr const char* function_name() const noexcept { return function_; }
    constexpr unsigned line() const noexcept { return line_; }

private:
    const char* file_ = "";
    const char* function_ = "";
    unsigned line_ = 0;
};
#endif

}  // namespace veldra
