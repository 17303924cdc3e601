// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "geometry/ValueTypes.h"

#include <string>
#include <string_view>
#include <vector>

namespace Frontend {

/// Whether the first bytes of a file are those of an STL text whose words have capitals, such as
/// "SOLID" or "Facet".
[[nodiscard]] bool is_stl_in_capitals(std::string_view head);

/// Appends the triangles of the bytes of an STL file, of either form, in their order. Empty, or why
/// they cannot be read. Coordinates have 24 bits; words may have capitals.
[[nodiscard]] std::string read_stl(
    std::string_view bytes, std::vector<Tavro::Facet<double, 3, 3>>& facets);

/// The same of an OBJ file: of all that such a file may hold, its points and its faces. Polygons
/// are divided, without a corner that is not theirs.
[[nodiscard]] std::string read_obj(
    std::string_view text, std::vector<Tavro::Facet<double, 3, 3>>& facets);

} // namespace Frontend
