// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "frontend/BodyFile.h"

namespace Testing {

/// A box from one corner to the other, closed, of 12 triangles.
inline Frontend::Facets box(double x0, double y0, double z0, double x1, double y1, double z1)
{
    const auto corner = [&](int i) {
        return Tavro::Vector<double, 3> { (i & 1) != 0 ? x1 : x0, (i & 2) != 0 ? y1 : y0,
            (i & 4) != 0 ? z1 : z0 };
    };
    Frontend::Facets facets;
    constexpr int kFaces[6][4] { { 0, 2, 3, 1 }, { 4, 5, 7, 6 }, { 0, 1, 5, 4 }, { 2, 6, 7, 3 },
        { 0, 4, 6, 2 }, { 1, 3, 7, 5 } };
    for (const auto& f : kFaces) {
        facets.push_back({ { corner(f[0]), corner(f[1]), corner(f[2]) } });
        facets.push_back({ { corner(f[0]), corner(f[2]), corner(f[3]) } });
    }
    return facets;
}

} // namespace Testing
