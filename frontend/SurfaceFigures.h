// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "geometry/FacetSurface.h"

#include <cstddef>
#include <string>

namespace Frontend {

using Surface = Tavro::FacetSurface<double, 3>;

/// What there is to say of a surface of triangles.
struct SurfaceFigures {
    std::size_t triangles = 0;
    std::size_t openEdges = 0; ///< edges that do not have exactly two triangles
    double area = 0.0;
    double volume = 0.0; ///< of a closed surface; positive if wound outward
    double leastCurvature = 0.0; ///< degrees by which the surface turns at an edge of a triangle
    double mostCurvature = 0.0;
};

[[nodiscard]] SurfaceFigures figures_of(const Surface& surface, unsigned char curvatureChannel);

/// The surface as a VTK file of text, with normals at its points and the curvature, in radians, of
/// its triangles. Numbers come out whole.
[[nodiscard]] std::string vtk_text(
    const Surface& surface, unsigned char normalChannel, unsigned char curvatureChannel);

} // namespace Frontend
