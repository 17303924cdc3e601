// SPDX-License-Identifier: Apache-2.0
#include "geometry/TriangleMesh.h"

#include "geometry/VectorMath.h"

#include <algorithm>

namespace Tavro {

namespace {

/// A triangle of this winding among those of the edges' triangles; null if there is none.
MeshTriangle* find_triangle(MeshVertex* const (&vertices)[3], MeshEdge* const (&edges)[3])
{
    // Any of the edges would do; the shortest list is the quickest.
    const MeshEdge* const edge = *std::min_element(
        std::begin(edges), std::end(edges), [](const MeshEdge* left, const MeshEdge* right) {
            return left->m_setTriangles.size() < right->m_setTriangles.size();
        });
    const auto* const found = std::find_if(edge->m_setTriangles.begin(), edge->m_setTriangles.end(),
        [&](const MeshTriangle* t) { return t->Winds(vertices[0], vertices[1], vertices[2]); });
    return found != edge->m_setTriangles.end() ? *found : nullptr;
}

} // namespace

// Destroying through the factory of this class is what is meant here: a derived class with one of
// its own has destroyed its elements before.
TriangleMesh::~TriangleMesh() { DestroyElements(); }

void TriangleMesh::DestroyElements()
{
    // NOLINTBEGIN(clang-analyzer-optin.cplusplus.VirtualCall): as the destructor says
    for (MeshTriangle* triangle : m_vecTriangles)
        DestroyTriangle(triangle);
    for (MeshEdge* edge : m_vecEdges)
        DestroyEdge(edge);
    for (MeshVertex* vertex : m_vecVertices)
        DestroyVertex(vertex);
    // NOLINTEND(clang-analyzer-optin.cplusplus.VirtualCall)
    m_vecTriangles.clear();
    m_vecEdges.clear();
    m_vecVertices.clear();
}

MeshVertex* TriangleMesh::CreateVertex(const Vector<double, 3>& position)
{
    return m_arenaVertices.Create(position);
}

MeshEdge* TriangleMesh::CreateEdge(MeshVertex* v0, MeshVertex* v1)
{
    return m_arenaEdges.Create(v0, v1);
}

MeshTriangle* TriangleMesh::CreateTriangle(
    MeshVertex* v0, MeshVertex* v1, MeshVertex* v2, MeshEdge* e0, MeshEdge* e1, MeshEdge* e2)
{
    return m_arenaTriangles.Create(v0, v1, v2, e0, e1, e2);
}

void TriangleMesh::DestroyVertex(MeshVertex* vertex) { m_arenaVertices.Destroy(vertex); }

void TriangleMesh::DestroyEdge(MeshEdge* edge) { m_arenaEdges.Destroy(edge); }

void TriangleMesh::DestroyTriangle(MeshTriangle* triangle) { m_arenaTriangles.Destroy(triangle); }

MeshTriangle* TriangleMesh::AddTriangle(
    const Vector<double, 3>& a, const Vector<double, 3>& b, const Vector<double, 3>& c)
{
    if (SamePosition(a, b) || SamePosition(b, c) || SamePosition(c, a))
        return nullptr;

    // Braces keep the order: elements are created, and thereby ordered, from left to right.
    MeshVertex* const v[3] { FindOrAddVertex(a), FindOrAddVertex(b), FindOrAddVertex(c) };
    MeshEdge* const e[3] { FindOrAddEdge(v[0], v[1]), FindOrAddEdge(v[1], v[2]),
        FindOrAddEdge(v[2], v[0]) };
    MeshTriangle* triangle = find_triangle(v, e);
    if (triangle == nullptr) {
        triangle = CreateTriangle(v[0], v[1], v[2], e[0], e[1], e[2]);
        triangle->m_uiCreation = static_cast<std::uint32_t>(m_vecTriangles.size());
        m_vecTriangles.push_back(triangle);
        for (std::size_t i = 0; i < 3; ++i) {
            v[i]->m_setTriangles.insert(triangle);
            e[i]->m_setTriangles.insert(triangle);
        }
    }

    BoundingBox<double, 3> box { a, a };
    box += BoundingBox<double, 3> { b, b };
    box += BoundingBox<double, 3> { c, c };
    if (m_bBoxValid)
        m_Box += box;
    else
        m_Box = box;
    m_bBoxValid = true;
    return triangle;
}

MeshVertex* TriangleMesh::FindVertex(const Vector<double, 3>& position) const
{
    const std::uint32_t number
        = m_indexVertices.Find(position, [this](std::uint32_t i) -> const Vector<double, 3>& {
              return m_vecVertices[i]->m_vPosition;
          });
    return number != PositionIndex::kAbsent ? m_vecVertices[number] : nullptr;
}

MeshEdge* TriangleMesh::FindEdge(const MeshVertex* v0, const MeshVertex* v1)
{
    // The edge is in both lists; at the hub of a fan one of them is long.
    if (v1->m_setEdges.size() < v0->m_setEdges.size())
        std::swap(v0, v1);
    const auto* const found = std::find_if(v0->m_setEdges.begin(), v0->m_setEdges.end(),
        [&](const MeshEdge* edge) { return edge->Has(v1); });
    return found != v0->m_setEdges.end() ? *found : nullptr;
}

MeshVertex* TriangleMesh::FindOrAddVertex(const Vector<double, 3>& position)
{
    if (MeshVertex* const existing = FindVertex(position))
        return existing;
    MeshVertex* const vertex = CreateVertex(position);
    vertex->m_uiCreation = static_cast<std::uint32_t>(m_vecVertices.size());
    m_vecVertices.push_back(vertex);
    m_indexVertices.Insert(position, vertex->m_uiCreation);
    return vertex;
}

MeshEdge* TriangleMesh::FindOrAddEdge(MeshVertex* v0, MeshVertex* v1)
{
    if (MeshEdge* const existing = FindEdge(v0, v1))
        return existing;
    MeshEdge* const edge = CreateEdge(v0, v1);
    edge->m_uiCreation = static_cast<std::uint32_t>(m_vecEdges.size());
    m_vecEdges.push_back(edge);
    v0->m_setEdges.insert(edge);
    v1->m_setEdges.insert(edge);
    return edge;
}

bool TriangleMesh::IsManifold() const
{
    const bool edgesFit
        = std::all_of(m_vecEdges.begin(), m_vecEdges.end(), [](const MeshEdge* edge) {
              return edge->m_setTriangles.size() == 1 || edge->m_setTriangles.size() == 2;
          });
    if (!edgesFit)
        return false;
    return std::all_of(m_vecVertices.begin(), m_vecVertices.end(), [](const MeshVertex* vertex) {
        if (vertex->m_setTriangles.empty())
            return false;
        const auto atTheRim = std::count_if(vertex->m_setEdges.begin(), vertex->m_setEdges.end(),
            [](const MeshEdge* edge) { return edge->m_setTriangles.size() != 2; });
        return atTheRim == 0 || atTheRim == 2;
    });
}

} // namespace Tavro
