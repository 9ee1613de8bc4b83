#pragma once
// Simulation time. A trial advances in whole ticks, 60 per simulated second; the tick count,
// every timer that counts ticks and every moment remembered in ticks are this type. 64 bits, so
// no count wraps however long a trial runs. Ticks become double only where a formula or an
// output needs a number.

#include <cstdint>

namespace veldra {

using Ticks = std::int64_t;

}  // namespace veldra
