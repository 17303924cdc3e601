// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "geometry/ValueTypes.h"

#include <array>
#include <vector>

namespace Examples {

/// Place along the axis, and radius there.
using Profile = std::vector<std::array<double, 2>>;

/// A closed body around axis 0, 1 or 2, with outward winding. The profile goes up the axis and
/// begins and ends with a radius of 0; `around` points in each ring.
[[nodiscard]] std::vector<Tavro::Facet<double, 3, 3>> body_of_revolution(
    const Profile& profile, std::size_t axis, int around);

/// The beginning of a profile: a rounded end that reaches its radius behind `length`, without an
/// edge there.
[[nodiscard]] Profile dome_profile(double begin, double length, double radius, int rings);

/// The profile of a sphere, or of an ellipsoid if `length` is not twice the radius.
[[nodiscard]] Profile ellipsoid_profile(double begin, double length, double radius, int rings);

} // namespace Examples
