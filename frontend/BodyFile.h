// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "frontend/CaseTree.h"
#include "frontend/Diagnostics.h"
#include "geometry/ValueTypes.h"

#include <string>
#include <vector>

namespace Frontend {

using Facets = std::vector<Tavro::Facet<double, 3, 3>>;

/// Appends the triangles of an STL or OBJ file, in its order; polygons are divided. Coordinates
/// have the 24 bits of such files. What is wrong with it is reported at `place`, where it is named.
void read_body_file(
    const std::string& path, const Place& place, Diagnostics& diagnostics, Facets& facets);

/// Scales, then turns about x, y and z, then moves. Points that are equal stay equal.
void move_facets(const BodySource& source, Facets& facets);

} // namespace Frontend
