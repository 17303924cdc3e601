// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "geometry/Arena.h"
#include "geometry/FacetSurface.h"
#include "geometry/MeshElements.h"
#include "geometry/RefPtr.h"
#include "geometry/ValueTypes.h"

#include <vector>

namespace Tavro {

/// The facets of all bodies of a case, which may overlap, intersect and leak, and the one clean
/// surface around them. Threads: one.
class TriangleCloud {
public:
    TriangleCloud() = default;
    ~TriangleCloud() = default;
    TriangleCloud(const TriangleCloud&) = delete;
    TriangleCloud& operator=(const TriangleCloud&) = delete;
    TriangleCloud(TriangleCloud&&) = delete;
    TriangleCloud& operator=(TriangleCloud&&) = delete;

    /// Number of the new facet, from 0; -1, and nothing is stored, if two of the points are equal.
    int AddTriangle(
        const Vector<double, 3>& a, const Vector<double, 3>& b, const Vector<double, 3>& c);

    /// Outward unit normal at a vertex of a mesh with wetted triangles and wind directions, from
    /// those around it that separate; without any, from those wetted on both sides; else from those
    /// dry on both sides. Along z without any of these.
    [[nodiscard]] static Vector<double, 3> GetVertexNormal(const MeshVertex* vertex);

    /// The approximate wetted surface: triangles, wound outward, at the resolution of octree cells
    /// of this level around the facets. Where bodies are thinner than a cell it may hold triangles
    /// that have air on both sides. Without facets it is empty.
    ///
    /// `normalChannel` becomes the vertex vector channel of outward normals. With curvature,
    /// `curvatureChannel` becomes the facet double channel of the greatest angle, in radians, by
    /// which the surface turns at the facet's edges; else it is left alone.
    /// The first call of a process settles how closely crossings are judged, for all calls: bodies
    /// in another unit of length belong in another process.
    /// Errors: `BasicMorpher::BasicMorpherException` if the cells cannot be cut.
    /// Cost: cells and facets, which grow fourfold with each level.
    [[nodiscard]] RefPtr<FacetSurface<double, 3>> GenerateApproximateWettedSurface(
        unsigned int level, unsigned char& normalChannel, bool withCurvature,
        unsigned char& curvatureChannel) const;

    BoundingBox<double, 3> m_Box {}; ///< of all facets; zero without any
    std::vector<Facet<double, 3, 3>*> m_vecFacets; ///< owned by the cloud

private:
    Arena<Facet<double, 3, 3>> m_arenaFacets;
};

} // namespace Tavro
