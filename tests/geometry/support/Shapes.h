// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "geometry/ValueTypes.h"

#include <vector>

/// Bodies as facets, for tests of whole surfaces. Those that are closed are wound outward.
namespace Testing {

using Point = Tavro::Vector<double, 3>;
using Triangle = Tavro::Facet<double, 3, 3>;
using Facets = std::vector<Triangle>;

/// Twelve triangles: two to a face, in the order of the faces low x, high x, low y, and so on.
[[nodiscard]] Facets box(const Point& low, const Point& high);
[[nodiscard]] inline Facets cube(double low, double high)
{
    return box({ low, low, low }, { high, high, high });
}
/// The corner of a cube: the origin and `size` along each axis.
[[nodiscard]] Facets corner_tetrahedron(double size);
/// Rings of latitude about the z axis, 2 x around x (rings - 1) triangles.
[[nodiscard]] Facets sphere(const Point& centre, double radius, int rings, int around);
/// The square from the origin to (size, size, 0), open, in cells x cells squares of two triangles.
[[nodiscard]] Facets sheet(double size, int cells);

/// As if put behind each other.
[[nodiscard]] Facets joined(Facets first, const Facets& second);
[[nodiscard]] Facets reversed(Facets triangles);
/// Each corner becomes its image.
template <typename Image>
[[nodiscard]] Facets mapped(Facets triangles, const Image& image)
{
    for (Triangle& triangle : triangles) {
        for (std::size_t i = 0; i < 3; ++i)
            triangle[i] = image(triangle[i]);
    }
    return triangles;
}

} // namespace Testing
