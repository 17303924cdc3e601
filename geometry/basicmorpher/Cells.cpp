// SPDX-License-Identifier: Apache-2.0
#include "geometry/basicmorpher/BasicMorpher.h"

#include <array>
#include <cstddef>

namespace BasicMorpher {

namespace {

/// The corners of a box that make its six tetrahedra, each with the first corner.
constexpr std::array<std::array<std::size_t, 3>, 6> kTetrahedra { {
    { 4, 5, 6 },
    { 1, 6, 5 },
    { 1, 2, 6 },
    { 2, 3, 6 },
    { 3, 7, 6 },
    { 4, 6, 7 },
} };

/// The diagonal that all of them share goes there from the first corner.
constexpr std::size_t kDiagonalEnd = 6;

/// What a face of the first corner and these two has besides the diagonal; its end if the face is
/// not on it.
constexpr std::size_t ThirdCorner(std::size_t p, std::size_t q)
{
    if (p == kDiagonalEnd)
        return q;
    return q == kDiagonalEnd ? p : kDiagonalEnd;
}

} // namespace

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

CellIt BasicMorpher::FindOrAddCell(
    std::span<const std::span<const EdgeIt>> rings, std::span<FaceIt> knownFaces)
{
    Cell cell;
    bool allWereThere = true;
    for (std::size_t i = 0; i < rings.size(); ++i) {
        FaceIt face = knownFaces[i] != FaceIt() ? knownFaces[i] : FindFace(rings[i]);
        if (face == FaceIt()) {
            allWereThere = false;
            face = AddFace(Face(rings[i]));
            knownFaces[i] = face;
        }
        cell.m_vecFaces.push_back(face);
    }
    const CellIt found = allWereThere ? FindCell(cell.m_vecFaces) : m_lstCells.end();
    return found != m_lstCells.end() ? found : AddCell(cell);
}

CellIt BasicMorpher::FindOrAddTetrahedron(
    const std::array<EdgeIt, 6>& edges, std::array<FaceIt, 4>& knownFaces)
{
    const auto& [ab, ac, ad, bc, cd, db] = edges;
    const std::array abc { ab, bc, ac };
    const std::array acd { ac, cd, ad };
    const std::array adb { ad, db, ab };
    const std::array bcd { bc, cd, db };
    ++m_counters.m_tetrahedra;
    return FindOrAddCell(std::array<std::span<const EdgeIt>, 4> { abc, acd, adb, bcd }, knownFaces);
}

CellIt BasicMorpher::AddTetrahedralCell(const Position& a, const Position& b, const Position& c,
    const Position& d, const FacetArray& facets)
{
    const VertIt vertA = FindOrAddVert(a);
    const VertIt vertB = FindOrAddVert(b);
    const VertIt vertC = FindOrAddVert(c);
    const VertIt vertD = FindOrAddVert(d);
    std::array<FaceIt, 4> noneKnown;
    // Braces keep the order in which edges are added.
    const CellIt cell = FindOrAddTetrahedron(
        { FindOrAddEdge(vertA, vertB), FindOrAddEdge(vertA, vertC), FindOrAddEdge(vertA, vertD),
            FindOrAddEdge(vertB, vertC), FindOrAddEdge(vertC, vertD), FindOrAddEdge(vertD, vertB) },
        noneKnown);
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
    std::array<FaceIt, 6> noneKnown;
    return FindOrAddCell(
        std::array<std::span<const EdgeIt>, 6> { bottom, top, front, right, back, left },
        noneKnown);
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
    std::array<VertIt, 8> v;
    v[0] = FindOrAddVert(c0);
    v[4] = FindOrAddVert(c4);
    v[5] = FindOrAddVert(c5);
    v[6] = FindOrAddVert(c6);
    v[1] = FindOrAddVert(c1);
    v[2] = FindOrAddVert(c2);
    v[3] = FindOrAddVert(c3);
    v[7] = FindOrAddVert(c7);
    // The tetrahedra share most of their edges: 19 different ones in place of 36.
    std::array<EdgeIt, 64> sought;
    const auto edge = [&](std::size_t i, std::size_t j) {
        EdgeIt& known = sought[i < j ? 8 * i + j : 8 * j + i];
        if (known == EdgeIt())
            known = FindOrAddEdge(v[i], v[j]);
        return known;
    };
    // A face on the diagonal is that of two tetrahedra. If the first one added it, it is the only
    // one on its edges, and need not be sought for the second; here by its third corner.
    std::array<FaceIt, 8> onDiagonal;
    for (const auto& [b, c, d] : kTetrahedra) {
        // The faces abc, acd, adb and bcd.
        const std::array<std::size_t, 3> third { ThirdCorner(b, c), ThirdCorner(c, d),
            ThirdCorner(d, b) };
        std::array<FaceIt, 4> known { onDiagonal[third[0]], onDiagonal[third[1]],
            onDiagonal[third[2]], FaceIt() };
        const CellIt cell = FindOrAddTetrahedron(
            { edge(0, b), edge(0, c), edge(0, d), edge(b, c), edge(c, d), edge(d, b) }, known);
        for (std::size_t i = 0; i < third.size(); ++i) {
            if (third[i] != kDiagonalEnd)
                onDiagonal[third[i]] = known[i];
        }
        cell->m_vecTriangles.Append(facets);
    }
}

} // namespace BasicMorpher
