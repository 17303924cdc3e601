// SPDX-License-Identifier: Apache-2.0
#include "tests/geometry/basicmorpher/CuttingSamples.h"

#include <gtest/gtest.h>

#include <limits>

namespace {

using namespace Testing;

constexpr double kMost = std::numeric_limits<double>::max();

// The edges of the corner tetrahedron that end at O, X, Y or Z are 16 long along an axis. Grown by
// 16 / 1024 at both ends they are 1026 of 1 / 64 long; what lies at 16 k / 1024 is at (k + 1) /
// 1026.
constexpr double kAtSix = 385.0 / 1026.0;
constexpr double kAtTen = 641.0 / 1026.0;

/// Crosses the plane of x all through the corner tetrahedron.
Facet wall(double x) { return patch(0, { x, 0, 0 }, 24); }

void expect_crossing(
    const Morpher& morpher, const Position& end0, const Position& end1, const Position& crossing)
{
    const EdgeIt edge = edge_at(morpher, end0, end1);
    ASSERT_NE(edge, EdgeIt());
    for (std::size_t axis = 0; axis < 3; ++axis)
        EXPECT_EQ(edge->m_vIntersection[axis], crossing[axis]) << "axis " << axis;
}

void expect_no_crossing(const Morpher& morpher, const Position& end0, const Position& end1)
{
    const EdgeIt edge = edge_at(morpher, end0, end1);
    ASSERT_NE(edge, EdgeIt());
    EXPECT_EQ(edge->m_vIntersection[0], kMost);
    EXPECT_EQ(edge->m_vIntersection[1], kMost);
    EXPECT_EQ(edge->m_vIntersection[2], -kMost);
}

std::string unreached_of(const Morpher& morpher)
{
    std::string names;
    const char* const all = "OXYZ";
    for (const Position& position : { kO, kX, kY, kZ }) {
        const std::size_t i = position[0] > 0 ? 1 : position[1] > 0 ? 2 : position[2] > 0 ? 3 : 0;
        if (morpher.FindVert(position)->m_bUnreached)
            names += all[i];
    }
    return names;
}

// Tests against facets

/// Three triangles on the edge from (0,0,0) to (0,0,4), each with a cell of its own.
struct Fan {
    explicit Fan(const std::vector<FacetArray>& facets)
    {
        const VertIt bottom = add_vert(morpher, { 0, 0, 0 });
        const VertIt top = add_vert(morpher, { 0, 0, 4 });
        double x = 1;
        for (const FacetArray& array : facets) {
            const VertIt tip = add_vert(morpher, { x, 1, 0 });
            const CellIt cell = cell_of(morpher, { polygon(morpher, { bottom, top, tip }) });
            cell->m_vecTriangles = array;
            x += 1;
        }
        edge = morpher.FindEdge(bottom, top);
    }

    Morpher morpher;
    EdgeIt edge;
};

std::vector<Facet*> facets_around(const Fan& fan)
{
    FacetArray facets { nullptr, nullptr };
    fan.morpher.GetIntersectingTrisForEdge(fan.edge, facets);
    return { facets.begin(), facets.end() };
}

TEST(EdgeFacets, AreThoseOfTheCellWithTheFewest)
{
    Facet a = wall(1);
    Facet b = wall(2);
    Facet c = wall(3);
    const Fan fan({ { &a, &b, &c }, { &b }, { &a, &c } });
    EXPECT_EQ(facets_around(fan), (std::vector<Facet*> { &b }));
}

TEST(EdgeFacets, TheFirstCellKeepsATie)
{
    Facet a = wall(1);
    Facet b = wall(2);
    Facet c = wall(3);
    const Fan fan({ { &a, &b, &c }, { &b, &a }, { &c, &a } });
    EXPECT_EQ(facets_around(fan), (std::vector<Facet*> { &b, &a }));
}

TEST(EdgeFacets, ThereAreNoneBesideACellWithoutFacets)
{
    Facet a = wall(1);
    const Fan fan({ { &a }, {}, { &a, &a } });
    EXPECT_EQ(facets_around(fan), std::vector<Facet*>());
}

TEST(EdgeFacets, ThereAreNoneWithoutACell)
{
    Fan fan({});
    fan.edge = edge_between(
        fan.morpher, fan.morpher.FindVert({ 0, 0, 0 }), fan.morpher.FindVert({ 0, 0, 4 }));
    EXPECT_EQ(facets_around(fan), std::vector<Facet*>());
}

TEST(EdgeFacets, ThereAreNoneOfNone)
{
    Facet facet = patch(0, { 0, 0, 0 }, 1);
    FacetArray facets { &facet }; // what it held goes
    Morpher().GetIntersectingTrisForEdge(EdgeIt(), facets);
    EXPECT_TRUE(facets.empty());
}

TEST(EdgeFacets, AreACopy)
{
    Facet a = wall(1);
    const Fan fan({ { &a } });
    FacetArray facets;
    fan.morpher.GetIntersectingTrisForEdge(fan.edge, facets);
    facets.push_back(nullptr);
    EXPECT_EQ(facets_around(fan), (std::vector<Facet*> { &a }));
}

// An edge shared with a hexahedron is not crossed, although a tetrahedron beside it has a facet.
TEST(IntersectEdges, AnEdgeOfAnEmptyCellIsTestedAgainstNothing)
{
    Morpher morpher;
    Facet facet = wall(8);
    morpher.AddHexahedralCell(kO, { 0, -16, 0 }, { 16, -16, 0 }, kX, { 0, 0, -16 }, { 0, -16, -16 },
        { 16, -16, -16 }, { 16, 0, -16 });
    add_corner_tetrahedron(morpher, { &facet });
    morpher.IntersectEdges();
    expect_no_crossing(morpher, kO, kX);
    expect_crossing(morpher, kY, kX, { 8, 8, 0 });
    // OY, OZ, XY, YZ and ZX; not OX.
    EXPECT_EQ(morpher.m_counters.m_edgeTests, 5U);
}

TEST(IntersectEdges, AComplexWithoutElementsStaysSo)
{
    Morpher morpher;
    morpher.IntersectEdges();
    EXPECT_TRUE(morpher.m_lstEdges.empty());
    EXPECT_EQ(morpher.m_counters.m_edgeTests, 0U);
}

// The flood

TEST(IntersectEdges, WithoutCrossingsAllVertsAreReached)
{
    Morpher morpher;
    Facet beside = wall(20);
    add_corner_tetrahedron(morpher, { &beside });
    EXPECT_EQ(unreached_of(morpher), "OXYZ");
    morpher.IntersectEdges();
    EXPECT_EQ(unreached_of(morpher), "");
    EXPECT_EQ(morpher.m_counters.m_edgeTests, 6U);
    expect_no_crossing(morpher, kO, kX);
}

TEST(IntersectEdges, TheLeastVertIsOutsideWhereverItWasAdded)
{
    // The wall at x = 8 parts X from the others; O is the least and the third to be added.
    Morpher morpher;
    Facet facet = wall(8);
    morpher.AddTetrahedralCell(kX, kY, kO, kZ, { &facet });
    morpher.IntersectEdges();
    EXPECT_EQ(unreached_of(morpher), "X");
}

TEST(IntersectEdges, AVertThatIsNotJoinedToTheLeastOneStaysUnreached)
{
    Morpher morpher;
    add_vert(morpher, { 99, 0, 0 });
    add_corner_tetrahedron(morpher, {});
    morpher.IntersectEdges();
    EXPECT_EQ(unreached_of(morpher), "");
    EXPECT_TRUE(morpher.FindVert({ 99, 0, 0 })->m_bUnreached);
}

TEST(IntersectEdges, WhereTheLeastVertIsGoneTheLeastThatIsLeftIsOutside)
{
    Morpher morpher;
    morpher.RemoveVert(add_vert(morpher, { -99, 0, 0 }));
    morpher.IntersectEdges(); // nothing is left
    add_corner_tetrahedron(morpher, {});
    morpher.IntersectEdges();
    EXPECT_EQ(unreached_of(morpher), "");
}

// Which crossing counts

TEST(IntersectEdges, AnEdgeWithBothEndsReachedCountsTheMiddleOfItsCrossings)
{
    // Both patches are met by OX only, at 6 and 10: the mean of the parameters is a half.
    Morpher morpher;
    Facet six = patch(0, { 6, 0, 0 }, 3);
    Facet ten = patch(0, { 10, 0, 0 }, 2);
    add_corner_tetrahedron(morpher, { &ten, &six });
    morpher.IntersectEdges();
    EXPECT_EQ(unreached_of(morpher), "");
    expect_crossing(morpher, kO, kX, { 8, 0, 0 });
    expect_no_crossing(morpher, kX, kY);
}

TEST(IntersectEdges, OfManyCrossingsTheLeastAndTheGreatestMakeTheMiddle)
{
    Morpher morpher;
    Facet six = patch(0, { 6, 0, 0 }, 3);
    Facet seven = patch(0, { 7, 0, 0 }, 3);
    Facet ten = patch(0, { 10, 0, 0 }, 2);
    add_corner_tetrahedron(morpher, { &seven, &ten, &six, &seven });
    morpher.IntersectEdges();
    expect_crossing(morpher, kO, kX, { 8, 0, 0 });
}

// O alone is reached: OX, OY and OZ are crossed, and XY as well.
TEST(IntersectEdges, AnEdgeWithBothEndsUnreachedHasNoCrossing)
{
    Morpher morpher;
    Facet x = patch(0, { 8, 0, 0 }, 3);
    Facet y = patch(1, { 0, 8, 0 }, 3);
    Facet z = patch(2, { 0, 0, 8 }, 3);
    Facet inner = patch(0, { 8, 8, 0 }, 3);
    add_corner_tetrahedron(morpher, { &x, &y, &z, &inner });
    morpher.IntersectEdges();
    EXPECT_EQ(unreached_of(morpher), "XYZ");
    expect_crossing(morpher, kO, kX, { 8, 0, 0 });
    expect_crossing(morpher, kO, kY, { 0, 8, 0 });
    expect_crossing(morpher, kO, kZ, { 0, 0, 8 });
    expect_no_crossing(morpher, kX, kY);
    expect_no_crossing(morpher, kY, kZ);
}

// Walls at 6 and 10 part X from the rest: the one at 6 is nearer to every reached end. It is the
// least parameter on OX, whose first end is reached, and the greatest on XY, whose second is: XY
// meets it 10 of 16 on its way.
TEST(IntersectEdges, WhereTheEndsDifferTheCrossingNearestTheReachedOneCounts)
{
    Morpher morpher;
    Facet six = wall(6);
    Facet ten = wall(10);
    add_corner_tetrahedron(morpher, { &six, &ten });
    morpher.IntersectEdges();
    EXPECT_EQ(unreached_of(morpher), "X");
    expect_crossing(morpher, kO, kX, { kAtSix * 16, 0, 0 });
    ASSERT_EQ(text(edge_at(morpher, kX, kY)->m_itVert0->m_vPosition), "(16, 0, 0)");
    expect_crossing(morpher, kX, kY, { 16 + kAtTen * -16, kAtTen * 16, 0 });
    // ZX runs from the reached end again.
    ASSERT_EQ(text(edge_at(morpher, kX, kZ)->m_itVert0->m_vPosition), "(0, 0, 16)");
    expect_crossing(morpher, kX, kZ, { kAtSix * 16, 0, 16 + kAtSix * -16 });
}

TEST(IntersectEdges, ASingleCrossingCountsOnEitherSide)
{
    Morpher morpher;
    Facet facet = wall(8);
    add_corner_tetrahedron(morpher, { &facet });
    morpher.IntersectEdges();
    expect_crossing(morpher, kO, kX, { 8, 0, 0 });
    expect_crossing(morpher, kX, kY, { 8, 8, 0 });
    expect_crossing(morpher, kZ, kX, { 8, 0, 8 });
    expect_no_crossing(morpher, kO, kY);
}

TEST(IntersectEdges, OnlyWhatHasALeastAndAGreatestParameterIsPlaced)
{
    Morpher morpher;
    const VertIt a = add_vert(morpher, { 0, 0, 0 });
    const EdgeIt edge = edge_between(morpher, a, add_vert(morpher, { 1, 0, 0 }));
    edge->m_vIntersection = { kMost, 0.5, -kMost };
    morpher.IntersectEdges();
    EXPECT_EQ(edge->m_vIntersection[1], 0.5);
    edge->m_vIntersection = { kMost, kMost, 0.5 };
    morpher.IntersectEdges();
    EXPECT_EQ(edge->m_vIntersection[0], kMost);
    EXPECT_EQ(edge->m_vIntersection[2], 0.5);
}

} // namespace
