// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "tests/geometry/support/Shapes.h"

#include <cstdint>

/// Bodies beyond boxes and spheres. Corners are rounded to multiples of 2^-20, so that they do not
/// hang on how the last bits of a sine come out, and sums of a few of them are exact.
namespace Testing {

[[nodiscard]] Point rounded(const Point& point);

/// Turned about the z axis, then about the x axis, by radians.
[[nodiscard]] Facets turned(Facets body, double aboutZ, double aboutX);
[[nodiscard]] Facets moved(Facets body, const Point& by);
[[nodiscard]] Facets scaled(Facets body, double factor);

/// About the z axis, its base at z = 0, its tip at `height`.
[[nodiscard]] Facets cone(double radius, double height, int around);
/// About the z axis from z = 0 to `height`.
[[nodiscard]] Facets cylinder(double radius, double height, int around);
/// About the z axis; `radius` to the middle of the tube.
[[nodiscard]] Facets torus(double radius, double tube, int around, int aroundTube);
/// Edges of length sqrt(8), centred on the origin.
[[nodiscard]] Facets regular_tetrahedron();
/// Corners at 1 and -1 on each axis.
[[nodiscard]] Facets octahedron();
/// A strip of width 0.5 about a circle of radius 1 with half a turn in it; it has one side.
[[nodiscard]] Facets moebius_strip(int around);
/// Triangles with corners anywhere within `size` of places in the unit cube.
[[nodiscard]] Facets soup(int count, double size, std::uint64_t seed);
/// A hub with a shaft and four blades that stick in it, all closed.
[[nodiscard]] Facets rotor();

/// Each triangle shrunk towards its centre, so that all edges leak.
[[nodiscard]] Facets shrunk(Facets body, double share);
/// Every other triangle turned over.
[[nodiscard]] Facets mixed(Facets body);
/// The triangles in another order.
[[nodiscard]] Facets shuffled(Facets body, std::uint64_t seed);
/// The corners of each triangle in another order.
[[nodiscard]] Facets rewound(Facets body, std::uint64_t seed);

} // namespace Testing
