// SPDX-License-Identifier: Apache-2.0
#include "tests/geometry/basicmorpher/Complexes.h"

#include <gtest/gtest.h>

namespace {

using namespace Testing;
using BasicMorpher::Edge;
using BasicMorpher::Face;
using BasicMorpher::Vert;
using Edges = std::vector<EdgeIt>;
using Faces = std::vector<FaceIt>;
using Cells = std::vector<CellIt>;

TEST(RemoveVert, AVertexWithoutEdgesIsUnlinked)
{
    Complex complex;
    const VertIt p = complex.AddVert(Vert({ 1, 2, 3 }));
    const VertIt q = complex.AddVert(Vert({ 4, 5, 6 }));
    complex.RemoveVert(p);
    EXPECT_EQ(listed(complex.m_lstVerts), std::vector { q });
}

TEST(RemoveVert, ItsEntryStaysUntilAVertexIsAddedThere)
{
    Complex complex;
    complex.RemoveVert(complex.AddVert(Vert({ 1, 2, 3 })));
    EXPECT_EQ(complex.m_mapVerts.size(), 1U);
    EXPECT_EQ(complex.FindVert({ 1, 2, 3 }), complex.m_lstVerts.end());
    const VertIt second = complex.AddVert(Vert({ 1, 2, 3 }));
    EXPECT_EQ(complex.FindVert({ 1, 2, 3 }), second);
    EXPECT_EQ(complex.m_mapVerts.size(), 1U);
}

TEST(RemoveVert, AVertexStillInAnEdgeIsRefused)
{
    Triangle t;
    EXPECT_EQ(failure([&] { t.m_complex.RemoveVert(t.a); }),
        "RemoveVert:  Attempted to remove vert that is still in an edge.");
    EXPECT_EQ(counts(t.m_complex), (Counts { 3, 3, 1, 0 }));
    EXPECT_EQ(listed(t.a->m_vecEdges), (Edges { t.ab, t.ca }));
}

TEST(RemoveEdge, VerticesLeftWithoutEdgesGoWithIt)
{
    Complex complex;
    const VertIt a = complex.AddVert(Vert({ 0, 0, 0 }));
    const VertIt b = complex.AddVert(Vert({ 1, 0, 0 }));
    const VertIt c = complex.AddVert(Vert({ 2, 0, 0 }));
    const EdgeIt ab = complex.AddEdge({ a, b });
    const EdgeIt bc = complex.AddEdge({ b, c });
    complex.RemoveEdge(ab);
    EXPECT_EQ(listed(complex.m_lstVerts), (std::vector { c, b }));
    EXPECT_EQ(listed(complex.m_lstEdges), Edges { bc });
    EXPECT_EQ(listed(b->m_vecEdges), Edges { bc });
    complex.RemoveEdge(bc);
    EXPECT_EQ(counts(complex), (Counts { 0, 0, 0, 0 }));
}

TEST(RemoveEdge, AnEdgeFromAVertexToItselfTakesTheVertexOnce)
{
    Complex complex;
    const VertIt a = complex.AddVert(Vert({ 0, 0, 0 }));
    complex.RemoveEdge(complex.AddEdge({ a, a }));
    EXPECT_EQ(counts(complex), (Counts { 0, 0, 0, 0 }));
}

TEST(RemoveEdge, AnEdgeStillInAFaceIsRefusedAfterItsVerticesHaveForgottenIt)
{
    Triangle t;
    EXPECT_EQ(failure([&] { t.m_complex.RemoveEdge(t.ab); }),
        "RemoveEdge:  Attempted to remove edge that is still in a face.");
    EXPECT_EQ(counts(t.m_complex), (Counts { 3, 3, 1, 0 }));
    EXPECT_EQ(listed(t.a->m_vecEdges), Edges { t.ca });
    EXPECT_EQ(listed(t.b->m_vecEdges), Edges { t.bc });
    EXPECT_EQ(listed(t.ab->m_vecFaces), Faces { t.m_face });
}

TEST(RemoveEdge, TheRefusalComesAfterLoneVerticesHaveGone)
{
    Complex complex;
    const VertIt a = complex.AddVert(Vert({ 0, 0, 0 }));
    const VertIt b = complex.AddVert(Vert({ 1, 0, 0 }));
    const EdgeIt ab = complex.AddEdge({ a, b });
    complex.AddFace(Face(Edges { ab }));
    EXPECT_EQ(failure([&] { complex.RemoveEdge(ab); }),
        "RemoveEdge:  Attempted to remove edge that is still in a face.");
    EXPECT_EQ(counts(complex), (Counts { 0, 1, 1, 0 }));
}

TEST(RemoveFace, EdgesLeftWithoutFacesGoWithIt)
{
    Triangle t;
    const VertIt d = t.m_complex.AddVert(Vert({ 4, 3, 0 }));
    const EdgeIt bd = t.m_complex.AddEdge({ t.b, d });
    const EdgeIt dc = t.m_complex.AddEdge({ d, t.c });
    const FaceIt other = t.m_complex.AddFace(Face(Edges { bd, dc, t.bc }));
    t.m_complex.RemoveFace(t.m_face);
    // The other triangle keeps bc; ab and ca go, and a with them.
    EXPECT_EQ(counts(t.m_complex), (Counts { 3, 3, 1, 0 }));
    EXPECT_EQ(listed(t.m_complex.m_lstEdges), (Edges { dc, bd, t.bc }));
    EXPECT_EQ(listed(t.m_complex.m_lstVerts), (std::vector { d, t.c, t.b }));
    EXPECT_EQ(listed(t.bc->m_vecFaces), Faces { other });
    EXPECT_EQ(listed(t.b->m_vecEdges), (Edges { t.bc, bd }));
}

TEST(RemoveFace, AFaceThatNamesAnEdgeTwiceTakesItOnce)
{
    Triangle t;
    t.m_complex.AddFace(Face(Edges { t.ab, t.bc, t.ab }));
    t.m_complex.RemoveFace(t.m_complex.m_lstFaces.begin());
    EXPECT_EQ(counts(t.m_complex), (Counts { 3, 3, 1, 0 }));
    EXPECT_EQ(listed(t.ab->m_vecFaces), Faces { t.m_face });
    t.m_complex.RemoveFace(t.m_face);
    EXPECT_EQ(counts(t.m_complex), (Counts { 0, 0, 0, 0 }));
}

TEST(RemoveFace, AFaceStillInACellIsRefusedAfterItsEdgesHaveForgottenIt)
{
    Tetrahedron t;
    EXPECT_EQ(failure([&] { t.m_complex.RemoveFace(t.abc); }),
        "RemoveFace:  Attempted to remove face that is still in a cell.");
    EXPECT_EQ(counts(t.m_complex), (Counts { 4, 6, 4, 1 }));
    EXPECT_EQ(listed(t.ab->m_vecFaces), Faces { t.adb });
    EXPECT_EQ(listed(t.bc->m_vecFaces), Faces { t.bcd });
    EXPECT_EQ(listed(t.ac->m_vecFaces), Faces { t.acd });
    EXPECT_EQ(listed(t.abc->m_vecCells), Cells { t.m_cell });
}

TEST(RemoveFace, TheRefusalComesAfterLoneEdgesHaveGone)
{
    Triangle t;
    t.m_complex.AddCell(BasicMorpher::Cell(Faces { t.m_face }));
    EXPECT_EQ(failure([&] { t.m_complex.RemoveFace(t.m_face); }),
        "RemoveFace:  Attempted to remove face that is still in a cell.");
    EXPECT_EQ(counts(t.m_complex), (Counts { 0, 0, 1, 1 }));
}

TEST(RemoveCell, AfterARefusedFaceTheCellCanStillGo)
{
    Tetrahedron t;
    EXPECT_NE(failure([&] { t.m_complex.RemoveFace(t.abc); }), "");
    t.m_complex.RemoveCell(t.m_cell);
    EXPECT_EQ(counts(t.m_complex), (Counts { 0, 0, 0, 0 }));

    Triangle lone; // here the face names edges that are gone already
    const CellIt cell = lone.m_complex.AddCell(BasicMorpher::Cell(Faces { lone.m_face }));
    EXPECT_NE(failure([&] { lone.m_complex.RemoveFace(lone.m_face); }), "");
    lone.m_complex.RemoveCell(cell);
    EXPECT_EQ(counts(lone.m_complex), (Counts { 0, 0, 0, 0 }));
}

TEST(RemoveCell, TheOnlyCellTakesAllFacesEdgesAndVerticesWithIt)
{
    Tetrahedron t;
    EXPECT_EQ(counts(t.m_complex), (Counts { 4, 6, 4, 1 }));
    t.m_complex.RemoveCell(t.m_cell);
    EXPECT_EQ(counts(t.m_complex), (Counts { 0, 0, 0, 0 }));
    EXPECT_EQ(t.m_complex.m_mapVerts.size(), 4U) << "stale entries stay";
}

TEST(RemoveCell, AHexahedronGoesWhole)
{
    Complex complex;
    const CellIt cell = complex.AddHexahedralCell({ 0, 0, 0 }, { 1, 0, 0 }, { 1, 1, 0 },
        { 0, 1, 0 }, { 0, 0, 1 }, { 1, 0, 1 }, { 1, 1, 1 }, { 0, 1, 1 });
    complex.RemoveCell(cell);
    EXPECT_EQ(counts(complex), (Counts { 0, 0, 0, 0 }));
}

TEST(RemoveCell, WhatAnotherCellUsesStays)
{
    Tetrahedron t;
    const CellIt other = t.m_complex.AddTetrahedralCell(
        Tetrahedron::kB, Tetrahedron::kC, Tetrahedron::kD, { 1, 1, 1 }, {});
    EXPECT_EQ(counts(t.m_complex), (Counts { 5, 9, 7, 2 }));
    t.m_complex.RemoveCell(t.m_cell);
    EXPECT_EQ(counts(t.m_complex), (Counts { 4, 6, 4, 1 }));
    EXPECT_EQ(listed(t.bcd->m_vecCells), Cells { other });
    EXPECT_EQ(t.m_complex.FindEdge(t.b, t.c), t.bc);
    // Of b's edges ab is gone; the others keep their order, with be last.
    ASSERT_EQ(t.b->m_vecEdges.size(), 3U);
    EXPECT_EQ(t.b->m_vecEdges[0], t.bc);
    EXPECT_EQ(t.b->m_vecEdges[1], t.db);
}

TEST(RemoveCell, ACellThatNamesAFaceTwiceGoesWhole)
{
    // With b = c the faces acd and adb are the same.
    Complex complex;
    const CellIt cell
        = complex.AddTetrahedralCell({ 0, 0, 0 }, { 1, 0, 0 }, { 1, 0, 0 }, { 0, 0, 1 }, {});
    EXPECT_EQ(cell->m_vecFaces[1], cell->m_vecFaces[2]);
    complex.RemoveCell(cell);
    EXPECT_EQ(counts(complex), (Counts { 0, 0, 0, 0 }));
}

TEST(RemoveCell, ACellOfOnePointGoesWhole)
{
    Complex complex;
    const Position p { 1, 2, 3 };
    complex.RemoveCell(complex.AddTetrahedralCell(p, p, p, p, {}));
    EXPECT_EQ(counts(complex), (Counts { 0, 0, 0, 0 }));
    complex.RemoveCell(complex.AddHexahedralCell(p, p, p, p, p, p, p, p));
    EXPECT_EQ(counts(complex), (Counts { 0, 0, 0, 0 }));
}

TEST(RemoveCell, TheSameCellCanBeAddedAgain)
{
    Tetrahedron t;
    t.m_complex.RemoveCell(t.m_cell);
    const CellIt again = t.m_complex.AddTetrahedralCell(
        Tetrahedron::kA, Tetrahedron::kB, Tetrahedron::kC, Tetrahedron::kD, {});
    EXPECT_NE(again, t.m_cell);
    EXPECT_EQ(counts(t.m_complex), (Counts { 4, 6, 4, 1 }));
    EXPECT_NE(t.m_complex.FindVert(Tetrahedron::kA), t.a);
}

TEST(RemoveCell, InAGridOnlyTheOthersRemain)
{
    Complex complex;
    BasicMorpher::Facet facet {};
    for (int i = 0; i < 2; ++i) {
        const double x = i;
        complex.AddCell({ x, 0, 0 }, { x + 1, 0, 0 }, { x + 1, 1, 0 }, { x, 1, 0 }, { x, 0, 1 },
            { x + 1, 0, 1 }, { x + 1, 1, 1 }, { x, 1, 1 }, { &facet });
    }
    Cells cells = listed(complex.m_lstCells);
    ASSERT_EQ(cells.size(), 12U);
    for (std::size_t i = 0; i < 6; ++i) // those of the second box
        complex.RemoveCell(cells[i]);
    EXPECT_EQ(counts(complex), (Counts { 8, 19, 18, 6 })) << "one box of six tetrahedra";
    for (std::size_t i = 6; i < 12; ++i)
        complex.RemoveCell(cells[i]);
    EXPECT_EQ(counts(complex), (Counts { 0, 0, 0, 0 }));
}

// Without cells, faces go one by one as they do with their cell. A first face leaves all its edges
// to others; ac goes with its last face acd; with adb go ab and ad, and then a; bcd takes the rest.
TEST(RemoveCell, FacesGoInTheirOrderEachWithItsLastEdgesAndTheseWithTheirLastVertices)
{
    Tetrahedron t;
    const Faces faces = listed(t.m_cell->m_vecFaces);
    ASSERT_EQ(faces, (Faces { t.abc, t.acd, t.adb, t.bcd }));
    for (const FaceIt face : faces)
        face->m_vecCells.clear();
    t.m_complex.RemoveFace(faces[0]);
    EXPECT_EQ(counts(t.m_complex), (Counts { 4, 6, 3, 1 }));
    t.m_complex.RemoveFace(faces[1]);
    EXPECT_EQ(listed(t.m_complex.m_lstEdges), (Edges { t.db, t.cd, t.bc, t.ad, t.ab }));
    EXPECT_EQ(t.m_complex.m_lstVerts.size(), 4U);
    t.m_complex.RemoveFace(faces[2]);
    EXPECT_EQ(listed(t.m_complex.m_lstEdges), (Edges { t.db, t.cd, t.bc }));
    EXPECT_EQ(listed(t.m_complex.m_lstVerts), (std::vector { t.d, t.c, t.b }));
    t.m_complex.RemoveFace(faces[3]);
    EXPECT_EQ(counts(t.m_complex), (Counts { 0, 0, 0, 1 }));
}

} // namespace
