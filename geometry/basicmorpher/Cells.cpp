// SPDX-License-Identifier: Apache-2.0
#include "geometry/basicmorpher/BasicMorpher.h"

#include <array>
#include <cstddef>

namespace BasicMorpher {

VertIt BasicMorpher::FindOrAddVert(const Position& position)
{
    const VertIt found = FindVert(position);
    return found != m_lstVerts.end() ? found : AddVert(Vert(position));
}

EdgeIt BasicMorpher::FindOrAddEdge(VertIt vert0, VertIt vert1)
{
    const EdgeIt found = FindEdge(vert0, vert1);
    return found != m_lstEdges.end() ? found : AddEdge(Edge(vert0, vert1));
}

CellIt BasicMorpher::FindOrAddCell(std::span<const std::span<const EdgeIt>> rings)
{
    Cell cell;
    bool allWereThere = true;
    for (const std::span<const EdgeIt> ring : rings) {
        const FaceIt found = FindFace(ring);
        allWereThere = allWereThere && found != m_lstFaces.end();
        cell.m_vecFaces.push_back(found != m_lstFaces.end() ? found : AddFace(Face(ring)));
    }
    const CellIt found = allWereThere ? FindCell(cell.m_vecFaces) : m_lstCells.end();
    return found != m_lstCells.end() ? found : AddCell(cell);
}

CellIt BasicMorpher::FindOrAddTetrahedron(VertIt a, VertIt b, VertIt c, VertIt d)
{
    const EdgeIt ab = FindOrAddEdge(a, b);
    const EdgeIt ac = FindOrAddEdge(a, c);
    const EdgeIt ad = FindOrAddEdge(a, d);
    const EdgeIt bc = FindOrAddEdge(b, c);
    const EdgeIt cd = FindOrAddEdge(c, d);
    const EdgeIt db = FindOrAddEdge(d, b);
    const std::array abc { ab, bc, ac };
    const std::array acd { ac, cd, ad };
    const std::array adb { ad, db, ab };
    const std::array bcd { bc, cd, db };
    ++m_counters.m_tetrahedra;
    return FindOrAddCell(std::array<std::span<const EdgeIt>, 4> { abc, acd, adb, bcd });
}

CellIt BasicMorpher::AddTetrahedralCell(const Position& a, const Position& b, const Position& c,
    const Position& d, const FacetArray& facets)
{
    const VertIt vertA = FindOrAddVert(a);
    const VertIt vertB = FindOrAddVert(b);
    const VertIt vertC = FindOrAddVert(c);
    const VertIt vertD = FindOrAddVert(d);
    const CellIt cell = FindOrAddTetrahedron(vertA, vertB, vertC, vertD);
    cell->m_vecTriangles.Append(facets);
    return cell;
}

CellIt BasicMorpher::AddHexahedralCell(const Position& c0, const Position& c1, const Position& c2,
    const Position& c3, const Position& c4, const Position& c5, const Position& c6,
    const Position& c7)
{
    const VertIt v0 = FindOrAddVert(c0);
    const VertIt v1 = FindOrAddVert(c1);
    const VertIt v2 = FindOrAddVert(c2);
    const VertIt v3 = FindOrAddVert(c3);
    const VertIt v4 = FindOrAddVert(c4);
    const VertIt v5 = FindOrAddVert(c5);
    const VertIt v6 = FindOrAddVert(c6);
    const VertIt v7 = FindOrAddVert(c7);

    const EdgeIt e01 = FindOrAddEdge(v0, v1);
    const EdgeIt e12 = FindOrAddEdge(v1, v2);
    const EdgeIt e23 = FindOrAddEdge(v2, v3);
    const EdgeIt e30 = FindOrAddEdge(v3, v0);
    const EdgeIt e45 = FindOrAddEdge(v4, v5);
    const EdgeIt e56 = FindOrAddEdge(v5, v6);
    const EdgeIt e67 = FindOrAddEdge(v6, v7);
    const EdgeIt e74 = FindOrAddEdge(v7, v4);
    const EdgeIt e04 = FindOrAddEdge(v0, v4);
    const EdgeIt e15 = FindOrAddEdge(v1, v5);
    const EdgeIt e26 = FindOrAddEdge(v2, v6);
    const EdgeIt e37 = FindOrAddEdge(v3, v7);

    const std::array bottom { e01, e12, e23, e30 };
    const std::array top { e45, e56, e67, e74 };
    const std::array front { e01, e15, e45, e04 };
    const std::array right { e12, e26, e56, e15 };
    const std::array back { e23, e37, e67, e26 };
    const std::array left { e30, e04, e74, e37 };
    ++m_counters.m_hexahedra;
    return FindOrAddCell(
        std::array<std::span<const EdgeIt>, 6> { bottom, top, front, right, back, left });
}

void BasicMorpher::AddCell(const Position& c0, const Position& c1, const Position& c2,
    const Position& c3, const Position& c4, const Position& c5, const Position& c6,
    const Position& c7, const FacetArray& facets)
{
    if (facets.empty()) {
        AddHexahedralCell(c0, c1, c2, c3, c4, c5, c6, c7);
        return;
    }
    // Each corner is sought once, in the order in which the tetrahedra first need it.
    const VertIt v0 = FindOrAddVert(c0);
    const VertIt v4 = FindOrAddVert(c4);
    const VertIt v5 = FindOrAddVert(c5);
    const VertIt v6 = FindOrAddVert(c6);
    const VertIt v1 = FindOrAddVert(c1);
    const VertIt v2 = FindOrAddVert(c2);
    const VertIt v3 = FindOrAddVert(c3);
    const VertIt v7 = FindOrAddVert(c7);
    for (const auto& [b, c, d] : std::array<std::array<VertIt, 3>, 6> { {
             { v4, v5, v6 },
             { v1, v6, v5 },
             { v1, v2, v6 },
             { v2, v3, v6 },
             { v3, v7, v6 },
             { v4, v6, v7 },
         } }) {
        FindOrAddTetrahedron(v0, b, c, d)->m_vecTriangles.Append(facets);
    }
}

} // namespace BasicMorpher
