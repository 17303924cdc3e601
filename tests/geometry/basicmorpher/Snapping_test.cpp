// SPDX-License-Identifier: Apache-2.0
#include "tests/geometry/basicmorpher/CuttingSamples.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>

namespace {

using namespace Testing;

// The shortest edges of the corner tetrahedron are 16 long: what is less than 16 x 0.3334 = 5.3344
// away from a vertex snaps.

/// Puts a crossing on the edge between these, as if it had been found.
void cross(
    const Morpher& morpher, const Position& end0, const Position& end1, const Position& crossing)
{
    edge_at(morpher, end0, end1)->m_vIntersection = crossing;
}

bool is_crossed(const Morpher& morpher, const Position& end0, const Position& end1)
{
    return edge_at(morpher, end0, end1)->m_vIntersection[0] < Tavro::kNone<double>;
}

/// Where the vertex is now that was added at `position`.
std::string now_at(const Morpher& morpher, const Position& position)
{
    return text(morpher.FindVert(position)->m_vPosition);
}

/// Positions of all vertices marked as split, sorted.
std::string split_verts(const Morpher& morpher)
{
    std::vector<std::string> positions;
    for (const ::BasicMorpher::Vert& vert : morpher.m_lstVerts) {
        if (vert.m_bSplit)
            positions.push_back(text(vert.m_vPosition));
    }
    std::sort(positions.begin(), positions.end());
    std::string joined;
    for (const std::string& position : positions)
        joined += position;
    return joined;
}

TEST(Snapping, ACrossingNearAVertMovesItAndSplitsNothing)
{
    Morpher morpher;
    add_corner_tetrahedron(morpher, {});
    cross(morpher, kO, kX, { 5, 0, 0 });
    morpher.MorphGrid();
    EXPECT_EQ(now_at(morpher, kO), "(5, 0, 0)");
    EXPECT_TRUE(morpher.FindVert(kO)->m_bOnSurface);
    EXPECT_FALSE(morpher.FindVert(kO)->m_bSplit);
    EXPECT_FALSE(is_crossed(morpher, kO, kX));
    EXPECT_EQ(morpher.m_lstVerts.size(), 4U);
    EXPECT_EQ(morpher.m_lstCells.size(), 1U);
    EXPECT_EQ(morpher.m_counters.m_snappedVerts, 1U);
    EXPECT_EQ(morpher.m_counters.m_splitEdges, 0U);
}

TEST(Snapping, TheMapOfPositionsIsNotUpdated)
{
    Morpher morpher;
    add_corner_tetrahedron(morpher, {});
    cross(morpher, kO, kX, { 5, 0, 0 });
    morpher.MorphGrid();
    EXPECT_NE(morpher.FindVert(kO), VertIt());
    EXPECT_EQ(morpher.FindVert({ 5, 0, 0 }), VertIt());
}

TEST(Snapping, ACrossingAtTheVertItselfSnaps)
{
    Morpher morpher;
    add_corner_tetrahedron(morpher, {});
    cross(morpher, kO, kX, kO);
    morpher.MorphGrid();
    EXPECT_TRUE(morpher.FindVert(kO)->m_bOnSurface);
    EXPECT_EQ(now_at(morpher, kO), "(0, 0, 0)");
    EXPECT_EQ(split_verts(morpher), "");
}

// 16 x 0.3334 as it comes out in doubles is the tolerance, which is not below itself.
TEST(Snapping, ACrossingAsFarAsTheToleranceIsSplit)
{
    Morpher morpher;
    add_corner_tetrahedron(morpher, {});
    cross(morpher, kO, kX, { 16 * 0.3334, 0, 0 });
    morpher.MorphGrid();
    EXPECT_EQ(split_verts(morpher), "(5.3344, 0, 0)");
    EXPECT_EQ(morpher.m_counters.m_snappedVerts, 0U);
    EXPECT_FALSE(morpher.FindVert(kO)->m_bOnSurface);
}

TEST(Snapping, ACrossingOneBitNearerThanTheToleranceSnaps)
{
    Morpher morpher;
    add_corner_tetrahedron(morpher, {});
    cross(morpher, kO, kX, { std::nextafter(16 * 0.3334, 0.0), 0, 0 });
    morpher.MorphGrid();
    EXPECT_EQ(split_verts(morpher), "");
    EXPECT_EQ(morpher.m_counters.m_snappedVerts, 1U);
    EXPECT_TRUE(morpher.FindVert(kO)->m_bOnSurface);
}

TEST(Snapping, TheNearestCrossingIsTheTarget)
{
    Morpher morpher;
    add_corner_tetrahedron(morpher, {});
    cross(morpher, kO, kX, { 4, 0, 0 });
    cross(morpher, kO, kY, { 0, 2, 0 });
    cross(morpher, kO, kZ, { 0, 0, 3 });
    morpher.MorphGrid();
    EXPECT_EQ(now_at(morpher, kO), "(0, 2, 0)");
    EXPECT_FALSE(is_crossed(morpher, kO, kX));
    EXPECT_FALSE(is_crossed(morpher, kO, kY));
    EXPECT_FALSE(is_crossed(morpher, kO, kZ));
    EXPECT_EQ(split_verts(morpher), "");
}

// The edges of O were added in the order OX, OY, OZ.
TEST(Snapping, OfEquallyNearCrossingsTheOneOfTheFirstEdgeIsTheTarget)
{
    Morpher morpher;
    add_corner_tetrahedron(morpher, {});
    cross(morpher, kO, kZ, { 0, 0, 3 });
    cross(morpher, kO, kY, { 0, 3, 0 });
    morpher.MorphGrid();
    EXPECT_EQ(now_at(morpher, kO), "(0, 3, 0)");
}

TEST(Snapping, ACrossingHalfwayIsTakenOffAnEdgeOfASnappedVert)
{
    Morpher morpher;
    add_corner_tetrahedron(morpher, {});
    cross(morpher, kO, kX, { 2, 0, 0 });
    cross(morpher, kO, kY, { 0, 8, 0 });
    morpher.MorphGrid();
    EXPECT_EQ(now_at(morpher, kO), "(2, 0, 0)");
    EXPECT_FALSE(is_crossed(morpher, kO, kY));
    EXPECT_EQ(split_verts(morpher), "");
}

// O is the youngest and snaps first. OY is crossed 2 before Y: that stays for Y to snap to.
TEST(Snapping, ACrossingNearTheOtherEndStaysAndSnapsThatEnd)
{
    Morpher morpher;
    morpher.AddTetrahedralCell(kX, kY, kZ, kO, {});
    cross(morpher, kO, kX, { 2, 0, 0 });
    cross(morpher, kO, kY, { 0, 14, 0 });
    morpher.MorphGrid();
    EXPECT_EQ(now_at(morpher, kO), "(2, 0, 0)");
    EXPECT_EQ(now_at(morpher, kY), "(0, 14, 0)");
    EXPECT_EQ(split_verts(morpher), "");
    EXPECT_EQ(morpher.m_counters.m_snappedVerts, 2U);
}

// X is younger than O and snaps to the crossing of XY. That of OX, far from X, stays only if it is
// nearer to O than the tolerance, in which case O snaps to it.
TEST(Snapping, WhetherAFarCrossingStaysHangsOnTheToleranceToo)
{
    for (const bool below : { false, true }) {
        Morpher morpher;
        morpher.AddTetrahedralCell(kO, kX, kY, kZ, {});
        cross(morpher, kX, kY, { 15, 1, 0 });
        const double tolerance = 16 * 0.3334;
        cross(morpher, kO, kX, { below ? std::nextafter(tolerance, 0.0) : tolerance, 0, 0 });
        morpher.MorphGrid();
        EXPECT_EQ(now_at(morpher, kX), "(15, 1, 0)");
        EXPECT_EQ(morpher.FindVert(kO)->m_bOnSurface, below);
        EXPECT_FALSE(is_crossed(morpher, kO, kX));
        EXPECT_EQ(split_verts(morpher), "");
    }
}

// Y comes before X. It snaps to the crossing of OY and leaves the one of XY, which is no use to
// itself but is 3.5 x sqrt 2 = 4.95 from X.
TEST(Snapping, AYoungerVertLeavesWhatTheOlderOneSnapsTo)
{
    Morpher morpher;
    add_corner_tetrahedron(morpher, {});
    cross(morpher, kO, kY, { 0, 13, 0 });
    cross(morpher, kX, kY, { 12.5, 3.5, 0 });
    morpher.MorphGrid();
    EXPECT_EQ(now_at(morpher, kY), "(0, 13, 0)");
    EXPECT_EQ(now_at(morpher, kX), "(12.5, 3.5, 0)");
}

// A least length that was set and not measured makes a crossing near to both ends.
TEST(Snapping, VertsAreWalkedFromTheYoungest)
{
    Morpher morpher;
    add_corner_tetrahedron(morpher, {});
    morpher.m_dMinEdgeLength = 32; // what is less than 10.6688 away snaps
    cross(morpher, kO, kX, { 8, 0, 0 });
    morpher.MorphGrid();
    EXPECT_EQ(now_at(morpher, kX), "(8, 0, 0)"); // added after O
    EXPECT_EQ(now_at(morpher, kO), "(0, 0, 0)");
    EXPECT_FALSE(morpher.FindVert(kO)->m_bOnSurface);
}

// Splitting of edges

TEST(EdgeSplitting, TheNewVertIsAnUnreachedSplitOneOnTheSurface)
{
    Morpher morpher;
    add_corner_tetrahedron(morpher, {});
    cross(morpher, kO, kX, { 8, 0, 0 });
    morpher.MorphGrid();
    const VertIt middle = morpher.FindVert({ 8, 0, 0 });
    ASSERT_NE(middle, VertIt());
    EXPECT_TRUE(middle->m_bUnreached);
    EXPECT_TRUE(middle->m_bOnSurface);
    EXPECT_TRUE(middle->m_bSplit);
    EXPECT_EQ(morpher.FindEdge(morpher.FindVert(kO), morpher.FindVert(kX)), EdgeIt());
    const EdgeIt first = edge_at(morpher, kO, { 8, 0, 0 });
    const EdgeIt second = edge_at(morpher, { 8, 0, 0 }, kX);
    EXPECT_EQ(text(first->m_itVert0->m_vPosition), "(0, 0, 0)");
    EXPECT_EQ(text(second->m_itVert0->m_vPosition), "(8, 0, 0)");
    EXPECT_EQ(first->m_vIntersection[0], Tavro::kNone<double>);
    EXPECT_EQ(second->m_vIntersection[0], Tavro::kNone<double>);
    EXPECT_EQ(morpher.m_counters.m_splitEdges, 1U);
}

// One split side makes two triangles of each of its faces, but no surface edge: only (8,0,0) is on
// the surface, so the cell stays one, with both other faces and four halves.
TEST(EdgeSplitting, ASingleSplitSideDividesFacesAndNotTheCell)
{
    Morpher morpher;
    const CellIt cell = add_corner_tetrahedron(morpher, {});
    cross(morpher, kO, kX, { 8, 0, 0 });
    morpher.MorphGrid();
    EXPECT_EQ(morpher.m_lstCells.size(), 1U);
    EXPECT_EQ(morpher.m_lstCells.begin(), cell);
    EXPECT_EQ(cell->m_vecFaces.size(), 6U);
    EXPECT_EQ(morpher.m_counters.m_splitFaces, 2U);
    EXPECT_EQ(morpher.m_counters.m_splitCells, 0U);
}

TEST(EdgeSplitting, WithoutFacesOnlyTheHalvesAreAdded)
{
    Morpher morpher;
    const VertIt a = add_vert(morpher, { 0, 0, 0 });
    const EdgeIt edge = edge_between(morpher, a, add_vert(morpher, { 3, 0, 0 }));
    edge->m_vIntersection = { 1.5, 0, 0 };
    morpher.MorphGrid();
    EXPECT_EQ(split_verts(morpher), "(1.5, 0, 0)");
    EXPECT_EQ(morpher.m_counters.m_splitFaces, 0U);
}

// The shortest edge is 3 long: what is less than 1.0002 away snaps.
TEST(EdgeSplitting, WhereNoFaceIsSplitVertsMoveAllTheSame)
{
    Morpher morpher;
    const VertIt a = add_vert(morpher, { 0, 0, 0 });
    const VertIt c = add_vert(morpher, { 10, 0, 0 });
    edge_between(morpher, a, add_vert(morpher, { 3, 0, 0 }))->m_vIntersection = { 1.5, 0, 0 };
    const EdgeIt snapping = edge_between(morpher, c, add_vert(morpher, { 13, 0, 0 }));
    snapping->m_vIntersection = { 10.5, 0, 0 };
    morpher.MorphGrid();
    EXPECT_EQ(split_verts(morpher), "(1.5, 0, 0)");
    EXPECT_EQ(morpher.m_counters.m_splitEdges, 1U);
    EXPECT_EQ(text(c->m_vPosition), "(10.5, 0, 0)");
    EXPECT_EQ(text(a->m_vPosition), "(0, 0, 0)");
}

} // namespace
