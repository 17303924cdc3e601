// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "geometry/WettedSurfaceMesh.h"

#include <vector>

namespace Tavro {

/// An edge with the angle by which the surface turns there.
struct CurvatureEdge : MeshEdge {
    using MeshEdge::MeshEdge;

    double m_dCurvature = 0.0; ///< radians: 0 is flat, pi folded back
};

/// A triangle of a mesh with curvature; it holds what every wetted triangle holds.
struct CurvatureTriangle : WettedTriangle {
    using WettedTriangle::WettedTriangle;
};

#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wnon-virtual-dtor" // as for `TriangleMesh`

/// A mesh whose edges know how sharp the surface is there.
///
/// Of triangles without area the normals, and so the angles, are NaN; nothing reports that.
class CurvatureMesh // NOLINT(cppcoreguidelines-virtual-class-destructor): as its base
    : public WettedSurfaceMesh {
public:
    CurvatureMesh() = default;
    ~CurvatureMesh();
    CurvatureMesh(const CurvatureMesh&) = delete;
    CurvatureMesh& operator=(const CurvatureMesh&) = delete;
    CurvatureMesh(CurvatureMesh&&) = delete;
    CurvatureMesh& operator=(CurvatureMesh&&) = delete;

    /// Makes a `CurvatureEdge` with a curvature of 0.
    [[nodiscard]] MeshEdge* CreateEdge(MeshVertex* v0, MeshVertex* v1) override;
    /// Makes a `CurvatureTriangle` as `WettedSurfaceMesh` makes its triangles.
    [[nodiscard]] MeshTriangle* CreateTriangle(MeshVertex* v0, MeshVertex* v1, MeshVertex* v2,
        MeshEdge* e0, MeshEdge* e1, MeshEdge* e2) override;
    void DestroyEdge(MeshEdge* edge) override;
    void DestroyTriangle(MeshTriangle* triangle) override;

    /// Radians between two triangles at their common edge: 0 if they lie in one plane on opposite
    /// sides of it, pi if they lie on each other.
    [[nodiscard]] static double GetAngleBetweenAdjacentTriangles(
        const MeshTriangle* t1, const MeshTriangle* t2, const MeshEdge* edge);
    /// The triangles on an edge by their angle around it, counted from the first in set order. Of
    /// several with the same angle only the last in set order is among them.
    [[nodiscard]] static std::vector<MeshTriangle*> OrderAdjacentTriangles(const MeshEdge* edge);
    /// Sets the curvature from the triangles on the edge and their wetted sides; an edge without
    /// triangles keeps what it has. The edge must be one of a mesh with wetted triangles.
    static void SetEdgeCurvature(CurvatureEdge* edge);
    /// Marks the surface and sets the curvature of all edges.
    void CalculateEdgeCurvature();

private:
    Arena<CurvatureEdge> m_arenaEdges;
    Arena<CurvatureTriangle> m_arenaTriangles;
};

#pragma GCC diagnostic pop

} // namespace Tavro
