// SPDX-License-Identifier: Apache-2.0
#include "geometry/WettedSurfaceMesh.h"

namespace Tavro {

// The elements of a derived class with a factory of its own are gone before.
WettedSurfaceMesh::~WettedSurfaceMesh() { DestroyElements(); }

MeshTriangle* WettedSurfaceMesh::CreateTriangle(
    MeshVertex* v0, MeshVertex* v1, MeshVertex* v2, MeshEdge* e0, MeshEdge* e1, MeshEdge* e2)
{
    return m_arenaTriangles.Create(v0, v1, v2, e0, e1, e2);
}

void WettedSurfaceMesh::DestroyTriangle(MeshTriangle* triangle)
{
    m_arenaTriangles.Destroy(static_cast<WettedTriangle*>(triangle));
}

MeshTriangle* WettedSurfaceMesh::AddTriangle(
    const Vector<double, 3>& a, const Vector<double, 3>& b, const Vector<double, 3>& c)
{
    m_bSurfaceMarked = false;
    return TriangleMesh::AddTriangle(a, b, c);
}

std::span<WettedTriangle* const> WettedSurfaceMesh::WettedTrianglesInMapOrder() const
{
    // Triangles are never removed, so their number tells whether the order is still whole.
    if (m_vecInMapOrder.size() != Triangles().size()) {
        m_vecInMapOrder.clear();
        m_vecInMapOrder.reserve(Triangles().size());
        for (MeshTriangle* triangle : TrianglesInMapOrder())
            m_vecInMapOrder.push_back(static_cast<WettedTriangle*>(triangle));
    }
    return m_vecInMapOrder;
}

} // namespace Tavro
