#include "runtime/random_source.h"

#include <chrono>
#include <random>

#include "runtime/process_state.h"

namespace veldra {

void randomize() {
    auto ticks = std::chrono::high_resolution_clock::now().time_since_epoch().count();
    process_state().random.seed(static_cast<std::uint64_t>(ticks));
}

double random_seed_value() {
    std::uniform_int_distribution<std::uint64_t> range(0, std::uint64_t{1} << 32);
    return static_cast<double>(range(process_state().random));
}

}  // namespace veldra
