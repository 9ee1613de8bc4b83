#pragma once
// The seedable generator behind every random choice of a trial and of level generation. A
// linear congruential generator computed on doubles: a * seed stays below 2^53, so every step is
// exact and the stream is the same on every platform and compiler.
//
// Integer draws include both ends: rng_irandom(n) is in 0..n, rng_irandom_range(lo, hi) in
// lo..hi. Shuffles are Fisher-Yates from the last index down, one rng_irandom(i) per index.

#include <cmath>
#include <cstdint>
#include <initializer_list>
#include <optional>
#include <type_traits>
#include <utility>
#include <vector>

#include "runtime/assertion.h"

namespace veldra {

class Rng {
public:
    static constexpr double a = 1664525.0;
    static constexpr double c = 1013904223.0;
    static constexpr double m = 4294967296.0;  // 2^32

    // Any real is accepted: its whole part is reduced into [0, 2^32), so seeds drawn with
    // rng_irandom(2^32) (which may return 2^32 itself) and negative seeds are valid too.
    explicit Rng(double initial_seed = 0.0) : seed(reduce_seed(initial_seed)) {}

    // The whole state: a whole number in [0, 2^32).
    double seed;

    // Uniform in [0, x) for positive x (in (x, 0] for negative x). Advances the state once.
    double rng_random(double x) {
        // a * seed + c is exact in a double, so reducing it in 64-bit integers gives the same
        // state as fmod on doubles, only without the slow division.
        constexpr auto ia = static_cast<std::uint64_t>(a);
        constexpr auto ic = static_cast<std::uint64_t>(c);
        constexpr auto mask = static_cast<std::uint64_t>(m) - 1;
        seed = static_cast<double>((static_cast<std::uint64_t>(seed) * ia + ic) & mask);
        return seed / m * x;
    }

    double rng_random_range(double low, double high) { return low + rng_random(high - low); }

    // Uniform whole number in 0..n, n included; for negative n in n..0.
    std::int64_t rng_irandom(std::int64_t n) {
        if (n < 0)
            return -rng_irandom(-n);
        return static_cast<std::int64_t>(std::floor(rng_random(static_cast<double>(n) + 1.0)));
    }

    // Uniform whole number between the two ends, both included, in either order.
    std::int64_t rng_irandom_range(std::int64_t low, std::int64_t high) {
        if (high < low)
            std::swap(low, high);
        return low + rng_irandom(high - low);
    }

    // One of the choices, uniformly: rng_choose({1, 2, 3}) or rng_choose(1, 2, 3).
    template <class T>
    T rng_choose(std::initializer_list<T> choices) {
        return choose_from(choices);
    }

    template <class... Args>
    std::common_type_t<Args...> rng_choose(Args&&... args) {
        using Common = std::common_type_t<Args...>;
        return choose_from(std::initializer_list<Common>{Common(std::forward<Args>(args))...});
    }

    template <class T>
    void rng_array_shuffle(std::vector<T>& array) {
        for (std::size_t i = array.size(); i-- > 1;) {
            const auto j = static_cast<std::size_t>(rng_irandom(static_cast<std::int64_t>(i)));
            std::swap(array[i], array[j]);
        }
    }

    template <class T>
    std::vector<T> rng_array_shuffled(std::vector<T> array) {
        rng_array_shuffle(array);
        return array;
    }

    template <class T>
    const T& rng_array_get_random(const std::vector<T>& array) {
        VELDRA_ASSERT(!array.empty(),
                      "rng_array_get_random on an empty array; check the size first");
        return array[random_index(array.size())];
    }

    // The default when the array is empty, without advancing the state.
    template <class T>
    T rng_array_get_random_element_or_default(const std::vector<T>& array, T fallback) {
        if (array.empty())
            return fallback;
        return array[random_index(array.size())];
    }

    template <class T>
    T rng_array_pop_random(std::vector<T>& array) {
        VELDRA_ASSERT(!array.empty(),
                      "rng_array_pop_random on an empty array; check the size first");
        const auto it = array.begin() + static_cast<std::ptrdiff_t>(random_index(array.size()));
        T value = std::move(*it);
        array.erase(it);
        return value;
    }

    // One element drawn uniformly from all the arrays' elements together, as if they were
    // concatenated in order; nothing when they are all empty (and then the state is unchanged).
    template <class T>
    std::optional<T> rng_array_get_random_element_from_many(
        std::initializer_list<const std::vector<T>*> arrays) {
        std::size_t total = 0;
        for (const auto* array : arrays)
            total += array->size();
        if (total == 0)
            return std::nullopt;
        std::size_t index = random_index(total);
        for (const auto* array : arrays) {
            if (index < array->size())
                return (*array)[index];
            index -= array->size();
        }
        return std::nullopt;  // unreachable: index < total
    }

private:
    static double reduce_seed(double value) {
        const double reduced = std::fmod(std::floor(value), m);
        return reduced < 0.0 ? reduced + m : reduced;
    }

    template <class T>
    T choose_from(std::initializer_list<T> choices) {
        VELDRA_ASSERT(choices.size() > 0, "rng_choose needs at least one choice");
        return *(choices.begin() + random_index(choices.size()));
    }

    // Uniform index below `size` (size > 0): the same draw as rng_irandom(size - 1).
    std::size_t random_index(std::size_t size) {
        return static_cast<std::size_t>(rng_irandom(static_cast<std::int64_t>(size) - 1));
    }
};

}  // namespace veldra
