// SPDX-License-Identifier: Apache-2.0
#include "geometry/TriangleMesh.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace Tavro {

namespace {

/// By position. Vertices of one mesh are equal in position only where a NaN keeps them from being
/// merged; a NaN comes after all numbers, and then age decides, so that sorting stays defined.
bool comes_before(const MeshVertex* v, const MeshVertex* w)
{
    for (std::size_t axis = 0; axis < 3; ++axis) {
        const double x = v->m_vPosition[axis];
        const double y = w->m_vPosition[axis];
        if (x < y)
            return true;
        if (y < x)
            return false;
        if (std::isnan(x) != std::isnan(y))
            return std::isnan(y);
    }
    return v->m_uiCreation < w->m_uiCreation;
}

/// For each vertex, by its creation, its place in the order.
std::vector<std::uint32_t> places_of(const std::vector<MeshVertex*>& ordered)
{
    std::vector<std::uint32_t> places(ordered.size());
    for (std::size_t i = 0; i < ordered.size(); ++i)
        places[ordered[i]->m_uiCreation] = static_cast<std::uint32_t>(i);
    return places;
}

/// Elements by their first vertex in order, and among those of one vertex by `key(element)`: short
/// sorts in place of a long one. `elementsOf(vertex)` are those that use a vertex, of which
/// `startsAt(element, vertex)` picks those that have it first.
template <typename Element, typename ElementsOf, typename StartsAt, typename Key>
std::vector<Element*> by_first_vertex(const std::vector<MeshVertex*>& vertices,
    const ElementsOf& elementsOf, const StartsAt& startsAt, const Key& key)
{
    std::vector<Element*> ordered;
    for (const MeshVertex* vertex : vertices) {
        const auto group = ordered.size();
        for (Element* element : elementsOf(vertex)) {
            if (startsAt(element, vertex))
                ordered.push_back(element);
        }
        std::sort(ordered.begin() + static_cast<std::ptrdiff_t>(group), ordered.end(),
            [&](const Element* left, const Element* right) { return key(left) < key(right); });
    }
    return ordered;
}

} // namespace

std::vector<MeshVertex*> TriangleMesh::VerticesInMapOrder() const
{
    // With the first coordinate beside the pointer nearly no comparison has to look at a vertex.
    struct Entry {
        double m_dX;
        MeshVertex* m_pVertex;
    };
    std::vector<Entry> entries;
    entries.reserve(m_vecVertices.size());
    for (MeshVertex* vertex : m_vecVertices)
        entries.push_back({ vertex->m_vPosition[0], vertex });
    std::sort(entries.begin(), entries.end(), [](const Entry& left, const Entry& right) {
        if (left.m_dX != right.m_dX && !std::isunordered(left.m_dX, right.m_dX))
            return left.m_dX < right.m_dX;
        return comes_before(left.m_pVertex, right.m_pVertex);
    });
    std::vector<MeshVertex*> ordered;
    ordered.reserve(entries.size());
    for (const Entry& entry : entries)
        ordered.push_back(entry.m_pVertex);
    return ordered;
}

std::vector<MeshEdge*> TriangleMesh::EdgesInMapOrder() const
{
    const auto vertices = VerticesInMapOrder();
    const auto places = places_of(vertices);
    return by_first_vertex<MeshEdge>(
        vertices, [](const MeshVertex* v) -> const auto& { return v->m_setEdges; },
        [](const MeshEdge* edge, const MeshVertex* v) { return edge->m_pVertex0 == v; },
        [&](const MeshEdge* edge) { return places[edge->m_pVertex1->m_uiCreation]; });
}

std::vector<MeshTriangle*> TriangleMesh::TrianglesInMapOrder() const
{
    const auto vertices = VerticesInMapOrder();
    const auto places = places_of(vertices);
    return by_first_vertex<MeshTriangle>(
        vertices, [](const MeshVertex* v) -> const auto& { return v->m_setTriangles; },
        [](const MeshTriangle* t, const MeshVertex* v) { return t->m_apVertices[0] == v; },
        [&](const MeshTriangle* t) {
            return std::pair(
                places[t->m_apVertices[1]->m_uiCreation], places[t->m_apVertices[2]->m_uiCreation]);
        });
}

} // namespace Tavro
