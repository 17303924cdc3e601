// SPDX-License-Identifier: Apache-2.0
#include "geometry/basicmorpher/BasicMorpher.h"

#include "geometry/VectorMath.h"

#include <algorithm>
#include <cmath>

namespace BasicMorpher {

VertIt BasicMorpher::AddVert(const Vert& vert)
{
    const VertIt added = m_lstVerts.emplace_front(vert);
    m_mapVerts.Enter(added->m_vPosition, added);
    return added;
}

EdgeIt BasicMorpher::AddEdge(const Edge& edge)
{
    const EdgeIt added = m_lstEdges.emplace_front(edge);
    added->m_itVert0->m_vecEdges.push_back(added);
    added->m_itVert1->m_vecEdges.push_back(added);
    const Position along
        = Tavro::Subtract(added->m_itVert1->m_vPosition, added->m_itVert0->m_vPosition);
    const double length = std::sqrt(Tavro::Dot(along, along));
    if (length < m_dMinEdgeLength)
        m_dMinEdgeLength = length;
    return added;
}

FaceIt BasicMorpher::AddFace(const Face& face) { return EmplaceFace(face); }

template <typename FaceOrRing>
FaceIt BasicMorpher::EmplaceFace(const FaceOrRing& made)
{
    const FaceIt added = m_lstFaces.emplace_front(made);
    for (const EdgeIt edge : added->m_vecEdges)
        edge->m_vecFaces.push_back(added);
    return added;
}

CellIt BasicMorpher::AddCell(const Cell& cell)
{
    const CellIt added = m_lstCells.emplace_front(cell);
    for (const FaceIt face : added->m_vecFaces)
        face->m_vecCells.push_back(added);
    return added;
}

VertIt BasicMorpher::FindVert(const Position& position) const
{
    const VertIt found = m_mapVerts.Find(position);
    return m_lstVerts.contains(found) ? found : m_lstVerts.end(); // entries outlive their vertices
}

EdgeIt BasicMorpher::FindEdge(VertIt vert0, VertIt vert1) const
{
    if (vert0 == m_lstVerts.end() || vert1 == m_lstVerts.end())
        return m_lstEdges.end();
    // An edge stands in the arrays of both its ends; the shorter one is the quicker.
    if (vert1->m_vecEdges.size() < vert0->m_vecEdges.size())
        std::swap(vert0, vert1);
    for (const EdgeIt edge : vert0->m_vecEdges) {
        if (edge->OtherEnd(vert0) == vert1)
            return edge;
    }
    return m_lstEdges.end();
}

namespace {

/// The only face on three edges; none if there is no face on all of them, or more than one.
FaceIt OnlyFaceOn(std::span<const EdgeIt, 3> edges, bool& areMore)
{
    // Most faces are sought where they are not: on edges that are new, or have few others.
    const auto& faces0 = edges[0]->m_vecFaces;
    const auto& faces1 = edges[1]->m_vecFaces;
    const auto& faces2 = edges[2]->m_vecFaces;
    const bool isSecondLess = faces1.size() < faces0.size();
    const auto& fewer = isSecondLess ? faces1 : faces0;
    const auto& more = isSecondLess ? faces0 : faces1;
    const bool isThirdLeast = faces2.size() < fewer.size();
    const auto& fewest = isThirdLeast ? faces2 : fewer;
    const auto& others = isThirdLeast ? fewer : faces2;
    FaceIt only;
    for (const FaceIt face : fewest) {
        if (!others.contains(face) || !more.contains(face))
            continue;
        areMore = only != FaceIt();
        if (areMore)
            return {};
        only = face;
    }
    return only;
}

} // namespace

FaceIt BasicMorpher::FindFace(std::span<const EdgeIt> edges) const
{
    if (edges.size() < 3 || std::count(edges.begin(), edges.end(), m_lstEdges.end()) != 0)
        return m_lstFaces.end();
    if (edges.size() == 3) {
        bool areMore = false;
        const FaceIt only = OnlyFaceOn(edges.first<3>(), areMore);
        if (!areMore)
            return only;
    }
    for (const FaceIt face : edges[0]->m_vecFaces) {
        if (std::all_of(edges.begin() + 1, edges.end(),
                [face](EdgeIt edge) { return edge->m_vecFaces.contains(face); }))
            return face;
    }
    return m_lstFaces.end();
}

CellIt BasicMorpher::FindCell(std::span<const FaceIt> faces) const
{
    if (faces.size() < 3 || std::count(faces.begin(), faces.end(), m_lstFaces.end()) != 0)
        return m_lstCells.end();
    for (const CellIt cell : faces[0]->m_vecCells) {
        if (std::all_of(faces.begin() + 1, faces.end(),
                [cell](FaceIt face) { return face->m_vecCells.contains(cell); }))
            return cell;
    }
    return m_lstCells.end();
}

void BasicMorpher::RemoveVert(VertIt vert)
{
    if (!vert->m_vecEdges.empty()) {
        throw BasicMorpherException(
            "RemoveVert:  Attempted to remove vert that is still in an edge.");
    }
    m_lstVerts.erase(vert);
}

// In these three, an array that names an element twice is named twice by that element: each naming
// deletes one, so that nothing goes before its last use.

void BasicMorpher::RemoveEdge(EdgeIt edge)
{
    for (const VertIt vert : { edge->m_itVert0, edge->m_itVert1 }) {
        if (vert->m_vecEdges.Delete(edge) && vert->m_vecEdges.empty())
            RemoveVert(vert);
    }
    if (!edge->m_vecFaces.empty()) {
        throw BasicMorpherException(
            "RemoveEdge:  Attempted to remove edge that is still in a face.");
    }
    m_lstEdges.erase(edge);
}

void BasicMorpher::RemoveFace(FaceIt face)
{
    for (const EdgeIt edge : face->m_vecEdges) {
        if (edge->m_vecFaces.Delete(face) && edge->m_vecFaces.empty())
            RemoveEdge(edge);
    }
    if (!face->m_vecCells.empty()) {
        throw BasicMorpherException(
            "RemoveFace:  Attempted to remove face that is still in a cell.");
    }
    m_lstFaces.erase(face);
}

void BasicMorpher::RemoveCell(CellIt cell)
{
    for (const FaceIt face : cell->m_vecFaces) {
        if (face->m_vecCells.Delete(cell) && face->m_vecCells.empty())
            RemoveFace(face);
    }
    m_lstCells.erase(cell);
}

} // namespace BasicMorpher
