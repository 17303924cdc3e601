// SPDX-License-Identifier: Apache-2.0
#include "tests/geometry/support/Shapes.h"

#include <cmath>
#include <numbers>
#include <utility>

namespace Testing {

namespace {

void put_quad(Facets& out, const Point& a, const Point& b, const Point& c, const Point& d)
{
    out.push_back({ { a, b, c } });
    out.push_back({ { a, c, d } });
}

} // namespace

Facets box(const Point& low, const Point& high)
{
    // Corner i has the upper bound of x, y and z where bits 0, 1 and 2 of i are set.
    const auto corner = [&](unsigned int i) {
        Point point {};
        for (std::size_t axis = 0; axis < 3; ++axis)
            point[axis] = (i >> axis & 1U) != 0 ? high[axis] : low[axis];
        return point;
    };
    Facets out;
    put_quad(out, corner(0), corner(4), corner(6), corner(2));
    put_quad(out, corner(1), corner(3), corner(7), corner(5));
    put_quad(out, corner(0), corner(1), corner(5), corner(4));
    put_quad(out, corner(2), corner(6), corner(7), corner(3));
    put_quad(out, corner(0), corner(2), corner(3), corner(1));
    put_quad(out, corner(4), corner(5), corner(7), corner(6));
    return out;
}

Facets corner_tetrahedron(double size)
{
    const Point o { 0, 0, 0 };
    const Point x { size, 0, 0 };
    const Point y { 0, size, 0 };
    const Point z { 0, 0, size };
    return { { { o, y, x } }, { { o, x, z } }, { { o, z, y } }, { { x, y, z } } };
}

Facets sphere(const Point& centre, double radius, int rings, int around)
{
    const auto at = [&](int ring, int place) -> Point {
        if (ring == 0 || ring == rings) // the poles are one point each
            return { centre[0], centre[1], centre[2] + (ring == 0 ? -radius : radius) };
        const double latitude = std::numbers::pi * (static_cast<double>(ring) / rings - 0.5);
        const double longitude = 2 * std::numbers::pi * (place % around) / around;
        const double r = radius * std::cos(latitude);
        return { centre[0] + r * std::cos(longitude), centre[1] + r * std::sin(longitude),
            centre[2] + radius * std::sin(latitude) };
    };
    Facets out;
    for (int ring = 0; ring < rings; ++ring) {
        for (int place = 0; place < around; ++place) {
            if (ring > 0)
                out.push_back({ { at(ring, place), at(ring, place + 1), at(ring + 1, place) } });
            if (ring < rings - 1)
                out.push_back(
                    { { at(ring, place + 1), at(ring + 1, place + 1), at(ring + 1, place) } });
        }
    }
    return out;
}

Facets sheet(double size, int cells)
{
    const auto at = [&](int i, int j) -> Point {
        return { size * i / cells, size * j / cells, 0 };
    };
    Facets out;
    for (int i = 0; i < cells; ++i) {
        for (int j = 0; j < cells; ++j)
            put_quad(out, at(i, j), at(i + 1, j), at(i + 1, j + 1), at(i, j + 1));
    }
    return out;
}

Facets joined(Facets first, const Facets& second)
{
    first.insert(first.end(), second.begin(), second.end());
    return first;
}

Facets reversed(Facets triangles)
{
    for (Triangle& triangle : triangles)
        std::swap(triangle[1], triangle[2]);
    return triangles;
}

} // namespace Testing
