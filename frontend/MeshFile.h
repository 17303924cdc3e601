// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "geometry/ValueTypes.h"

#include <string>
#include <vector>

namespace Frontend {

/// Appends the triangles of an STL or OBJ file, which its name tells, in its order; polygons are
/// divided. Empty, or why it cannot be read.
[[nodiscard]] std::string read_mesh_file(
    const std::string& path, std::vector<Tavro::Facet<double, 3, 3>>& facets);

} // namespace Frontend
