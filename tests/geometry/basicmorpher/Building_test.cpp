// SPDX-License-Identifier: Apache-2.0
#include "tests/geometry/basicmorpher/Complexes.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <stdexcept>
#include <type_traits>

namespace {

using namespace Testing;
using BasicMorpher::Cell;
using BasicMorpher::Edge;
using BasicMorpher::Face;
using BasicMorpher::Vert;
using Edges = std::vector<EdgeIt>;
using Faces = std::vector<FaceIt>;
using Cells = std::vector<CellIt>;
using Verts = std::vector<VertIt>;

constexpr double kLargest = std::numeric_limits<double>::max();

TEST(Elements, ANewVertexIsUnreachedOffTheSurfaceAndNotSplit)
{
    const Vert vert({ 1, 2, 3 });
    EXPECT_EQ(vert.m_vPosition[0], 1);
    EXPECT_EQ(vert.m_vPosition[1], 2);
    EXPECT_EQ(vert.m_vPosition[2], 3);
    EXPECT_TRUE(vert.m_bUnreached);
    EXPECT_FALSE(vert.m_bOnSurface);
    EXPECT_FALSE(vert.m_bSplit);
    EXPECT_TRUE(vert.m_vecEdges.empty());
}

TEST(Elements, ANewEdgeHasNoIntersection)
{
    const Edge edge;
    EXPECT_EQ(edge.m_vIntersection[0], kLargest);
    EXPECT_EQ(edge.m_vIntersection[1], kLargest);
    EXPECT_EQ(edge.m_vIntersection[2], -kLargest);
    EXPECT_EQ(edge.m_itVert0, VertIt());
    EXPECT_EQ(edge.m_itVert1, VertIt());
    EXPECT_TRUE(edge.m_vecFaces.empty());
}

TEST(Elements, ANewFaceHasItsRingAndIsNotNew)
{
    const Triangle t;
    const Face face(Edges { t.ab, t.bc, t.ca });
    EXPECT_EQ(listed(face.m_vecEdges), (Edges { t.ab, t.bc, t.ca }));
    EXPECT_FALSE(face.m_bNew);
    EXPECT_TRUE(face.m_vecCells.empty());
}

TEST(Elements, ANewCellHasNoFacetsAndItsFlagIsClear)
{
    const Tetrahedron t;
    const Cell cell(Faces { t.abc, t.acd });
    EXPECT_EQ(listed(cell.m_vecFaces), (Faces { t.abc, t.acd }));
    EXPECT_FALSE(cell.m_bFlag);
    EXPECT_TRUE(cell.m_vecTriangles.empty());
}

TEST(GetVert, TheCornerOfAnEdgeIsTheEndThatTheNextEdgeLacks)
{
    const Triangle t; // ab, bc, ca run around
    EXPECT_EQ(t.m_face->GetVert(0), t.a);
    EXPECT_EQ(t.m_face->GetVert(1), t.b);
    EXPECT_EQ(t.m_face->GetVert(2), t.c);
}

TEST(GetVert, TheDirectionOfTheEdgesDoesNotMatter)
{
    const Tetrahedron t; // the ring ab, bc, ac: the last edge runs against it
    EXPECT_EQ(corners(t.abc), (Verts { t.a, t.b, t.c }));
    EXPECT_EQ(corners(t.acd), (Verts { t.a, t.c, t.d }));
    EXPECT_EQ(corners(t.adb), (Verts { t.a, t.d, t.b }));
    EXPECT_EQ(corners(t.bcd), (Verts { t.b, t.c, t.d }));
}

TEST(GetVert, AnEdgeWhoseSecondEndIsNotOnTheNextGivesItsSecondEnd)
{
    // The edges ab and cd share nothing, so neither end of ab is on the next one.
    const Tetrahedron t;
    const Face face(Edges { t.ab, t.cd });
    EXPECT_EQ(face.GetVert(0), t.b);
}

TEST(GetVert, ABadIndexIsAnOutOfRangeAccess)
{
    const Triangle t;
    EXPECT_THROW((void)t.m_face->GetVert(3), std::out_of_range);
    EXPECT_THROW((void)t.m_face->GetVert(4294967295U), std::out_of_range);
    EXPECT_THROW((void)Face().GetVert(0), std::out_of_range);
}

TEST(BasicMorpherException, IsAStandardExceptionWithItsMessage)
{
    static_assert(std::is_base_of_v<std::exception, BasicMorpher::BasicMorpherException>);
    char text[] = "A text.";
    const BasicMorpher::BasicMorpherException exception(text);
    text[0] = 'B';
    EXPECT_STREQ(exception.what(), "A text.");
}

TEST(Complex, IsEmptyAtFirstAndHasNoLeastEdge)
{
    const Complex complex;
    EXPECT_EQ(counts(complex), (Counts { 0, 0, 0, 0 }));
    EXPECT_EQ(complex.m_dMinEdgeLength, kLargest);
    EXPECT_TRUE(complex.m_mapVerts.empty());
    EXPECT_EQ(complex.FindVert({ 0, 0, 0 }), complex.m_lstVerts.end());
}

TEST(AddVert, PutsACopyInFrontAndEntersItsPosition)
{
    Complex complex;
    Vert vert({ 1, 2, 3 });
    vert.m_bOnSurface = true;
    const VertIt first = complex.AddVert(vert);
    const VertIt second = complex.AddVert(Vert({ 4, 5, 6 }));
    EXPECT_EQ(listed(complex.m_lstVerts), (Verts { second, first }));
    EXPECT_TRUE(first->m_bOnSurface);
    vert.m_bOnSurface = false;
    EXPECT_TRUE(first->m_bOnSurface);
    EXPECT_EQ(complex.m_mapVerts.size(), 2U);
    EXPECT_EQ(complex.FindVert({ 1, 2, 3 }), first);
    EXPECT_EQ(complex.FindVert({ 4, 5, 6 }), second);
}

TEST(AddVert, WhereAVertexLivesTheNewOneIsFoundAndTheOtherStays)
{
    Triangle t;
    const VertIt again = t.m_complex.AddVert(Vert({ 4, 0, 0 }));
    EXPECT_NE(again, t.b);
    EXPECT_EQ(t.m_complex.FindVert({ 4, 0, 0 }), again);
    EXPECT_EQ(t.m_complex.m_lstVerts.size(), 4U);
    EXPECT_EQ(t.m_complex.m_mapVerts.size(), 3U);
    EXPECT_EQ(listed(t.b->m_vecEdges), (Edges { t.ab, t.bc }));
    EXPECT_TRUE(again->m_vecEdges.empty());
}

TEST(FindVert, ThereIsNoTolerance)
{
    Complex complex;
    complex.AddVert(Vert({ 1, 2, 3 }));
    EXPECT_EQ(complex.FindVert({ 1, 2, std::nextafter(3.0, 4.0) }), complex.m_lstVerts.end());
    EXPECT_EQ(complex.FindVert({ 2, 1, 3 }), complex.m_lstVerts.end());
}

TEST(FindVert, GoesByTheEntryAndNotByWhereTheVertexIsNow)
{
    Complex complex;
    const VertIt vert = complex.AddVert(Vert({ 1, 2, 3 }));
    vert->m_vPosition = { 4, 5, 6 };
    EXPECT_EQ(complex.FindVert({ 1, 2, 3 }), vert);
    EXPECT_EQ(complex.FindVert({ 4, 5, 6 }), complex.m_lstVerts.end());
}

TEST(AddEdge, PutsACopyInFrontAndTellsBothEnds)
{
    const Triangle t;
    EXPECT_EQ(listed(t.m_complex.m_lstEdges), (Edges { t.ca, t.bc, t.ab }));
    EXPECT_EQ(t.ab->m_itVert0, t.a);
    EXPECT_EQ(t.ab->m_itVert1, t.b);
    EXPECT_EQ(listed(t.a->m_vecEdges), (Edges { t.ab, t.ca }));
    EXPECT_EQ(listed(t.b->m_vecEdges), (Edges { t.ab, t.bc }));
    EXPECT_EQ(listed(t.c->m_vecEdges), (Edges { t.bc, t.ca }));
}

TEST(AddEdge, LowersTheLeastLengthIfItIsShorter)
{
    Complex complex;
    const VertIt a = complex.AddVert(Vert({ 0, 0, 0 }));
    const VertIt b = complex.AddVert(Vert({ 3, 0, 0 }));
    const VertIt c = complex.AddVert(Vert({ 3, 4, 0 }));
    const VertIt d = complex.AddVert(Vert({ 3, 4, -2 }));
    complex.AddEdge({ c, a });
    EXPECT_EQ(complex.m_dMinEdgeLength, 5); // 3, 4, 5
    complex.AddEdge({ a, b });
    EXPECT_EQ(complex.m_dMinEdgeLength, 3);
    complex.AddEdge({ b, c });
    EXPECT_EQ(complex.m_dMinEdgeLength, 3) << "4 is longer";
    complex.AddEdge({ c, d });
    EXPECT_EQ(complex.m_dMinEdgeLength, 2);
}

TEST(AddEdge, OneWithoutLengthMakesTheLeastLengthZero)
{
    Complex complex;
    const VertIt a = complex.AddVert(Vert({ 1, 2, 3 }));
    const VertIt b = complex.AddVert(Vert({ 1, 2, 3 }));
    complex.AddEdge({ a, b });
    EXPECT_EQ(complex.m_dMinEdgeLength, 0);
}

TEST(AddEdge, TheLeastLengthStaysWhenItsEdgeIsRemoved)
{
    Triangle t; // edges of length 4, 5 and 3
    EXPECT_EQ(t.m_complex.m_dMinEdgeLength, 3);
    t.m_complex.RemoveFace(t.m_face);
    EXPECT_EQ(t.m_complex.m_dMinEdgeLength, 3);
}

TEST(FindEdge, FindsAnEdgeFromEitherEnd)
{
    const Triangle t;
    EXPECT_EQ(t.m_complex.FindEdge(t.a, t.b), t.ab);
    EXPECT_EQ(t.m_complex.FindEdge(t.b, t.a), t.ab);
    EXPECT_EQ(t.m_complex.FindEdge(t.a, t.c), t.ca);
}

TEST(FindEdge, OfVerticesThatNoEdgeJoinsThereIsNone)
{
    Triangle t;
    const VertIt d = t.m_complex.AddVert(Vert({ 9, 9, 9 }));
    EXPECT_EQ(t.m_complex.FindEdge(t.a, d), t.m_complex.m_lstEdges.end());
    EXPECT_EQ(t.m_complex.FindEdge(d, t.a), t.m_complex.m_lstEdges.end());
    EXPECT_EQ(t.m_complex.FindEdge(t.a, t.a), t.m_complex.m_lstEdges.end());
}

TEST(FindEdge, OfNoneThereIsNone)
{
    const Triangle t;
    const VertIt none = t.m_complex.FindVert({ 7, 7, 7 });
    ASSERT_EQ(none, t.m_complex.m_lstVerts.end());
    EXPECT_EQ(t.m_complex.FindEdge(t.a, none), t.m_complex.m_lstEdges.end());
    EXPECT_EQ(t.m_complex.FindEdge(none, t.a), t.m_complex.m_lstEdges.end());
    EXPECT_EQ(t.m_complex.FindEdge(none, none), t.m_complex.m_lstEdges.end());
}

TEST(FindFace, OfNoneThereIsNone)
{
    const Triangle t;
    const EdgeIt none = t.m_complex.m_lstEdges.end();
    EXPECT_EQ(t.m_complex.FindFace(Edges { none, t.bc, t.ca }), t.m_complex.m_lstFaces.end());
    EXPECT_EQ(t.m_complex.FindFace(Edges { t.ab, t.bc, none }), t.m_complex.m_lstFaces.end());
    EXPECT_EQ(t.m_complex.FindFace(Edges { none, none, none }), t.m_complex.m_lstFaces.end());
}

TEST(FindCell, OfNoneThereIsNone)
{
    const Tetrahedron t;
    const FaceIt none = t.m_complex.m_lstFaces.end();
    EXPECT_EQ(t.m_complex.FindCell(Faces { none, t.acd, t.adb }), t.m_complex.m_lstCells.end());
    EXPECT_EQ(t.m_complex.FindCell(Faces { t.abc, t.acd, none }), t.m_complex.m_lstCells.end());
}

TEST(FindEdge, TheFirstOfTwoEdgesBetweenTheSameEndsIsFound)
{
    Triangle t;
    const EdgeIt again = t.m_complex.AddEdge({ t.b, t.a });
    EXPECT_NE(again, t.ab);
    EXPECT_EQ(t.m_complex.FindEdge(t.b, t.a), t.ab);
}

TEST(AddFace, PutsACopyInFrontAndTellsAllItsEdges)
{
    Triangle t;
    const FaceIt again = t.m_complex.AddFace(Face(Edges { t.bc, t.ca, t.ab }));
    EXPECT_EQ(listed(t.m_complex.m_lstFaces), (Faces { again, t.m_face }));
    for (const EdgeIt edge : { t.ab, t.bc, t.ca })
        EXPECT_EQ(listed(edge->m_vecFaces), (Faces { t.m_face, again }));
}

TEST(FindFace, FindsTheFirstFaceOfTheFirstEdgeThatIsOnAll)
{
    Triangle t;
    t.m_complex.AddFace(Face(Edges { t.ab, t.bc, t.ca }));
    EXPECT_EQ(t.m_complex.FindFace(Edges { t.ab, t.bc, t.ca }), t.m_face);
    EXPECT_EQ(t.m_complex.FindFace(Edges { t.ca, t.ab, t.bc }), t.m_face) << "in any order";
}

TEST(FindFace, OfTwoOnTheSameEdgesTheArrayOfTheFirstEdgeDecides)
{
    Triangle t;
    const FaceIt twin = t.m_complex.AddFace(*t.m_face);
    ASSERT_TRUE(t.bc->m_vecFaces.Delete(t.m_face));
    t.bc->m_vecFaces.push_back(t.m_face); // now the twin comes first there
    EXPECT_EQ(t.m_complex.FindFace(Edges { t.ab, t.bc, t.ca }), t.m_face);
    EXPECT_EQ(t.m_complex.FindFace(Edges { t.bc, t.ca, t.ab }), twin);
    EXPECT_EQ(t.m_complex.FindFace(Edges { t.ca, t.bc, t.ab }), t.m_face);
}

TEST(FindFace, WithTwoEdgesThereIsNoneEvenIfAFaceHoldsThem)
{
    const Triangle t;
    EXPECT_EQ(t.m_complex.FindFace(Edges { t.ab, t.bc }), t.m_complex.m_lstFaces.end());
    EXPECT_EQ(t.m_complex.FindFace(Edges { t.ab }), t.m_complex.m_lstFaces.end());
    EXPECT_EQ(t.m_complex.FindFace(Edges {}), t.m_complex.m_lstFaces.end());
}

TEST(FindFace, AFaceWithFurtherEdgesMatchesToo)
{
    Complex complex;
    complex.AddHexahedralCell({ 0, 0, 0 }, { 1, 0, 0 }, { 1, 1, 0 }, { 0, 1, 0 }, { 0, 0, 1 },
        { 1, 0, 1 }, { 1, 1, 1 }, { 0, 1, 1 });
    const FaceIt square = complex.m_lstFaces.begin();
    Edges ring = listed(square->m_vecEdges);
    ASSERT_EQ(ring.size(), 4U);
    EXPECT_EQ(complex.FindFace(ring), square);
    ring.pop_back();
    EXPECT_EQ(complex.FindFace(ring), square);
}

TEST(FindFace, EdgesThatNoFaceJoinsHaveNone)
{
    const Tetrahedron t; // ab, ac and ad meet in a vertex only
    EXPECT_EQ(t.m_complex.FindFace(Edges { t.ab, t.ac, t.ad }), t.m_complex.m_lstFaces.end());
}

TEST(AddCell, PutsACopyInFrontAndTellsAllItsFaces)
{
    Tetrahedron t;
    const CellIt again = t.m_complex.AddCell(Cell(Faces { t.abc, t.acd, t.adb, t.bcd }));
    EXPECT_EQ(listed(t.m_complex.m_lstCells), (Cells { again, t.m_cell }));
    for (const FaceIt face : { t.abc, t.acd, t.adb, t.bcd })
        EXPECT_EQ(listed(face->m_vecCells), (Cells { t.m_cell, again }));
}

TEST(FindCell, FindsTheFirstCellOfTheFirstFaceThatIsOnAll)
{
    Tetrahedron t;
    t.m_complex.AddCell(Cell(Faces { t.abc, t.acd, t.adb, t.bcd }));
    EXPECT_EQ(t.m_complex.FindCell(Faces { t.bcd, t.abc, t.adb, t.acd }), t.m_cell);
}

TEST(FindCell, AsWithFacesThreeAreNeededAndEnough)
{
    const Tetrahedron t;
    EXPECT_EQ(t.m_complex.FindCell(Faces { t.abc, t.acd, t.adb }), t.m_cell);
    EXPECT_EQ(t.m_complex.FindCell(Faces { t.abc, t.acd }), t.m_complex.m_lstCells.end());
    EXPECT_EQ(t.m_complex.FindCell(Faces {}), t.m_complex.m_lstCells.end());
}

TEST(FindCell, FacesThatNoCellJoinsHaveNone)
{
    Tetrahedron t;
    const CellIt other = t.m_complex.AddTetrahedralCell(
        Tetrahedron::kB, Tetrahedron::kC, Tetrahedron::kD, { 1, 1, 1 }, {});
    EXPECT_EQ(t.m_complex.FindCell(Faces { t.abc, t.acd, other->m_vecFaces[1] }),
        t.m_complex.m_lstCells.end());
}

} // namespace
