#include "util/portable_math.h"

#include <gtest/gtest.h>

#include <bit>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <functional>
#include <limits>
#include <string>
#include <vector>

#include "util/digest.h"

namespace veldra {
namespace {

constexpr double inf = std::numeric_limits<double>::infinity();
constexpr double nan = std::numeric_limits<double>::quiet_NaN();
constexpr double tiny = std::numeric_limits<double>::denorm_min();

// Doubles in one monotonic integer order, so that the difference of two is their distance in
// units in the last place.
std::int64_t ordered(double x) {
    const auto bits = std::bit_cast<std::int64_t>(x);
    return bits < 0 ? std::numeric_limits<std::int64_t>::min() - bits : bits;
}
std::int64_t ulps_apart(double a, double b) {
    const std::int64_t d = ordered(a) - ordered(b);
    return d < 0 ? -d : d;
}

// The same value, NaN matching NaN and zeros matching by sign.
::testing::AssertionResult same(double ours, double platform) {
    if ((std::isnan(ours) && std::isnan(platform)) ||
        std::bit_cast<std::uint64_t>(ours) == std::bit_cast<std::uint64_t>(platform))
        return ::testing::AssertionSuccess();
    return ::testing::AssertionFailure() << ours << " where the C library gives " << platform;
}

// Inputs spread over many magnitudes, the same on every system: a fixed 64-bit generator, not
// the standard library's distributions.
class Inputs {
public:
    double uniform(double low, double high) {
        return low + (high - low) * static_cast<double>(next() >> 11) * 0x1p-53;
    }

private:
    std::uint64_t next() {
        state_ += 0x9e3779b97f4a7c15ull;
        std::uint64_t z = state_;
        z = (z ^ (z >> 30)) * 0xbf58476d1ce4e5b9ull;
        z = (z ^ (z >> 27)) * 0x94d049bb133111ebull;
        return z ^ (z >> 31);
    }
    std::uint64_t state_ = 20261126;
};

TEST(PortableMathTest, SpecialValuesAreTheCFunctions) {
    const std::vector<double> specials = {0.0,  -0.0, 1.0,    -1.0,  0.5,  -0.5,  2.0, -2.0, 3.0,
                                          -3.0, 0.25, -1e308, 1e308, tiny, -tiny, inf, -inf, nan};
    for (double x : specials) {
        EXPECT_TRUE(same(portable::exp(x), std::exp(x))) << "exp(" << x << ")";
        EXPECT_TRUE(same(portable::log(x), std::log(x))) << "log(" << x << ")";
        for (double y : specials) {
            EXPECT_TRUE(same(portable::pow(x, y), std::pow(x, y)))
                << "pow(" << x << ", " << y << ")";
            EXPECT_TRUE(same(portable::atan2(y, x), std::atan2(y, x)))
                << "atan2(" << y << ", " << x << ")";
        }
    }
    // Overflow and underflow at the ends of the range.
    for (double x : {709.78, 709.79, -745.13, -745.14, -708.5, -740.0})
        EXPECT_TRUE(same(portable::exp(x), std::exp(x)) ||
                    ulps_apart(portable::exp(x), std::exp(x)) <= 1)
            << "exp(" << x << ")";
    EXPECT_EQ(portable::pow(10.0, 400.0), inf);
    EXPECT_EQ(portable::pow(-10.0, 401.0), -inf);
    EXPECT_TRUE(same(portable::pow(-10.0, -401.0), -0.0));
    EXPECT_TRUE(std::isnan(portable::pow(-8.0, 1.0 / 3.0)));
}

TEST(PortableMathTest, ResultsThatAreDoublesComeOutExactly) {
    for (int k = -1074; k <= 1023; ++k) {
        EXPECT_EQ(portable::pow(2.0, k), std::ldexp(1.0, k)) << "2^" << k;
        EXPECT_EQ(portable::log(std::ldexp(1.0, k)), std::log(std::ldexp(1.0, k))) << "log 2^" << k;
    }
    double power_of_ten = 1.0;
    for (int k = 0; k <= 22; ++k, power_of_ten *= 10.0) {
        EXPECT_EQ(portable::pow(10.0, k), power_of_ten) << "10^" << k;
        EXPECT_EQ(portable::pow(-10.0, k), k % 2 ? -power_of_ten : power_of_ten);
    }
    for (double root = 1.0; root <= 4096.0; root += 1.0)
        EXPECT_EQ(portable::pow(root * root, 0.5), root);
    EXPECT_EQ(portable::pow(1.5, 3.0), 3.375);
    EXPECT_EQ(portable::exp(0.0), 1.0);
    EXPECT_EQ(portable::log(1.0), 0.0);
    EXPECT_EQ(portable::atan2(1.0, 1.0), std::atan2(1.0, 1.0));
}

// The largest distance from the C library's result, in units in the last place, over inputs
// drawn from [low, high]; the C library is itself within one unit of the exact result.
std::int64_t worst_distance(const std::function<double(double)>& ours,
                            const std::function<double(double)>& platform, double low,
                            double high) {
    Inputs inputs;
    std::int64_t worst = 0;
    for (int i = 0; i < 20000; ++i) {
        const double x = inputs.uniform(low, high);
        worst = std::max(worst, ulps_apart(ours(x), platform(x)));
    }
    return worst;
}

TEST(PortableMathTest, StaysWithinAUnitOfTheCLibraryAndAFewForHugePowers) {
    const auto exp = [](double x) { return portable::exp(x); };
    const auto c_exp = [](double x) { return std::exp(x); };
    EXPECT_LE(worst_distance(exp, c_exp, -1.0, 1.0), 1);
    EXPECT_LE(worst_distance(exp, c_exp, -700.0, 700.0), 1);
    EXPECT_LE(worst_distance(exp, c_exp, -745.0, -709.0), 1);  // results in the subnormals

    const auto log = [](double x) { return portable::log(x); };
    const auto c_log = [](double x) { return std::log(x); };
    EXPECT_LE(worst_distance(log, c_log, 0.5, 2.0), 1);
    EXPECT_LE(worst_distance(log, c_log, 0.0, 1e-300), 1);
    EXPECT_LE(worst_distance(log, c_log, 1.0, 1e300), 1);

    // The formulas' own use: traits and energies to small powers.
    const auto power_of = [](double y) {
        return std::pair{[y](double x) { return portable::pow(x, y); },
                         [y](double x) { return std::pow(x, y); }};
    };
    for (double y : {0.5, 2.0, 2.5, -1.0, -0.3, 3.7}) {
        const auto [ours, theirs] = power_of(y);
        EXPECT_LE(worst_distance(ours, theirs, 0.0, 100.0), 1) << "y = " << y;
    }
    // Large |y log x|, where every bit of the logarithm counts (5 units measured).
    const auto [big_ours, big_theirs] = power_of(150.3);
    EXPECT_LE(worst_distance(big_ours, big_theirs, 0.01, 100.0), 8);

    const auto angle = [](double x) { return portable::atan2(x, 1.0 - x); };
    const auto c_angle = [](double x) { return std::atan2(x, 1.0 - x); };
    EXPECT_LE(worst_distance(angle, c_angle, -50.0, 50.0), 1);
}

// Pins the results bit for bit: this digest is the same on every system the game is built for,
// and a change here changes every study's results.
TEST(PortableMathTest, ResultsAreTheSameBitsOnEverySystem) {
    Inputs inputs;
    Digest digest;
    char text[64];
    for (int i = 0; i < 4000; ++i) {
        const double a = inputs.uniform(-50.0, 50.0);
        const double b = inputs.uniform(0.0, 20.0);
        for (double value : {portable::exp(a), portable::log(b), portable::pow(b, a / 10.0),
                             portable::atan2(a, b - 10.0)}) {
            std::snprintf(text, sizeof text, "%a", value);
            digest.add(text);
        }
    }
    EXPECT_EQ(digest.hex(), "859f5c6317a1bdc6");
}

}  // namespace
}  // namespace veldra
