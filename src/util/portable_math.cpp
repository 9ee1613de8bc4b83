#include "util/portable_math.h"

#include <bit>
#include <cmath>  // sqrt, correctly rounded everywhere, and signbit
#include <cstdint>
#include <limits>

// Built, as everything is, with floating-point contraction off (cmake/veldra.cmake): a fused
// multiply-add would round once where these formulas count on two roundings, and only some
// compilers and targets fuse.

namespace veldra::portable {

namespace {

constexpr double infinity = std::numeric_limits<double>::infinity();
constexpr double not_a_number = std::numeric_limits<double>::quiet_NaN();

// A number kept as the unevaluated sum hi + lo, with lo below half an ulp of hi: twice the
// precision of a double, which is what lets the results below round correctly almost always.
struct Pair {
    double hi;
    double lo;
};

// a + b exactly, for any a and b.
Pair two_sum(double a, double b) {
    const double sum = a + b;
    const double b_part = sum - a;
    const double a_part = sum - b_part;
    return {sum, (a - a_part) + (b - b_part)};
}

// a + b exactly, when |a| >= |b| (or a is zero).
Pair fast_two_sum(double a, double b) {
    const double sum = a + b;
    return {sum, b - (sum - a)};
}

// Splits a into two halves of 26 bits each, whose products with each other are exact.
Pair split(double a) {
    constexpr double splitter = 134217729.0;  // 2^27 + 1
    const double t = splitter * a;
    const double hi = t - (t - a);
    return {hi, a - hi};
}

// a * b exactly, while neither overflows nor the error falls below the normal range.
Pair two_product(double a, double b) {
    const double product = a * b;
    const Pair as = split(a);
    const Pair bs = split(b);
    const double error =
        ((as.hi * bs.hi - product) + as.hi * bs.lo + as.lo * bs.hi) + as.lo * bs.lo;
    return {product, error};
}

double power_of_two(int exponent) {  // for exponents of normal numbers, -1022 to 1023
    return std::bit_cast<double>(static_cast<std::uint64_t>(exponent + 1023) << 52);
}

double round_to_integer(double x) {  // halves up; only for |x| far below 2^52
    const double shifted = x + 0.5;
    const double truncated = static_cast<double>(static_cast<std::int64_t>(shifted));
    return truncated > shifted ? truncated - 1 : truncated;
}

bool is_integer(double x) {  // for finite x
    if (x >= 0x1p52 || x <= -0x1p52)
        return true;  // every double is, that large
    return x == static_cast<double>(static_cast<std::int64_t>(x));
}

bool is_odd_integer(double x) {
    if (!(x < 9007199254740992.0 && x > -9007199254740992.0))
        return false;  // NaN, infinite, or so large that it is even
    const auto whole = static_cast<std::int64_t>(x);
    return static_cast<double>(whole) == x && (whole & 1) != 0;
}

// ln 2 in three parts: the first has few enough bits that any exponent times it is exact, the
// second is exact with two_product, and the third is far below the rounding of the whole.
constexpr double ln2_1 = 0x1.62e42ffp-1;
constexpr double ln2_2 = -0x1.718432a1b0e26p-35;
constexpr double ln2_3 = -0x1.9ff0342542fc3p-90;
constexpr double inverse_ln2 = 0x1.71547652b82fep+0;

// Beyond these, exp is infinite or zero (or a subnormal that rounds to zero).
constexpr double exp_overflow = 709.7827128933840;
constexpr double exp_underflow = -745.1332191019412;

// exp(hi + lo) for a pair with |lo| tiny beside |hi| and hi between the limits above.
double exp_of_pair(double hi, double lo) {
    // x = k ln2 + r with |r| <= ln2 / 2, r carried as a pair so that the reduction loses nothing.
    const double k = round_to_integer(hi * inverse_ln2);
    const double reduced = hi - k * ln2_1;  // exact: k * ln2_1 is, and the two are close
    const Pair k_ln2_2 = two_product(k, ln2_2);
    const Pair r_parts = two_sum(reduced, -k_ln2_2.hi);
    // Renormalised, because the low part may come in as large as an ulp of hi (from pow), and
    // the series below takes only its first-order share.
    const Pair r = fast_two_sum(r_parts.hi, r_parts.lo - k_ln2_2.lo - k * ln2_3 + lo);
    const double r_lo = r.lo;

    // exp(r) = 1 + r + tail, tail = r^2 / 2! + r^3 / 3! + ... below 0.07, so its own rounding
    // is far below the result's last place. Sixteen terms reach 2^-60 for |r| <= 0.35.
    const double x = r.hi;
    double series = 1.0 / 20922789888000.0;  // 1/16!
    constexpr double inverse_factorials[] = {1.0 / 1307674368000.0,
                                             1.0 / 87178291200.0,
                                             1.0 / 6227020800.0,
                                             1.0 / 479001600.0,
                                             1.0 / 39916800.0,
                                             1.0 / 3628800.0,
                                             1.0 / 362880.0,
                                             1.0 / 40320.0,
                                             1.0 / 5040.0,
                                             1.0 / 720.0,
                                             1.0 / 120.0,
                                             1.0 / 24.0,
                                             1.0 / 6.0,
                                             1.0 / 2.0};
    for (double coefficient : inverse_factorials)
        series = series * x + coefficient;
    const double tail = x * x * series + x * r_lo;  // the second term: r_lo's share of r^2 / 2
    const Pair one_plus_r = two_sum(1.0, x);
    const double mantissa = one_plus_r.hi + (one_plus_r.lo + (r_lo + tail));

    // Times 2^k, in two steps where 2^k alone is out of range; the last step rounds once
    // into the subnormal range.
    const int exponent = static_cast<int>(k);
    if (exponent > 1023)
        return mantissa * 2.0 * power_of_two(exponent - 1);
    if (exponent < -1021)
        return mantissa * power_of_two(exponent + 1000) * power_of_two(-1000);
    return mantissa * power_of_two(exponent);
}

// log(x) as a pair, for finite x > 0.
Pair log_pair(double x) {
    int exponent = 0;
    if (x < 0x1p-1022) {  // subnormal: scale into the normal range first
        x *= 0x1p54;
        exponent = -54;
    }
    const auto bits = std::bit_cast<std::uint64_t>(x);
    exponent += static_cast<int>(bits >> 52) - 1023;
    // x = m 2^exponent with m in [sqrt(2)/2, sqrt(2)), where log(m) is smallest.
    double m = std::bit_cast<double>((bits & 0x000fffffffffffffull) | 0x3ff0000000000000ull);
    if (m > 1.4142135623730951) {
        m *= 0.5;
        ++exponent;
    }

    // log(m) = 2 atanh(s) = 2 (s + s^3/3 + s^5/5 + ...), s = f / (2 + f), f = m - 1 (exact).
    const double f = m - 1.0;
    const Pair denominator = two_sum(2.0, f);
    const double s = f / denominator.hi;
    const Pair s_times_d = two_product(s, denominator.hi);
    const double s_lo = (((f - s_times_d.hi) - s_times_d.lo) - s * denominator.lo) / denominator.hi;
    // |s| <= 0.172, so s^2 <= 0.0295 and twelve terms of the tail reach 2^-60; the tail is
    // below a hundredth of the whole, and its rounding with it.
    const double z = s * s;
    double series = 1.0 / 25.0;
    constexpr double inverse_odds[] = {1.0 / 23.0, 1.0 / 21.0, 1.0 / 19.0, 1.0 / 17.0,
                                       1.0 / 15.0, 1.0 / 13.0, 1.0 / 11.0, 1.0 / 9.0,
                                       1.0 / 7.0,  1.0 / 5.0,  1.0 / 3.0};
    for (double coefficient : inverse_odds)
        series = series * z + coefficient;
    const double tail = 2.0 * s * z * series;
    const Pair log_m = fast_two_sum(2.0 * s, 2.0 * s_lo + tail);

    // Plus exponent * ln 2, carried in its parts.
    const double e = exponent;
    const Pair first = two_sum(e * ln2_1, log_m.hi);
    const Pair e_ln2_2 = two_product(e, ln2_2);
    const Pair second = two_sum(first.hi, e_ln2_2.hi);
    const double lo = first.lo + second.lo + e_ln2_2.lo + log_m.lo + e * ln2_3;
    return fast_two_sum(second.hi, lo);
}

// a / b as a pair, for pairs a and b with b > 0.
Pair divide(Pair a, Pair b) {
    const double quotient = a.hi / b.hi;
    const Pair back = two_product(quotient, b.hi);
    const double rest = (((a.hi - back.hi) - back.lo) + a.lo) - quotient * b.lo;
    return fast_two_sum(quotient, rest / b.hi);
}

// atan(t) for a pair 0 <= t <= 1, as a pair, so that the mirrorings of atan2 add no rounding
// of their own.
Pair atan_unit(Pair t) {
    constexpr double pi_over_4 = 0x1.921fb54442d18p-1;
    constexpr double pi_over_4_lo = 0x1.1a62633145c07p-55;
    // Above tan(pi/8), atan(t) = pi/4 + atan(u), u = (t - 1) / (t + 1), so |u| <= tan(pi/8).
    const bool shifted = t.hi > 0.41421356237309503;
    Pair u = t;
    if (shifted) {
        const Pair minus_one = two_sum(t.hi, -1.0);
        const Pair plus_one = two_sum(t.hi, 1.0);
        u = divide({minus_one.hi, minus_one.lo + t.lo}, {plus_one.hi, plus_one.lo + t.lo});
    }
    // atan(u) = u - u^3/3 + u^5/5 - ...; u^2 <= 0.172, and 22 terms reach 2^-56. The low part
    // of u enters to first order, through the derivative 1 / (1 + u^2).
    const double z = u.hi * u.hi;
    double series = 0.0;
    for (int k = 22; k >= 1; --k)
        series = series * z + ((k % 2 == 0) ? 1.0 : -1.0) / (2 * k + 1);
    const Pair atan_u = fast_two_sum(u.hi, u.hi * z * series + u.lo / (1.0 + z));
    if (!shifted)
        return atan_u;
    const Pair sum = two_sum(pi_over_4, atan_u.hi);
    return {sum.hi, sum.lo + pi_over_4_lo + atan_u.lo};
}

// c - a for a constant c given as a pair, with 0 <= a <= c.
Pair subtract_from(double c_hi, double c_lo, Pair a) {
    const Pair difference = two_sum(c_hi, -a.hi);
    return {difference.hi, difference.lo + c_lo - a.lo};
}

}  // namespace

double exp(double x) {
    if (x != x)
        return x;
    if (x > exp_overflow)
        return infinity;
    if (x < exp_underflow)
        return 0.0;
    return exp_of_pair(x, 0.0);
}

double log(double x) {
    if (x != x)
        return x;
    if (x < 0.0)
        return not_a_number;
    if (x == 0.0)
        return -infinity;
    if (x == infinity)
        return infinity;
    const Pair result = log_pair(x);
    return result.hi + result.lo;
}

double pow(double x, double y) {
    if (y == 0.0 || x == 1.0)
        return 1.0;  // even for NaN, as the C functions have it
    if (x != x || y != y)
        return not_a_number;
    const double ax = std::fabs(x);
    const double ay = std::fabs(y);
    // An odd integer power of a negative x (-0 included) keeps the minus sign.
    const bool negative = std::signbit(x) && is_odd_integer(y);
    if (ay == infinity) {
        if (ax == 1.0)
            return 1.0;
        return (ax < 1.0) == (y < 0.0) ? infinity : 0.0;
    }
    if (ax == 0.0 || ax == infinity) {
        // 0^y and inf^y: zero or infinite, keeping x's sign for odd integer powers.
        const double magnitude = (ax == 0.0) == (y < 0.0) ? infinity : 0.0;
        return negative ? -magnitude : magnitude;
    }
    if (x < 0.0 && !is_integer(y))
        return not_a_number;
    if (ax == 1.0)
        return negative ? -1.0 : 1.0;  // (-1)^y, for y too large to multiply by log 1 = 0

    // |x|^y = exp(y log|x|), with log and the product carried as pairs: y log|x| reaches ~745
    // before the result leaves the doubles, and every bit lost there is lost in the result.
    const Pair log_x = log_pair(ax);
    const double estimate = y * log_x.hi;
    double magnitude;
    if (estimate > exp_overflow + 1.0) {
        magnitude = infinity;
    } else if (estimate < exp_underflow - 1.0) {
        magnitude = 0.0;
    } else {
        const Pair product = two_product(y, log_x.hi);
        const Pair exponent = fast_two_sum(product.hi, product.lo + y * log_x.lo);
        if (exponent.hi > exp_overflow)
            magnitude = infinity;
        else if (exponent.hi < exp_underflow)
            magnitude = 0.0;
        else
            magnitude = exp_of_pair(exponent.hi, exponent.lo);
    }
    return negative ? -magnitude : magnitude;
}

double atan2(double y, double x) {
    constexpr double pi = 0x1.921fb54442d18p+1;
    constexpr double pi_lo = 0x1.1a62633145c07p-53;
    constexpr double pi_over_2 = 0x1.921fb54442d18p+0;
    constexpr double pi_over_2_lo = 0x1.1a62633145c07p-54;
    if (x != x || y != y)
        return not_a_number;
    const bool x_negative = std::signbit(x);
    const double sign = std::signbit(y) ? -1.0 : 1.0;
    double ax = std::fabs(x);
    double ay = std::fabs(y);
    // Only the ratio counts; a power of two (exact) keeps the divisions' error terms normal.
    const double larger = ax > ay ? ax : ay;
    const double scale = larger > 0x1p900 ? 0x1p-1000 : larger < 0x1p-900 ? 0x1p1000 : 1.0;
    if (larger != infinity) {
        ax *= scale;
        ay *= scale;
    }
    if (ay == 0.0)
        return sign * (x_negative ? pi : 0.0);
    if (ax == 0.0 || (ay == infinity && ax != infinity))
        return sign * pi_over_2;
    // The angle of (|x|, |y|) in the first quadrant, then mirrored into x's half.
    Pair angle;
    if (ax == infinity)
        angle = ay == infinity ? atan_unit({1.0, 0.0}) : Pair{0.0, 0.0};
    else if (ay <= ax)
        angle = atan_unit(divide({ay, 0.0}, {ax, 0.0}));
    else
        angle = subtract_from(pi_over_2, pi_over_2_lo, atan_unit(divide({ax, 0.0}, {ay, 0.0})));
    if (x_negative)
        angle = subtract_from(pi, pi_lo, angle);
    return sign * (angle.hi + angle.lo);
}

}  // namespace veldra::portable
