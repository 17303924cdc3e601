// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "geometry/ValueTypes.h"

#include <optional>

/// Signs of exact determinants in less time than `ExactDouble` takes. Where they answer, they
/// answer what it does; seen by the predicates only.
namespace Tavro::PredicateDetail {

/// Sign of the determinant of a-d, b-d, c-d; nothing if a coordinate is above 2^300.
[[nodiscard]] std::optional<int> QuickVolumeSign(const Vector<double, 3>& a,
    const Vector<double, 3>& b, const Vector<double, 3>& c, const Vector<double, 3>& d);

/// Sign of (p - t)(s - u) - (q - u)(r - t); nothing if it takes expansions.
[[nodiscard]] std::optional<int> QuickTurnSign(
    double p, double q, double r, double s, double t, double u);

} // namespace Tavro::PredicateDetail
