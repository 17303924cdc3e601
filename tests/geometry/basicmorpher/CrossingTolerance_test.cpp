// SPDX-License-Identifier: Apache-2.0
#include "geometry/basicmorpher/BasicMorpher.h"
#include "tests/support/Isolated.h"

#include <gtest/gtest.h>

#include <cmath>
#include <iostream>
#include <list>

// The tolerance is fixed by the first crossing test of a process. So each test here has processes
// of its own, and this program never makes a crossing test itself.

namespace {

using ::BasicMorpher::Facet;
using ::BasicMorpher::Position;
using Morpher = ::BasicMorpher::BasicMorpher;

// An edge 4 long that starts 1 / 256 above the triangle: it crosses from a tolerance of 1 / 1024
// on, by a hair more than that.
constexpr Position kA { -9, -6, 0 };
constexpr Position kB { 9, -6, 0 };
constexpr Position kC { 0, 12, 0 };
constexpr Position kP { 0, 0, 0x1p-8 };
constexpr Position kQ { 0, 0, 4 };

const char* crosses(double minEdgeLength)
{
    Morpher morpher;
    morpher.m_dMinEdgeLength = minEdgeLength;
    return morpher.IntersectEdgeTri(kP, kQ, kA, kB, kC) >= 0 ? "yes" : "no";
}

TEST(CrossingTolerance, IsAFractionOfTheLeastEdgeLength)
{
    // 4 x 0.0005 = 1 / 500 and 1 x 0.0005 = 1 / 2000.
    EXPECT_EQ(Testing::run_isolated([] { std::cout << crosses(4); }).out, "yes");
    EXPECT_EQ(Testing::run_isolated([] { std::cout << crosses(1); }).out, "no");
}

TEST(CrossingTolerance, ASecondMorpherUsesTheOneOfTheFirst)
{
    EXPECT_EQ(Testing::run_isolated([] { std::cout << crosses(4) << crosses(1); }).out, "yesyes");
    EXPECT_EQ(Testing::run_isolated([] { std::cout << crosses(1) << crosses(4); }).out, "nono");
}

// It is fixed before anything is looked at.
TEST(CrossingTolerance, AFirstTestOfATriangleWithEqualCornersFixesIt)
{
    const auto body = [] {
        Morpher morpher;
        morpher.m_dMinEdgeLength = 4;
        std::cout << morpher.IntersectEdgeTri(kP, kQ, kA, kA, kC) << ' ' << crosses(1);
    };
    EXPECT_EQ(Testing::run_isolated(body).out, "-1 yes");
}

TEST(CrossingTolerance, AddingShorterEdgesLaterDoesNotChangeIt)
{
    const auto body = [] {
        Morpher morpher;
        Facet facet { { kA, kB, kC } };
        morpher.AddTetrahedralCell(
            { 0, 0, 0x1p-8 }, { 0, 0, 4 }, { 4, 0, 4 }, { 0, 4, 4 }, { &facet });
        morpher.IntersectEdges(); // the edges are 4 - 1 / 256 long at least
        std::cout << morpher.m_counters.m_edgeTests << ' ' << crosses(1);
    };
    EXPECT_EQ(Testing::run_isolated(body).out, "6 yes");
}

// A morpher that makes no test, having no facets, leaves the tolerance to the next one.
TEST(CrossingTolerance, CellsWithoutFacetsDoNotFixIt)
{
    const auto body = [] {
        Morpher morpher;
        morpher.AddTetrahedralCell({ 0, 0, 0 }, { 1, 0, 0 }, { 0, 1, 0 }, { 0, 0, 1 }, {});
        std::list<Facet> surface;
        morpher.GenerateApproximateSurface(surface);
        std::cout << crosses(4);
    };
    EXPECT_EQ(Testing::run_isolated(body).out, "yes");
}

// With a tolerance of -1, which 0.0005 gives for -2000, a triangle shrinks to its centroid (1,1,1)
// and an edge is turned around. The normal has no length, so all that follows is no number.
void shrink_all(Morpher& morpher) { morpher.m_dMinEdgeLength = -2000; }

constexpr const char* kReport = "Bad tri-edge intersection -\n"
                                "   t1: { 3, 0, 0 }\n"
                                "   t2: { 0, 3, 0 }\n"
                                "   t3: { 0, 0, 3 }\n"
                                "   e1: { 4, 3, 2 }\n"
                                "   e2: { 0, 4, 3 }\n"
                                "  den: nan\n"
                                "    u: nan\n";

TEST(CrossingTolerance, AParameterThatIsNoNumberIsReported)
{
    const auto outcome = Testing::run_isolated([] {
        Morpher morpher;
        shrink_all(morpher);
        const double t = morpher.IntersectEdgeTri(
            { 4, 3, 2 }, { 0, 4, 3 }, { 3, 0, 0 }, { 0, 3, 0 }, { 0, 0, 3 });
        std::cout << (std::isnan(t) ? "no number" : "a number");
    });
    EXPECT_EQ(outcome.out, "no number");
    EXPECT_EQ(outcome.err, kReport);
}

TEST(CrossingTolerance, AnEdgeWithAParameterThatIsNoNumberIsNotCrossed)
{
    const auto outcome = Testing::run_isolated([] {
        Morpher morpher;
        Facet facet { { { { 3, 0, 0 } }, { { 0, 3, 0 } }, { { 0, 0, 3 } } } };
        shrink_all(morpher);
        // One edge with one cell around it.
        const auto p = morpher.AddVert(::BasicMorpher::Vert({ 4, 3, 2 }));
        const auto q = morpher.AddVert(::BasicMorpher::Vert({ 0, 4, 3 }));
        const auto edge = morpher.AddEdge(::BasicMorpher::Edge(p, q));
        const auto face = morpher.AddFace(::BasicMorpher::Face({ &edge, 1 }));
        const auto cell = morpher.AddCell(::BasicMorpher::Cell({ &face, 1 }));
        cell->m_vecTriangles = { &facet };
        morpher.IntersectEdges();
        const Position& crossing = edge->m_vIntersection;
        constexpr double kMost = Tavro::kNone<double>;
        const bool none = crossing[0] == kMost && crossing[1] == kMost && crossing[2] == -kMost;
        std::cout << (none ? "none" : "crossed") << (p->m_bUnreached ? " unreached" : " reached");
    });
    EXPECT_EQ(outcome.out, "none reached");
    EXPECT_EQ(outcome.err, kReport);
}

} // namespace
