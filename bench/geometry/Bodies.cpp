// SPDX-License-Identifier: Apache-2.0
#include "bench/geometry/Bodies.h"

#include "frontend/models/RobinBody.h"

#include <algorithm>
#include <cmath>
#include <numbers>

namespace Bench {

namespace {

using Point = Tavro::Vector<double, 3>;

/// 4 x rings x (rings - 1) facets between rings of latitude.
Facets sphere(int rings)
{
    const int around = 2 * rings;
    const auto at = [&](int ring, int place) -> Point {
        if (ring == 0 || ring == rings) // the poles are one point each
            return { 0, 0, ring == 0 ? -1.0 : 1.0 };
        const double latitude = std::numbers::pi * (static_cast<double>(ring) / rings - 0.5);
        const double longitude = 2 * std::numbers::pi * (place % around) / around;
        const double r = std::cos(latitude);
        return { r * std::cos(longitude), r * std::sin(longitude), std::sin(latitude) };
    };
    Facets out;
    for (int ring = 0; ring < rings; ++ring) {
        for (int place = 0; place < around; ++place) {
            const Point a = at(ring, place);
            const Point b = at(ring, place + 1);
            const Point c = at(ring + 1, place + 1);
            const Point d = at(ring + 1, place);
            if (ring > 0)
                out.push_back({ { a, b, d } });
            if (ring < rings - 1)
                out.push_back({ { b, c, d } });
        }
    }
    return out;
}

} // namespace

Facets body_named(const std::string& name)
{
    if (name == "sphere20k")
        return sphere(71);
    if (name == "sphere200k")
        return sphere(224);
    if (name == "sphere1m")
        return sphere(501);
    if (name == "robin") {
        Facets out = Examples::robin_fuselage(1, 200, 96);
        const Facets pylon = Examples::robin_pylon(1, 60, 96);
        out.insert(out.end(), pylon.begin(), pylon.end());
        return out;
    }
    return {};
}

double extent_of(const Facets& facets)
{
    double extent = 0;
    for (std::size_t axis = 0; axis < 3; ++axis) {
        double low = facets[0][0][axis];
        double high = low;
        for (const auto& facet : facets) {
            for (std::size_t i = 0; i < 3; ++i) {
                low = std::min(low, facet[i][axis]);
                high = std::max(high, facet[i][axis]);
            }
        }
        extent = std::max(extent, high - low);
    }
    return extent;
}

} // namespace Bench
