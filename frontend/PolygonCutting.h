// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "geometry/ValueTypes.h"

#include <vector>

namespace Frontend {

/// Appends a polygon as triangles of its corners, wound as it is; one with fewer than three corners
/// has no surface and adds nothing. A convex one becomes a fan from its first corner. One that
/// crosses itself is divided all the same.
void append_polygon(const std::vector<Tavro::Vector<double, 3>>& corners,
    std::vector<Tavro::Facet<double, 3, 3>>& facets);

} // namespace Frontend
