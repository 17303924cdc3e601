// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "geometry/ValueTypes.h"

#include <vector>

namespace Examples {

using Facets = std::vector<Tavro::Facet<double, 3, 3>>;

/// The ROBIN fuselage and its pylon, two closed bodies that overlap, with outward winding. x runs
/// from the nose at 0 to the tail at 2 x `halfLength`, z is up; lengths have the unit of
/// `halfLength`. `stations` sections along x, `around` points in each. Ref: superellipse sections
/// of [Freeman79], coefficients as corrected in [Robin21].
[[nodiscard]] Facets robin_fuselage(double halfLength, int stations, int around);
[[nodiscard]] Facets robin_pylon(double halfLength, int stations, int around);

} // namespace Examples
