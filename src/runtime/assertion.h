#pragma once
// VELDRA_ASSERT(condition, hint): a guard that stays in every build, Release included. For
// invariants whose breach would touch memory it must not (an index past a container, a null
// pointer handed across modules, a Value read as the wrong kind); the hint names the caller's
// likely mistake. On failure it prints "file:line: assertion failed: condition (hint)" to
// stderr and aborts.
//
// The hint is evaluated only on failure, so it may build a string from the values at hand.
// Expected failures (a bad file, a bad parameter) are never assertions: they are logged with
// the game's texts and handled.

#include <string_view>

namespace veldra::detail {

[[noreturn]] void assertion_failed(const char* file, unsigned line, const char* condition,
                                   std::string_view hint) noexcept;

}  // namespace veldra::detail

#define VELDRA_ASSERT(condition, hint) \
    (static_cast<bool>(condition)      \
         ? static_cast<void>(0)        \
         : ::veldra::detail::assertion_failed(__FILE__, __LINE__, #condition, (hint)))
