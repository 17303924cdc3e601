// SPDX-License-Identifier: Apache-2.0
#include "tests/geometry/Allocations.h"
#include "tests/geometry/basicmorpher/Complexes.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <iterator>
#include <list>
#include <memory>
#include <set>

namespace {

using namespace Testing;
using BasicMorpher::Facet;
using BasicMorpher::FacetArray;
using Edges = std::vector<EdgeIt>;
using Faces = std::vector<FaceIt>;
using Cells = std::vector<CellIt>;
using Verts = std::vector<VertIt>;
using Facets = std::vector<Facet*>;

Facets facets_of(CellIt cell)
{
    return { cell->m_vecTriangles.begin(), cell->m_vecTriangles.end() };
}

/// A box of side 1 with its least corner at (x, y, z), and its corners by number.
struct Box {
    explicit Box(double x = 0, double y = 0, double z = 0)
        : m_corners { { { x, y, z }, { x + 1, y, z }, { x + 1, y + 1, z }, { x, y + 1, z },
            { x, y, z + 1 }, { x + 1, y, z + 1 }, { x + 1, y + 1, z + 1 }, { x, y + 1, z + 1 } } }
    {
    }
    void add_to(Complex& complex, const FacetArray& facets) const
    {
        const auto& c = m_corners;
        complex.AddCell(c[0], c[1], c[2], c[3], c[4], c[5], c[6], c[7], facets);
    }
    /// The vertices of some corners.
    [[nodiscard]] std::set<VertIt> verts(
        const Complex& complex, const std::vector<std::size_t>& numbers) const
    {
        std::set<VertIt> all;
        for (const std::size_t number : numbers)
            all.insert(complex.FindVert(m_corners[number]));
        return all;
    }

    std::array<Position, 8> m_corners;
};

std::set<VertIt> corners_of(CellIt cell)
{
    std::set<VertIt> all;
    for (const FaceIt face : cell->m_vecFaces) {
        for (const VertIt vert : corners(face))
            all.insert(vert);
    }
    return all;
}

TEST(AddTetrahedralCell, MakesFourVerticesSixEdgesFourFacesAndACell)
{
    const Tetrahedron t;
    EXPECT_EQ(counts(t.m_complex), (Counts { 4, 6, 4, 1 }));
    EXPECT_EQ(t.m_complex.m_counters.m_tetrahedra, 1U);
    EXPECT_EQ(t.m_complex.m_dMinEdgeLength, 1);
    EXPECT_TRUE(t.m_cell->m_vecTriangles.empty());
}

TEST(AddTetrahedralCell, ElementsAreCreatedInTheirOrder)
{
    const Tetrahedron t;
    EXPECT_EQ(listed(t.m_complex.m_lstVerts), (Verts { t.d, t.c, t.b, t.a }));
    EXPECT_EQ(listed(t.m_complex.m_lstEdges), (Edges { t.db, t.cd, t.bc, t.ad, t.ac, t.ab }));
    EXPECT_EQ(listed(t.m_complex.m_lstFaces), (Faces { t.bcd, t.adb, t.acd, t.abc }));
    EXPECT_EQ(listed(t.m_cell->m_vecFaces), (Faces { t.abc, t.acd, t.adb, t.bcd }));
}

TEST(AddTetrahedralCell, EdgesRunAsTheyAreNamed)
{
    const Tetrahedron t;
    EXPECT_EQ(t.ad->m_itVert0, t.a);
    EXPECT_EQ(t.ad->m_itVert1, t.d);
    EXPECT_EQ(t.db->m_itVert0, t.d);
    EXPECT_EQ(t.db->m_itVert1, t.b);
}

TEST(AddTetrahedralCell, FacesHaveTheirRings)
{
    const Tetrahedron t;
    EXPECT_EQ(listed(t.abc->m_vecEdges), (Edges { t.ab, t.bc, t.ac }));
    EXPECT_EQ(listed(t.acd->m_vecEdges), (Edges { t.ac, t.cd, t.ad }));
    EXPECT_EQ(listed(t.adb->m_vecEdges), (Edges { t.ad, t.db, t.ab }));
    EXPECT_EQ(listed(t.bcd->m_vecEdges), (Edges { t.bc, t.cd, t.db }));
}

TEST(AddTetrahedralCell, ElementsKnowWhatUsesThem)
{
    const Tetrahedron t;
    EXPECT_EQ(listed(t.a->m_vecEdges), (Edges { t.ab, t.ac, t.ad }));
    EXPECT_EQ(listed(t.b->m_vecEdges), (Edges { t.ab, t.bc, t.db }));
    EXPECT_EQ(listed(t.c->m_vecEdges), (Edges { t.ac, t.bc, t.cd }));
    EXPECT_EQ(listed(t.d->m_vecEdges), (Edges { t.ad, t.cd, t.db }));
    EXPECT_EQ(listed(t.ab->m_vecFaces), (Faces { t.abc, t.adb }));
    EXPECT_EQ(listed(t.cd->m_vecFaces), (Faces { t.acd, t.bcd }));
    EXPECT_EQ(listed(t.bcd->m_vecCells), Cells { t.m_cell });
}

TEST(AddTetrahedralCell, NewElementsAreUntouched)
{
    const Tetrahedron t;
    for (const VertIt vert : { t.a, t.b, t.c, t.d }) {
        EXPECT_TRUE(vert->m_bUnreached);
        EXPECT_FALSE(vert->m_bOnSurface);
        EXPECT_FALSE(vert->m_bSplit);
    }
    for (const EdgeIt edge : { t.ab, t.ac, t.ad, t.bc, t.cd, t.db })
        EXPECT_EQ(edge->m_vIntersection[0], Tavro::kNone<double>);
    EXPECT_FALSE(t.abc->m_bNew);
}

TEST(AddTetrahedralCell, TwoThatShareATriangleShareItsFaceEdgesAndVertices)
{
    Tetrahedron t;
    const CellIt other = t.m_complex.AddTetrahedralCell(
        { 1, 1, 1 }, Tetrahedron::kD, Tetrahedron::kC, Tetrahedron::kB, {});
    EXPECT_EQ(counts(t.m_complex), (Counts { 5, 9, 7, 2 }));
    EXPECT_EQ(listed(t.bcd->m_vecCells), (Cells { t.m_cell, other }));
    EXPECT_EQ(other->m_vecFaces[3], t.bcd);
    EXPECT_EQ(t.bc->m_vecFaces.size(), 3U);
    EXPECT_EQ(t.b->m_vecEdges.size(), 4U);
}

TEST(AddTetrahedralCell, AVertexNextToAnotherIsNotThatVertex)
{
    Tetrahedron t;
    t.m_complex.AddTetrahedralCell(
        { 1, 1, 1 }, Tetrahedron::kD, Tetrahedron::kC, { std::nextafter(1.0, 2.0), 0, 0 }, {});
    // They share the edge cd, but no face.
    EXPECT_EQ(counts(t.m_complex), (Counts { 6, 11, 8, 2 }));
}

TEST(AddTetrahedralCell, TheSameAgainAppendsItsFacetsToTheCellThatIsThere)
{
    Facet p {}, q {}, r {};
    Complex complex;
    const Position a { 0, 0, 0 }, b { 1, 0, 0 }, c { 0, 1, 0 }, d { 0, 0, 1 };
    const CellIt cell = complex.AddTetrahedralCell(a, b, c, d, std::list { &q, &p });
    EXPECT_EQ(facets_of(cell), (Facets { &q, &p }));
    EXPECT_EQ(complex.AddTetrahedralCell(a, b, c, d, { &r, &p }), cell);
    EXPECT_EQ(complex.AddTetrahedralCell(d, b, a, c, { &q }), cell) << "in any order of corners";
    EXPECT_EQ(facets_of(cell), (Facets { &q, &p, &r, &p, &q }));
    EXPECT_EQ(counts(complex), (Counts { 4, 6, 4, 1 }));
    EXPECT_EQ(complex.m_counters.m_tetrahedra, 3U);
}

TEST(AddTetrahedralCell, AHoleAmongFacesThatExistIsFilledByANewCell)
{
    const Position a { 0, 0, 0 }, b { 1, 0, 0 }, c { 0, 1, 0 }, d { 0, 0, 1 };
    Complex complex;
    complex.AddTetrahedralCell(a, b, c, { 0, 0, -1 }, {});
    complex.AddTetrahedralCell(a, c, d, { -1, 0, 0 }, {});
    complex.AddTetrahedralCell(a, d, b, { 0, -1, 0 }, {});
    complex.AddTetrahedralCell(b, c, d, { 1, 1, 1 }, {});
    // Six edges and four faces of the hole; each neighbour adds a vertex, three edges and faces.
    EXPECT_EQ(counts(complex), (Counts { 8, 18, 16, 4 }));
    const CellIt cell = complex.AddTetrahedralCell(a, b, c, d, {});
    EXPECT_EQ(counts(complex), (Counts { 8, 18, 16, 5 }));
    for (const FaceIt face : cell->m_vecFaces)
        EXPECT_EQ(face->m_vecCells.size(), 2U);
}

TEST(AddHexahedralCell, MakesSixFourSidedFaces)
{
    Complex complex;
    const Box box;
    const auto& c = box.m_corners;
    const CellIt cell = complex.AddHexahedralCell(c[0], c[1], c[2], c[3], c[4], c[5], c[6], c[7]);
    EXPECT_EQ(counts(complex), (Counts { 8, 12, 6, 1 }));
    EXPECT_TRUE(cell->m_vecTriangles.empty());
    EXPECT_EQ(complex.m_counters.m_hexahedra, 1U);
    std::set<std::set<VertIt>> sides;
    for (const FaceIt face : cell->m_vecFaces) {
        const Verts ring = corners(face);
        EXPECT_EQ(face->m_vecEdges.size(), 4U);
        sides.insert({ ring.begin(), ring.end() });
    }
    const auto side
        = [&](const std::vector<std::size_t>& numbers) { return box.verts(complex, numbers); };
    EXPECT_EQ(sides,
        (std::set { side({ 0, 1, 2, 3 }), side({ 4, 5, 6, 7 }), side({ 0, 1, 5, 4 }),
            side({ 1, 2, 6, 5 }), side({ 2, 3, 7, 6 }), side({ 3, 0, 4, 7 }) }));
}

TEST(AddHexahedralCell, EveryCornerHasThreeEdgesAndEveryEdgeTwoFaces)
{
    Complex complex;
    Box().add_to(complex, {});
    for (const VertIt vert : listed(complex.m_lstVerts))
        EXPECT_EQ(vert->m_vecEdges.size(), 3U);
    for (const EdgeIt edge : listed(complex.m_lstEdges))
        EXPECT_EQ(edge->m_vecFaces.size(), 2U);
}

TEST(AddHexahedralCell, TwoThatShareASideShareItsFace)
{
    Complex complex;
    Box().add_to(complex, {});
    Box(0, 1, 0).add_to(complex, {});
    EXPECT_EQ(counts(complex), (Counts { 12, 20, 11, 2 }));
}

TEST(AddHexahedralCell, TheSameAgainIsTheCellThatIsThere)
{
    Complex complex;
    Box().add_to(complex, {});
    Box().add_to(complex, {});
    EXPECT_EQ(counts(complex), (Counts { 8, 12, 6, 1 }));
    EXPECT_EQ(complex.m_counters.m_hexahedra, 2U);
}

TEST(AddCellOfABox, WithoutFacetsLeavesOneSixFacedCell)
{
    Complex complex;
    Box().add_to(complex, std::list<Facet*> {});
    ASSERT_EQ(complex.m_lstCells.size(), 1U);
    EXPECT_EQ(complex.m_lstCells.front().m_vecFaces.size(), 6U);
    EXPECT_EQ(complex.m_counters.m_tetrahedra, 0U);
}

TEST(AddCellOfABox, WithFacetsMakesSixTetrahedraInOrder)
{
    Facet facet {};
    Complex complex;
    const Box box;
    box.add_to(complex, { &facet });
    // 12 edges, 6 diagonals of sides and the one inside; 12 triangles on the sides and 6 inside.
    EXPECT_EQ(counts(complex), (Counts { 8, 19, 18, 6 }));
    EXPECT_EQ(complex.m_counters.m_tetrahedra, 6U);
    const Cells youngest = listed(complex.m_lstCells);
    EXPECT_EQ(corners_of(youngest[5]), box.verts(complex, { 0, 4, 5, 6 }));
    EXPECT_EQ(corners_of(youngest[4]), box.verts(complex, { 0, 1, 6, 5 }));
    EXPECT_EQ(corners_of(youngest[3]), box.verts(complex, { 0, 1, 2, 6 }));
    EXPECT_EQ(corners_of(youngest[2]), box.verts(complex, { 0, 2, 3, 6 }));
    EXPECT_EQ(corners_of(youngest[1]), box.verts(complex, { 0, 3, 7, 6 }));
    EXPECT_EQ(corners_of(youngest[0]), box.verts(complex, { 0, 4, 6, 7 }));
}

TEST(AddCellOfABox, TheTetrahedraAreThoseAddedOneByOne)
{
    Facet facet {};
    const Box box;
    const auto& c = box.m_corners;
    Complex whole;
    box.add_to(whole, { &facet });
    Complex single;
    for (const auto& n : std::vector<std::array<std::size_t, 4>> { { 0, 4, 5, 6 }, { 0, 1, 6, 5 },
             { 0, 1, 2, 6 }, { 0, 2, 3, 6 }, { 0, 3, 7, 6 }, { 0, 4, 6, 7 } })
        single.AddTetrahedralCell(c[n[0]], c[n[1]], c[n[2]], c[n[3]], { &facet });

    const auto positions = [](const Complex& complex) {
        std::vector<std::array<double, 3>> all;
        for (const VertIt vert : listed(complex.m_lstVerts))
            all.push_back({ vert->m_vPosition[0], vert->m_vPosition[1], vert->m_vPosition[2] });
        return all;
    };
    EXPECT_EQ(positions(whole), positions(single));
    // Elements by age, each with the ages of what it is made of.
    const auto structure = [](const Complex& complex) {
        std::vector<std::vector<std::size_t>> all;
        const auto note = [&all](const auto& list, const auto& parts) {
            std::vector<std::size_t> places;
            for (const auto part : parts)
                places.push_back(static_cast<std::size_t>(
                    std::distance(list.begin(), std::find(list.begin(), list.end(), part))));
            all.push_back(places);
        };
        const Verts verts = listed(complex.m_lstVerts);
        const Edges edges = listed(complex.m_lstEdges);
        const Faces faces = listed(complex.m_lstFaces);
        for (const VertIt vert : verts)
            note(edges, vert->m_vecEdges);
        for (const EdgeIt edge : edges) {
            note(verts, Verts { edge->m_itVert0, edge->m_itVert1 });
            note(faces, edge->m_vecFaces);
        }
        for (const FaceIt face : faces)
            note(edges, face->m_vecEdges);
        for (const CellIt cell : listed(complex.m_lstCells))
            note(faces, cell->m_vecFaces);
        return all;
    };
    EXPECT_EQ(structure(whole), structure(single));
}

TEST(AddCellOfABox, AllTetrahedraShareTheDiagonalFromTheFirstCornerToTheSeventh)
{
    Facet facet {};
    Complex complex;
    const Box box;
    box.add_to(complex, { &facet });
    const EdgeIt diagonal
        = complex.FindEdge(complex.FindVert(box.m_corners[0]), complex.FindVert(box.m_corners[6]));
    ASSERT_NE(diagonal, complex.m_lstEdges.end());
    EXPECT_EQ(diagonal->m_vecFaces.size(), 6U);
    for (const FaceIt face : diagonal->m_vecFaces)
        EXPECT_EQ(face->m_vecCells.size(), 2U);
}

TEST(AddCellOfABox, EachTetrahedronHasTheFacetsAndTheyShareTheirMemory)
{
    Facet p {}, q {};
    Complex complex;
    Box().add_to(complex, std::list { &p, &q });
    const Cells cells = listed(complex.m_lstCells);
    for (const CellIt cell : cells) {
        EXPECT_EQ(facets_of(cell), (Facets { &p, &q }));
        EXPECT_TRUE(cell->m_vecTriangles.SharesMemoryWith(cells[0]->m_vecTriangles));
    }
}

TEST(AddCellOfABox, TheSameAgainAppendsItsFacetsToEachTetrahedron)
{
    Facet p {}, q {};
    Complex complex;
    Box().add_to(complex, { &p });
    Box().add_to(complex, { &q });
    EXPECT_EQ(counts(complex), (Counts { 8, 19, 18, 6 }));
    for (const CellIt cell : listed(complex.m_lstCells))
        EXPECT_EQ(facets_of(cell), (Facets { &p, &q }));
}

TEST(AddCellOfABox, NeighboursOnEverySideCutTheirCommonSideAlike)
{
    for (const Box& next : { Box(1, 0, 0), Box(0, 1, 0), Box(0, 0, 1) }) {
        Facet facet {};
        Complex complex;
        Box().add_to(complex, { &facet });
        next.add_to(complex, { &facet });
        // They share 4 vertices, 4 edges and a diagonal, and 2 triangles.
        EXPECT_EQ(counts(complex), (Counts { 12, 33, 34, 12 }));
    }
}

TEST(AddCellOfABox, AnEmptyNeighbourKeepsItsFourSidedFaceBesideTheTriangles)
{
    Facet facet {};
    Complex complex;
    Box().add_to(complex, { &facet });
    Box(1, 0, 0).add_to(complex, {});
    // 19 + 12 - 4 edges, 18 + 6 faces.
    EXPECT_EQ(counts(complex), (Counts { 12, 27, 24, 7 }));
}

TEST(AddCellOfABox, TheFirstEntryIsTheLeastCornerOfAllBoxes)
{
    Facet facet {};
    Complex complex;
    for (const double x : { 1.0, -3.0, 0.0 })
        Box(x, x, x).add_to(complex, { &facet });
    EXPECT_EQ(complex.m_mapVerts.First(), complex.FindVert({ -3, -3, -3 }));
}

TEST(AddCellOfABox, ThousandsOfCellsTakeFewAllocations)
{
    const auto complex = std::make_unique<Complex>();
    Facet facet {};
    const FacetArray facets { &facet };
    const std::size_t before = Testing::allocations();
    for (int k = 0; k < 10; ++k) {
        for (int j = 0; j < 10; ++j) {
            for (int i = 0; i < 10; ++i)
                Box(i, j, k).add_to(*complex, facets);
        }
    }
    // A grid of n boxes a side has (n+1)^3 vertices, 3n(n+1)^2 edges along the axes, 3n^2(n+1)
    // diagonals of sides and n^3 inside; two triangles a side and six inside each box.
    EXPECT_EQ(counts(*complex), (Counts { 1331, 3630 + 3300 + 1000, 6600 + 6000, 6000 }));
    EXPECT_LT(Testing::allocations() - before, 150U) << "one for 16 entries of the map, and few";
}

} // namespace
