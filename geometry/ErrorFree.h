// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cfloat>
#include <limits>

/// Sums and products with their rounding errors, inline for the loops of the kernels.
/// They need round-to-nearest doubles, evaluated in the order written.
/// Threads: pure.  Ref: [Shewchuk97] sect. 2.
namespace Tavro::ErrorFree {

static_assert(FLT_EVAL_METHOD == 0, "a wider register would change every rounding error");
static_assert(std::numeric_limits<double>::is_iec559 && std::numeric_limits<double>::digits == 53);

/// A rounded result and its rounding error.
struct Pair {
    double rounded;
    double error;
};

/// Exact if the magnitude of a is not below b's.
[[nodiscard]] inline Pair FastTwoSum(double a, double b)
{
    const double x = a + b;
    return { x, b - (x - a) };
}

[[nodiscard]] inline Pair FastTwoDif(double a, double b)
{
    const double x = a - b;
    return { x, (a - x) - b };
}

[[nodiscard]] inline Pair TwoSum(double a, double b)
{
    const double x = a + b;
    const double bv = x - a;
    const double av = x - bv;
    return { x, (a - av) + (b - bv) };
}

[[nodiscard]] inline Pair TwoDif(double a, double b)
{
    const double x = a - b;
    const double bv = a - x;
    const double av = x + bv;
    return { x, (a - av) + (bv - b) };
}

/// The two halves of a factor.
struct Halves {
    double hi;
    double lo;
};

/// `scaled` is a times a power of two.
[[nodiscard]] inline Halves SplitScaled(double a, double scaled)
{
    const double c = scaled + a;
    const double big = c - a;
    const double hi = c - big;
    return { hi, a - hi };
}

/// The factor of a product is split after 26 doublings, not the 27 that would make every partial
/// product exact: results of full mantissas depend on it in their last bits, and they are kept.
/// The one product is what the repeated doubling gives, for a scaling by a power of two is exact or
/// overflows in either form.
[[nodiscard]] inline Halves SplitFactor(double a) { return SplitScaled(a, a * 0x1p26); }

[[nodiscard]] inline Pair TwoProduct(double a, const Halves& as, double b, const Halves& bs)
{
    const double x = a * b;
    const double err1 = x - as.hi * bs.hi;
    const double err2 = err1 - as.lo * bs.hi;
    const double err3 = err2 - bs.lo * as.hi;
    return { x, as.lo * bs.lo - err3 };
}

} // namespace Tavro::ErrorFree
