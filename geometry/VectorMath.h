// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "geometry/ValueTypes.h"

#include <cmath>

/// Plain floating-point operations on points and directions in space. Sums run left to right as
/// written, so that every machine rounds alike.
namespace Tavro {

[[nodiscard]] constexpr Vector<double, 3> Subtract(
    const Vector<double, 3>& p, const Vector<double, 3>& q)
{
    return { p[0] - q[0], p[1] - q[1], p[2] - q[2] };
}

[[nodiscard]] constexpr double Dot(const Vector<double, 3>& p, const Vector<double, 3>& q)
{
    return p[0] * q[0] + p[1] * q[1] + p[2] * q[2];
}

[[nodiscard]] constexpr Vector<double, 3> Cross(
    const Vector<double, 3>& p, const Vector<double, 3>& q)
{
    return { p[1] * q[2] - p[2] * q[1], p[2] * q[0] - p[0] * q[2], p[0] * q[1] - p[1] * q[0] };
}

/// Divides each component by the length; of a zero vector it makes three NaN.
[[nodiscard]] inline Vector<double, 3> Normalised(const Vector<double, 3>& p)
{
    const double length = std::sqrt(Dot(p, p));
    return { p[0] / length, p[1] / length, p[2] / length };
}

/// Equal as numbers: -0 and 0 are one place, and NaN is nowhere.
[[nodiscard]] constexpr bool SamePosition(const Vector<double, 3>& p, const Vector<double, 3>& q)
{
    return p[0] == q[0] && p[1] == q[1] && p[2] == q[2];
}

/// By x, then y, then z.
[[nodiscard]] constexpr bool LexicographicallyLess(
    const Vector<double, 3>& p, const Vector<double, 3>& q)
{
    for (std::size_t axis = 0; axis < 3; ++axis) {
        if (p[axis] != q[axis])
            return p[axis] < q[axis];
    }
    return false;
}

} // namespace Tavro
