// SPDX-License-Identifier: Apache-2.0
#include "geometry/QuickSigns.h"

#include "geometry/ErrorFree.h"

#include <cmath>

// Why these are the signs of the expansions, in the order of the steps:
// - Below kLargest no factor overflows when it is split, up to the last product.
// - A difference of two coordinates is the expansion of TwoDif; without error it is one component.
// - A product of two components is the expansion of TwoProduct, computed here by the same steps;
//   also where its error has itself been rounded.
// - A product whose error disappears when it is added is nonoverlapping, and so is every sum of
// such
//   expansions [Shewchuk97, theorems 13 and 23]: the last component has the sign of the exact sum.

namespace Tavro::PredicateDetail {

namespace {

using ErrorFree::Pair;
using Vec3 = Vector<double, 3>;

constexpr double kLargest = 0x1p300;

int SignOf(double x) { return static_cast<int>(x > 0.0) - static_cast<int>(x < 0.0); }

/// Takes part in sums that must not be rounded, and tells in the end whether one was.
class ExactSteps {
public:
    [[nodiscard]] bool Failed() const { return m_failed; }

    double Difference(double a, double b)
    {
        const Pair difference = ErrorFree::TwoDif(a, b);
        Require(difference.error == 0.0);
        return difference.rounded;
    }
    double Product(double a, double b)
    {
        const Pair product = Multiply(a, b);
        Require(product.error == 0.0);
        return product.rounded;
    }
    Pair NonoverlappingProduct(double a, double b)
    {
        const Pair product = Multiply(a, b);
        Require(product.rounded + product.error == product.rounded);
        return product;
    }
    void Add(double& sum, double term)
    {
        const Pair added = ErrorFree::TwoSum(sum, term);
        Require(added.error == 0.0);
        sum = added.rounded;
    }

private:
    static Pair Multiply(double a, double b)
    {
        return ErrorFree::TwoProduct(a, ErrorFree::SplitFactor(a), b, ErrorFree::SplitFactor(b));
    }
    // No branch: most inputs pass all of them.
    void Require(bool holds) { m_failed |= !holds; }

    bool m_failed = false;
};

bool AreSmallEnough(const Vec3& p)
{
    return std::fabs(p[0]) < kLargest && std::fabs(p[1]) < kLargest && std::fabs(p[2]) < kLargest;
}

} // namespace

std::optional<int> QuickVolumeSign(const Vec3& a, const Vec3& b, const Vec3& c, const Vec3& d)
{
    if (!(AreSmallEnough(a) && AreSmallEnough(b) && AreSmallEnough(c) && AreSmallEnough(d))) {
        return std::nullopt;
    }
    for (std::size_t i = 0; i < 3; ++i) {
        if (a[i] == d[i] && b[i] == d[i] && c[i] == d[i]) {
            return 0; // each of the six products has a factor of zero
        }
    }
    ExactSteps steps;
    const double adx = steps.Difference(a[0], d[0]);
    const double ady = steps.Difference(a[1], d[1]);
    const double adz = steps.Difference(a[2], d[2]);
    const double bdx = steps.Difference(b[0], d[0]);
    const double bdy = steps.Difference(b[1], d[1]);
    const double bdz = steps.Difference(b[2], d[2]);
    const double cdx = steps.Difference(c[0], d[0]);
    const double cdy = steps.Difference(c[1], d[1]);
    const double cdz = steps.Difference(c[2], d[2]);
    const auto minor = [&steps](double p, double q, double r, double s) {
        return steps.Difference(steps.Product(p, q), steps.Product(r, s));
    };
    const Pair t1 = steps.NonoverlappingProduct(minor(bdy, cdz, bdz, cdy), adx);
    const Pair t2 = steps.NonoverlappingProduct(minor(bdz, cdx, bdx, cdz), ady);
    const Pair t3 = steps.NonoverlappingProduct(minor(bdx, cdy, bdy, cdx), adz);
    // The large parts nearly cancel, or the filter had decided; what is left then adds up exactly.
    const Pair first = ErrorFree::TwoSum(t1.rounded, t2.rounded);
    const Pair second = ErrorFree::TwoSum(first.rounded, t3.rounded);
    double sum = second.rounded;
    for (const double rest : { first.error, second.error, t1.error, t2.error, t3.error }) {
        steps.Add(sum, rest);
    }
    return steps.Failed() ? std::nullopt : std::optional(SignOf(sum));
}

std::optional<int> QuickTurnSign(double p, double q, double r, double s, double t, double u)
{
    const double largest = std::max(
        { std::fabs(p), std::fabs(q), std::fabs(r), std::fabs(s), std::fabs(t), std::fabs(u) });
    if (!(largest < kLargest)) {
        return std::nullopt;
    }
    // The bound is far above the (3 + 16u)u of the rounded determinant [Shewchuk97 sect. 4.2]: a
    // product of expansions may be wrong by u itself, and must not matter either. The floor keeps
    // out the products that lose bits at the end of the range.
    const double left = (p - t) * (s - u);
    const double right = (q - u) * (r - t);
    const double rounded = left - right;
    const double magnitude = std::fabs(left) + std::fabs(right);
    if (std::fabs(rounded) > 0x1p-46 * magnitude && magnitude > 0x1p-900) {
        return SignOf(rounded);
    }
    ExactSteps steps;
    const Pair first = steps.NonoverlappingProduct(steps.Difference(p, t), steps.Difference(s, u));
    const Pair second = steps.NonoverlappingProduct(steps.Difference(q, u), steps.Difference(r, t));
    const Pair difference = ErrorFree::TwoDif(first.rounded, second.rounded);
    double sum = difference.rounded;
    for (const double rest : { difference.error, first.error, -second.error }) {
        steps.Add(sum, rest);
    }
    return steps.Failed() ? std::nullopt : std::optional(SignOf(sum));
}

} // namespace Tavro::PredicateDetail
