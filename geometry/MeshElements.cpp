// SPDX-License-Identifier: Apache-2.0
#include "geometry/MeshElements.h"

#include "geometry/VectorMath.h"

#include <algorithm>

namespace Tavro {

MeshEdge::MeshEdge(MeshVertex* v0, MeshVertex* v1)
    : m_pVertex0(v0)
    , m_pVertex1(v1)
{
    if (LexicographicallyLess(v1->m_vPosition, v0->m_vPosition))
        std::swap(m_pVertex0, m_pVertex1);
}

MeshTriangle::MeshTriangle(
    MeshVertex* v0, MeshVertex* v1, MeshVertex* v2, MeshEdge* e0, MeshEdge* e1, MeshEdge* e2)
    : m_apVertices { v0, v1, v2 }
    , m_apEdges { e0, e1, e2 }
{
    const auto less = [](const MeshVertex* v, const MeshVertex* w) {
        return LexicographicallyLess(v->m_vPosition, w->m_vPosition);
    };
    const std::size_t first = less(v1, v0) && less(v1, v2) ? 1
        : less(v2, v0) && less(v2, v1)                     ? 2
                                                           : 0;
    std::rotate(m_apVertices, m_apVertices + first, m_apVertices + 3);
    std::rotate(m_apEdges, m_apEdges + first, m_apEdges + 3);
}

bool MeshTriangle::Winds(const MeshVertex* v0, const MeshVertex* v1, const MeshVertex* v2) const
{
    for (std::size_t i = 0; i < 3; ++i) {
        if (m_apVertices[i] == v0)
            return m_apVertices[(i + 1) % 3] == v1 && m_apVertices[(i + 2) % 3] == v2;
    }
    return false;
}

MeshVertex* MeshTriangle::VertexOff(const MeshEdge* edge) const
{
    if (!edge->Has(m_apVertices[0]))
        return m_apVertices[0];
    return edge->Has(m_apVertices[1]) ? m_apVertices[2] : m_apVertices[1];
}

} // namespace Tavro
