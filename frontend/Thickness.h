// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "frontend/BodyFile.h"

#include <array>
#include <cstddef>
#include <vector>

namespace Frontend {

/// Where a closed body is thinner than some length: between sides that face each other, or nearly
/// everywhere. Beside their edges all bodies are thin.
struct ThinParts {
    double share = 0.0; ///< of its area, 0 to 1
    double largest = 0.0; ///< area of the largest of them that hangs together
};

/// Measures a closed body of finite coordinates along its normals, at points spread over its area
/// and at least one on each triangle, always the same ones. The winding does not count.
[[nodiscard]] ThinParts thin_parts(const Facets& facets, double length);

/// Numbers of the corners of each triangle, equal points having one.
[[nodiscard]] std::vector<std::array<std::size_t, 3>> numbered_corners(const Facets& facets);

} // namespace Frontend
