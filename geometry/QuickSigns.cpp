// SPDX-License-Identifier: Apache-2.0
#include "geometry/QuickSigns.h"

#include "geometry/ExactSteps.h"

#include <algorithm>
#include <cmath>

// Why these are the signs of `ExactDouble`: see VolumeSign.cpp, whose reasons hold for two
// coordinates as they do for three.

namespace Tavro::PredicateDetail {

using ErrorFree::Pair;

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
