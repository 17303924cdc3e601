// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "geometry/ElementSet.h"
#include "geometry/ValueTypes.h"

#include <cstdint>

/// What a triangle mesh is made of. Elements refer to each other by address; the mesh owns them.
namespace Tavro {

struct MeshEdge;
struct MeshTriangle;

struct MeshVertex {
    explicit MeshVertex(const Vector<double, 3>& position)
        : m_vPosition(position)
    {
    }

    Vector<double, 3> m_vPosition;
    std::uint32_t m_uiCreation = 0; ///< how many vertices its mesh had before it
    ElementSet<MeshEdge, 8> m_setEdges; ///< those that end here
    ElementSet<MeshTriangle, 8> m_setTriangles; ///< those that use it
};

struct MeshEdge {
    /// The ends in any order; the lexicographically lesser position becomes the first end.
    MeshEdge(MeshVertex* v0, MeshVertex* v1);

    [[nodiscard]] bool Has(const MeshVertex* vertex) const
    {
        return m_pVertex0 == vertex || m_pVertex1 == vertex;
    }

    MeshVertex* m_pVertex0;
    MeshVertex* m_pVertex1;
    std::uint32_t m_uiCreation = 0; ///< how many edges its mesh had before it
    ElementSet<MeshTriangle, 2> m_setTriangles;
};

struct MeshTriangle {
    /// Vertices in winding order, edge i from vertex i to the next; both are rotated, never
    /// reflected, so that the vertex with the lexicographically least position comes first.
    MeshTriangle(
        MeshVertex* v0, MeshVertex* v1, MeshVertex* v2, MeshEdge* e0, MeshEdge* e1, MeshEdge* e2);

    /// Whether these are its vertices in its winding order, from whichever one on.
    [[nodiscard]] bool Winds(
        const MeshVertex* v0, const MeshVertex* v1, const MeshVertex* v2) const;
    /// The vertex that is not on the edge, which must be one of this triangle.
    [[nodiscard]] MeshVertex* VertexOff(const MeshEdge* edge) const;

    MeshVertex* m_apVertices[3];
    MeshEdge* m_apEdges[3];
    std::uint32_t m_uiCreation = 0; ///< how many triangles its mesh had before it
};

} // namespace Tavro
