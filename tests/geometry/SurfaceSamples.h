// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "geometry/SurfaceOutput.h"

#include <string>

/// Small surfaces and ways to write down bytes by hand, for the tests of surface files.
namespace Testing {

using Surface = Tavro::FacetSurface<double, 3>;
using SurfaceRef = Tavro::RefPtr<Surface>;
using Surfaces = Tavro::PlacedSurfaces<double>;
using Matrix = Tavro::Matrix44<double>;

[[nodiscard]] Matrix identity();
[[nodiscard]] Matrix translation(double x, double y, double z);

/// One triangle (0, 0, 0), (1.5, 0, 0), (0, 2, -0.25).
[[nodiscard]] SurfaceRef triangle();
/// One facet of four vertices: the unit square in z = 1, counterclockwise from (0, 0, 1).
[[nodiscard]] SurfaceRef square();
/// `triangle()` where it is and `square()` moved by (10, 20, 30).
[[nodiscard]] Surfaces triangle_and_square();
/// Points without facets: (1, 2, 3) and (4, 5, 6).
[[nodiscard]] SurfaceRef points();

/// Bytes from hexadecimal digits; blanks do not count.
[[nodiscard]] std::string from_hex(const std::string& digits);

} // namespace Testing
