// SPDX-License-Identifier: Apache-2.0
#include "tests/geometry/basicmorpher/Complexes.h"

#include <gtest/gtest.h>

namespace {

using namespace Testing;
using BasicMorpher::Cell;
using BasicMorpher::Face;
using BasicMorpher::Vert;
using Edges = std::vector<EdgeIt>;
using Faces = std::vector<FaceIt>;
using Cells = std::vector<CellIt>;
using Verts = std::vector<VertIt>;

constexpr const char* kNoOverlap
    = "Attempted to replace overlapping edge with edges that do not overlap.";
constexpr const char* kNotAdjacent = "Face did not contain edge marked adjacent to it.";

/// A new vertex with edges from the first end of an edge and to its second end.
struct Halves {
    Halves(Complex& complex, EdgeIt edge, const Position& position)
        : m_middle(complex.AddVert(Vert(position)))
        , m_first(complex.AddEdge({ edge->m_itVert0, m_middle }))
        , m_second(complex.AddEdge({ m_middle, edge->m_itVert1 }))
    {
    }

    VertIt m_middle;
    EdgeIt m_first, m_second;
};

TEST(ReplaceOverlappingEdge, ATriangleBecomesAFourSidedFace)
{
    Triangle t; // the ring ab, bc, ca; bc touches the second end of ab
    const Halves halves(t.m_complex, t.ab, { 2, 0, 0 });
    t.m_complex.ReplaceOverlappingEdge(t.ab, halves.m_first, halves.m_second);
    EXPECT_EQ(counts(t.m_complex), (Counts { 4, 4, 1, 0 }));
    const FaceIt face = t.m_complex.m_lstFaces.begin();
    EXPECT_NE(face, t.m_face);
    EXPECT_EQ(listed(face->m_vecEdges), (Edges { halves.m_first, halves.m_second, t.bc, t.ca }));
    EXPECT_EQ(corners(face), (Verts { t.a, halves.m_middle, t.b, t.c }));
    EXPECT_FALSE(face->m_bNew);
}

TEST(ReplaceOverlappingEdge, TheEdgeIsGoneFromItsEndsAndTheHalvesAreThere)
{
    Triangle t;
    const Halves halves(t.m_complex, t.ab, { 2, 0, 0 });
    t.m_complex.ReplaceOverlappingEdge(t.ab, halves.m_first, halves.m_second);
    EXPECT_EQ(t.m_complex.FindEdge(t.a, t.b), t.m_complex.m_lstEdges.end());
    EXPECT_EQ(listed(t.a->m_vecEdges), (Edges { t.ca, halves.m_first }));
    EXPECT_EQ(listed(t.b->m_vecEdges), (Edges { t.bc, halves.m_second }));
    const FaceIt face = t.m_complex.m_lstFaces.begin();
    EXPECT_EQ(listed(halves.m_first->m_vecFaces), Faces { face });
    EXPECT_EQ(listed(t.bc->m_vecFaces), Faces { face });
}

TEST(ReplaceOverlappingEdge, AnEdgeThatRunsAgainstTheRingIsReplacedSecondHalfFirst)
{
    Tetrahedron t; // the ring of abc is ab, bc, ac; ab, next after ac, does not touch c
    const Halves halves(t.m_complex, t.ac, { 0, 0.5, 0 });
    t.m_complex.ReplaceOverlappingEdge(t.ac, halves.m_first, halves.m_second);
    const FaceIt inAbc = t.m_cell->m_vecFaces[2];
    EXPECT_EQ(listed(inAbc->m_vecEdges), (Edges { t.ab, t.bc, halves.m_second, halves.m_first }));
    EXPECT_EQ(corners(inAbc), (Verts { t.a, t.b, t.c, halves.m_middle }));
    // In acd, whose ring is ac, cd, ad, it runs along.
    const FaceIt inAcd = t.m_cell->m_vecFaces[3];
    EXPECT_EQ(listed(inAcd->m_vecEdges), (Edges { halves.m_first, halves.m_second, t.cd, t.ad }));
    EXPECT_EQ(corners(inAcd), (Verts { t.a, halves.m_middle, t.c, t.d }));
}

TEST(ReplaceOverlappingEdge, TheHalvesMayComeInEitherOrder)
{
    Triangle t;
    const Halves halves(t.m_complex, t.ab, { 2, 0, 0 });
    t.m_complex.ReplaceOverlappingEdge(t.ab, halves.m_second, halves.m_first);
    EXPECT_EQ(listed(t.m_complex.m_lstFaces.front().m_vecEdges),
        (Edges { halves.m_first, halves.m_second, t.bc, t.ca }));
}

TEST(ReplaceOverlappingEdge, CellsHoldTheNewFacesAfterTheirOthers)
{
    Tetrahedron t; // ab is in abc, then in adb
    const Halves halves(t.m_complex, t.ab, { 0.5, 0, 0 });
    t.m_complex.ReplaceOverlappingEdge(t.ab, halves.m_first, halves.m_second);
    EXPECT_EQ(counts(t.m_complex), (Counts { 5, 7, 4, 1 }));
    const Faces youngest = listed(t.m_complex.m_lstFaces);
    const FaceIt forAdb = youngest[0];
    const FaceIt forAbc = youngest[1];
    EXPECT_EQ(listed(t.m_cell->m_vecFaces), (Faces { t.acd, t.bcd, forAbc, forAdb }));
    EXPECT_EQ(listed(forAbc->m_vecEdges), (Edges { halves.m_first, halves.m_second, t.bc, t.ac }));
    EXPECT_EQ(listed(forAdb->m_vecEdges), (Edges { t.ad, t.db, halves.m_second, halves.m_first }));
    EXPECT_EQ(listed(forAbc->m_vecCells), Cells { t.m_cell });
    EXPECT_EQ(listed(forAdb->m_vecCells), Cells { t.m_cell });
    EXPECT_EQ(listed(halves.m_first->m_vecFaces), (Faces { forAbc, forAdb }));
}

TEST(ReplaceOverlappingEdge, BothCellsOfASharedFaceGetTheNewOne)
{
    Tetrahedron t;
    const CellIt other = t.m_complex.AddTetrahedralCell(
        Tetrahedron::kB, Tetrahedron::kC, Tetrahedron::kD, { 1, 1, 1 }, {});
    const Halves halves(t.m_complex, t.bc, { 0.5, 0.5, 0 });
    t.m_complex.ReplaceOverlappingEdge(t.bc, halves.m_first, halves.m_second);
    // bc is in abc, bcd and bce: three faces replaced.
    EXPECT_EQ(counts(t.m_complex), (Counts { 6, 10, 7, 2 }));
    const FaceIt shared = t.m_complex.FindFace(Edges { t.cd, t.db, halves.m_first });
    EXPECT_EQ(listed(shared->m_vecCells), (Cells { t.m_cell, other }));
    EXPECT_TRUE(t.m_cell->m_vecFaces.contains(shared));
    EXPECT_TRUE(other->m_vecFaces.contains(shared));
    EXPECT_EQ(t.m_cell->m_vecFaces.size(), 4U);
    EXPECT_EQ(other->m_vecFaces.size(), 4U);
}

TEST(ReplaceOverlappingEdge, ATriangleSplitOnAllSidesHasSixCornersInOrder)
{
    Triangle t;
    const Halves onAb(t.m_complex, t.ab, { 2, 0, 0 });
    t.m_complex.ReplaceOverlappingEdge(t.ab, onAb.m_first, onAb.m_second);
    const Halves onBc(t.m_complex, t.bc, { 2, 1.5, 0 });
    t.m_complex.ReplaceOverlappingEdge(t.bc, onBc.m_first, onBc.m_second);
    const Halves onCa(t.m_complex, t.ca, { 0, 1.5, 0 });
    t.m_complex.ReplaceOverlappingEdge(t.ca, onCa.m_first, onCa.m_second);
    EXPECT_EQ(counts(t.m_complex), (Counts { 6, 6, 1, 0 }));
    EXPECT_EQ(corners(t.m_complex.m_lstFaces.begin()),
        (Verts { t.a, onAb.m_middle, t.b, onBc.m_middle, t.c, onCa.m_middle }));
}

TEST(ReplaceOverlappingEdge, AnEdgeWithoutFacesStays)
{
    Complex complex;
    const VertIt a = complex.AddVert(Vert({ 0, 0, 0 }));
    const VertIt b = complex.AddVert(Vert({ 1, 0, 0 }));
    const EdgeIt ab = complex.AddEdge({ a, b });
    const Halves halves(complex, ab, { 0.5, 0, 0 });
    complex.ReplaceOverlappingEdge(ab, halves.m_first, halves.m_second);
    EXPECT_EQ(counts(complex), (Counts { 3, 3, 0, 0 }));
}

TEST(ReplaceCrossedEdge, AFaceStaysTheSameUntilItsLastCrossedEdgeIsReplaced)
{
    Triangle t; // the ring ab, bc, ca
    t.ab->m_vIntersection = { 2, 0, 0 };
    t.bc->m_vIntersection = { 2, 1.5, 0 };
    const Halves onAb(t.m_complex, t.ab, { 2, 0, 0 });
    t.m_complex.ReplaceCrossedEdge(t.ab, onAb.m_first, onAb.m_second);
    EXPECT_EQ(counts(t.m_complex), (Counts { 4, 4, 1, 0 })) << "the edge is gone";
    EXPECT_EQ(t.m_complex.m_lstFaces.begin(), t.m_face);
    EXPECT_EQ(corners(t.m_face), (Verts { t.a, onAb.m_middle, t.b, t.c }));
    EXPECT_EQ(listed(onAb.m_first->m_vecFaces), Faces { t.m_face });
    EXPECT_EQ(listed(onAb.m_second->m_vecFaces), Faces { t.m_face });

    const Halves onBc(t.m_complex, t.bc, { 2, 1.5, 0 });
    t.m_complex.ReplaceCrossedEdge(t.bc, onBc.m_first, onBc.m_second);
    EXPECT_EQ(counts(t.m_complex), (Counts { 5, 5, 1, 0 }));
    const FaceIt face = t.m_complex.m_lstFaces.begin();
    EXPECT_NE(face, t.m_face);
    EXPECT_EQ(corners(face), (Verts { t.a, onAb.m_middle, t.b, onBc.m_middle, t.c }));
    for (const EdgeIt edge : { onAb.m_first, onAb.m_second, onBc.m_first, onBc.m_second, t.ca })
        EXPECT_EQ(listed(edge->m_vecFaces), Faces { face });
}

TEST(ReplaceCrossedEdge, AFaceThatStaysGoesToTheEndOfTheArraysOfEdgesToCome)
{
    // Two triangles on ab, of which one has a further crossed edge with a third triangle on it.
    Complex complex;
    const VertIt a = complex.AddVert(Vert({ 0, 0, 0 }));
    const VertIt b = complex.AddVert(Vert({ 4, 0, 0 }));
    const VertIt c = complex.AddVert(Vert({ 0, 3, 0 }));
    const VertIt d = complex.AddVert(Vert({ 4, 3, 0 }));
    const EdgeIt ab = complex.AddEdge({ a, b });
    const EdgeIt bc = complex.AddEdge({ b, c });
    const EdgeIt ca = complex.AddEdge({ c, a });
    const EdgeIt cd = complex.AddEdge({ c, d });
    const EdgeIt db = complex.AddEdge({ d, b });
    const Edges lower { ab, bc, ca };
    const Edges upper { bc, cd, db };
    const FaceIt first = complex.AddFace(Face(lower));
    const FaceIt second = complex.AddFace(Face(upper));
    ab->m_vIntersection = { 2, 0, 0 };
    bc->m_vIntersection = { 2, 1.5, 0 };
    ASSERT_EQ(listed(bc->m_vecFaces), (Faces { first, second }));
    const Halves onAb(complex, ab, { 2, 0, 0 });
    complex.ReplaceCrossedEdge(ab, onAb.m_first, onAb.m_second);
    EXPECT_EQ(listed(bc->m_vecFaces), (Faces { second, first })) << "as a new one would";
    EXPECT_EQ(listed(ca->m_vecFaces), Faces { first });
}

TEST(ReplaceOverlappingEdge, HalvesThatDoNotReachBothEndsAreRefused)
{
    Tetrahedron t;
    const auto replaceAbBy = [&t](EdgeIt half0, EdgeIt half1) {
        return failure([&] { t.m_complex.ReplaceOverlappingEdge(t.ab, half0, half1); });
    };
    EXPECT_EQ(replaceAbBy(t.ac, t.ad), kNoOverlap) << "neither is at b";
    EXPECT_EQ(replaceAbBy(t.bc, t.db), kNoOverlap) << "neither is at a";
    EXPECT_EQ(replaceAbBy(t.cd, t.bc), kNoOverlap) << "the first is at no end";
    EXPECT_EQ(replaceAbBy(t.ac, t.cd), kNoOverlap) << "the second is at no end";
    EXPECT_EQ(counts(t.m_complex), (Counts { 4, 6, 4, 1 }));
}

TEST(ReplaceOverlappingEdge, HalvesThatDoNotMeetAreRefused)
{
    Tetrahedron t;
    EXPECT_EQ(failure([&] { t.m_complex.ReplaceOverlappingEdge(t.ab, t.ac, t.db); }), kNoOverlap);
    EXPECT_EQ(counts(t.m_complex), (Counts { 4, 6, 4, 1 }));
}

TEST(ReplaceOverlappingEdge, HalvesThatMeetInAnEndAreRefused)
{
    Tetrahedron t;
    const EdgeIt aa = t.m_complex.AddEdge({ t.a, t.a });
    const EdgeIt ab = t.m_complex.AddEdge({ t.a, t.b });
    EXPECT_EQ(failure([&] { t.m_complex.ReplaceOverlappingEdge(t.ab, aa, ab); }), kNoOverlap);
    EXPECT_EQ(failure([&] { t.m_complex.ReplaceOverlappingEdge(t.ab, ab, ab); }), kNoOverlap);
    EXPECT_EQ(failure([&] { t.m_complex.ReplaceOverlappingEdge(t.ab, t.ab, t.ab); }), kNoOverlap);
}

TEST(ReplaceOverlappingEdge, AFaceThatLacksTheEdgeIsRefused)
{
    Tetrahedron t;
    const Halves halves(t.m_complex, t.ab, { 0.5, 0, 0 });
    t.ab->m_vecFaces.push_back(t.bcd);
    EXPECT_EQ(
        failure([&] { t.m_complex.ReplaceOverlappingEdge(t.ab, halves.m_first, halves.m_second); }),
        kNotAdjacent);
}

TEST(ReplaceOverlappingEdge, AFaceThatNamesTheEdgeTwiceIsRefused)
{
    Triangle t;
    t.m_complex.AddFace(Face(Edges { t.ab, t.bc, t.ab }));
    const Halves halves(t.m_complex, t.ab, { 2, 0, 0 });
    EXPECT_EQ(
        failure([&] { t.m_complex.ReplaceOverlappingEdge(t.ab, halves.m_first, halves.m_second); }),
        kNotAdjacent);
}

/// The face abc of a tetrahedron cut from c to the middle of ab, which is not split yet.
struct CutFace : Tetrahedron {
    Halves m_halves { m_complex, ab, { 0.5, 0, 0 } };
    EdgeIt m_cut = m_complex.AddEdge({ m_halves.m_middle, c });
    FaceIt m_part0 = m_complex.AddFace(Face(Edges { m_halves.m_first, m_cut, ac }));
    FaceIt m_part1 = m_complex.AddFace(Face(Edges { m_halves.m_second, bc, m_cut }));
};

TEST(ReplaceOverlappingFace, ItsCellHoldsThePartsAfterItsOtherFaces)
{
    CutFace t;
    t.m_complex.ReplaceOverlappingFace(t.abc, Faces { t.m_part0, t.m_part1 });
    EXPECT_EQ(listed(t.m_cell->m_vecFaces), (Faces { t.acd, t.adb, t.bcd, t.m_part0, t.m_part1 }));
    EXPECT_EQ(listed(t.m_part0->m_vecCells), Cells { t.m_cell });
    EXPECT_EQ(listed(t.m_part1->m_vecCells), Cells { t.m_cell });
    // One face went and two came; ab stays for adb.
    EXPECT_EQ(counts(t.m_complex), (Counts { 5, 9, 5, 1 }));
    EXPECT_EQ(listed(t.ab->m_vecFaces), Faces { t.adb });
    EXPECT_EQ(listed(t.ac->m_vecFaces), (Faces { t.acd, t.m_part0 }));
}

TEST(ReplaceOverlappingFace, AllItsCellsGetTheParts)
{
    CutFace t;
    const CellIt other = t.m_complex.AddTetrahedralCell(
        Tetrahedron::kA, Tetrahedron::kB, Tetrahedron::kC, { 0, 0, -1 }, {});
    ASSERT_EQ(listed(t.abc->m_vecCells), (Cells { t.m_cell, other }));
    const Faces others(other->m_vecFaces.begin() + 1, other->m_vecFaces.end());
    t.m_complex.ReplaceOverlappingFace(t.abc, Faces { t.m_part0, t.m_part1 });
    EXPECT_EQ(listed(t.m_part0->m_vecCells), (Cells { t.m_cell, other }));
    EXPECT_EQ(listed(t.m_part1->m_vecCells), (Cells { t.m_cell, other }));
    EXPECT_EQ(listed(t.m_cell->m_vecFaces), (Faces { t.acd, t.adb, t.bcd, t.m_part0, t.m_part1 }));
    EXPECT_EQ(listed(other->m_vecFaces),
        (Faces { others[0], others[1], others[2], t.m_part0, t.m_part1 }));
}

TEST(ReplaceOverlappingFace, EdgesThatNothingElseUsesGoWithTheFace)
{
    Triangle t; // has no cell
    t.m_complex.ReplaceOverlappingFace(t.m_face, Faces {});
    EXPECT_EQ(counts(t.m_complex), (Counts { 0, 0, 0, 0 }));
}

TEST(ReplaceOverlappingFace, WithoutPartsTheFaceIsTakenOutOfItsCell)
{
    Tetrahedron t;
    t.m_complex.ReplaceOverlappingFace(t.abc, Faces {});
    EXPECT_EQ(listed(t.m_cell->m_vecFaces), (Faces { t.acd, t.adb, t.bcd }));
    EXPECT_EQ(counts(t.m_complex), (Counts { 4, 6, 3, 1 }));
}

TEST(Replacing, ACellWhoseEdgesAndFacesWereReplacedGoesWhole)
{
    CutFace t;
    t.m_complex.ReplaceOverlappingFace(t.abc, Faces { t.m_part0, t.m_part1 });
    t.m_complex.ReplaceOverlappingEdge(t.ab, t.m_halves.m_first, t.m_halves.m_second);
    EXPECT_EQ(counts(t.m_complex), (Counts { 5, 8, 5, 1 }));
    t.m_complex.RemoveCell(t.m_cell);
    EXPECT_EQ(counts(t.m_complex), (Counts { 0, 0, 0, 0 }));
}

} // namespace
