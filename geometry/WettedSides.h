// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "geometry/WettedSurfaceMesh.h"

/// What the marking of sides and the choice of wind directions have in common.
namespace Tavro {

[[nodiscard]] inline WettedTriangle* AsWetted(MeshTriangle* triangle)
{
    return static_cast<WettedTriangle*>(triangle);
}
[[nodiscard]] inline const WettedTriangle* AsWetted(const MeshTriangle* triangle)
{
    return static_cast<const WettedTriangle*>(triangle);
}

/// Whether two triangles on an edge are wound alike: the edge runs one way in the one and the other
/// way in the other. False if the edge is not one of both.
[[nodiscard]] bool WoundAlike(const MeshTriangle& t1, const MeshTriangle& t2, const MeshEdge& edge);

} // namespace Tavro
