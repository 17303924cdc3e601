// SPDX-License-Identifier: Apache-2.0
#include "tests/geometry/basicmorpher/CuttingSamples.h"
#include "tests/geometry/basicmorpher/PlainReference.h"

#include <gtest/gtest.h>

#include <array>
#include <cmath>
#include <random>

namespace {

using namespace Testing;

// In the plane z = 0, with its centroid at the origin, so that growing keeps it there.
constexpr Position kA { -9, -6, 0 };
constexpr Position kB { 9, -6, 0 };
constexpr Position kC { 0, 12, 0 };

double crossing(const Position& p, const Position& q)
{
    return Morpher().IntersectEdgeTri(p, q, kA, kB, kC);
}

/// Whether the grown edge passes the exact test with the grown triangle: what a quotient is for.
bool grown_ones_meet(const Position& p, const Position& q, const Facet& facet)
{
    return Plain::Grown(p, q, facet, kTolerance).Meet();
}

TEST(EdgeCrossing, TwoEqualCornersAreNoCrossing)
{
    const Morpher morpher;
    const Position p { 0, 0, -1 };
    const Position q { 0, 0, 1 };
    EXPECT_EQ(morpher.IntersectEdgeTri(p, q, kA, kA, kC), -1.0);
    EXPECT_EQ(morpher.IntersectEdgeTri(p, q, kA, kB, kB), -1.0);
    EXPECT_EQ(morpher.IntersectEdgeTri(p, q, kC, kB, kC), -1.0);
}

TEST(EdgeCrossing, AnEdgeWithoutLengthIsNoCrossing)
{
    EXPECT_EQ(crossing({ 0, 0, 0 }, { 0, 0, 0 }), -1.0);
    EXPECT_EQ(crossing({ 0, 0, 0 }, { 0, 0, -0.0 }), -1.0);
}

TEST(EdgeCrossing, ATriangleWithoutAreaIsNoCrossing)
{
    // Three different points of one line, met in the middle one.
    EXPECT_EQ(Morpher().IntersectEdgeTri(
                  { 2, 2, -1 }, { 2, 2, 1 }, { 0, 0, 0 }, { 2, 2, 0 }, { 5, 5, 0 }),
        -1.0);
}

// The edge from z = -1 to z = 3 is 4 long and grows by 4 / 1024 at both ends. In units of 1 / 256
// it then runs from -257 to 769, 1026 long, and not by 0.25 or 0.75 of it.
TEST(EdgeCrossing, TheParameterIsMeasuredAlongTheGrownEdge)
{
    EXPECT_EQ(crossing({ 1, 1, -1 }, { 1, 1, 3 }), 257.0 / 1026.0);
    EXPECT_EQ(crossing({ 1, 1, 3 }, { 1, 1, -1 }), 769.0 / 1026.0);
}

TEST(EdgeCrossing, TheWindingOfTheTriangleDoesNotMatter)
{
    const Morpher morpher;
    const Position p { 1, 1, -1 };
    const Position q { 1, 1, 3 };
    EXPECT_EQ(morpher.IntersectEdgeTri(p, q, kB, kA, kC), 257.0 / 1026.0);
    EXPECT_EQ(morpher.IntersectEdgeTri(p, q, kC, kA, kB), 257.0 / 1026.0);
}

TEST(EdgeCrossing, AnEdgeBesideTheTriangleIsNoCrossing)
{
    EXPECT_EQ(crossing({ 8, 8, -1 }, { 8, 8, 1 }), -1.0); // within the box, outside the sides
    EXPECT_EQ(crossing({ 20, 0, -1 }, { 20, 0, 1 }), -1.0);
    EXPECT_EQ(crossing({ 0, 0, 1 }, { 0, 0, 2 }), -1.0);
}

// The edge grows by 4 / 1024 beyond the plane: that is 1 of 1026.
TEST(EdgeCrossing, AnEdgeThatOnlyTouchesThePlaneCrosses)
{
    EXPECT_EQ(crossing({ 0, 0, 0 }, { 0, 0, 4 }), 1.0 / 1026.0);
    EXPECT_EQ(crossing({ 0, 0, 4 }, { 0, 0, 0 }), 1025.0 / 1026.0);
}

TEST(EdgeCrossing, AnEdgeThroughACornerOrASideCrosses)
{
    EXPECT_EQ(crossing({ 9, -6, -1 }, { 9, -6, 1 }), 0.5);
    EXPECT_EQ(crossing({ 0, -6, -1 }, { 0, -6, 1 }), 0.5);
}

TEST(EdgeCrossing, AnEndJustBeyondTheGrowthIsNoCrossing)
{
    // 4 long, it grows by 1 / 256 and stays 1 / 256 above the plane.
    EXPECT_EQ(crossing({ 0, 0, 0x1p-7 }, { 0, 0, 4 + 0x1p-7 }), -1.0);
}

// All in the plane z = 3. The perturbation lets them meet, but there is nothing to divide by.
TEST(EdgeCrossing, AnEdgeInThePlaneOfTheTriangleIsNoCrossing)
{
    const Facet flat { { { { 0, 9, 3 } }, { { 0, -12, 3 } }, { { -6, 12, 3 } } } };
    const Position p { 2, -1, 3 };
    const Position q { 0, 0, 3 };
    ASSERT_TRUE(grown_ones_meet(p, q, flat));
    EXPECT_EQ(Morpher().IntersectEdgeTri(p, q, flat[0], flat[1], flat[2]), -1.0);
}

// The triangle's normal is along (1, 2, 3) and (-4, -4, 4) is square to it: the edge lies in the
// plane and starts at a corner. Only rounding is left to divide, and the quotient is 2.
TEST(EdgeCrossing, AParameterBeyondTheSecondEndIsOne)
{
    const Facet slanted { { { { 6, -12, 6 } }, { { 0, 0, 0 } }, { { -12, 6, 0 } } } };
    const Position q { -4, -4, 4 };
    ASSERT_TRUE(grown_ones_meet(kO, q, slanted));
    EXPECT_EQ(Morpher().IntersectEdgeTri(kO, q, slanted[0], slanted[1], slanted[2]), 1.0);
}

// Likewise: the normal is along (1, 3, -2), the edge along (-4, 2, 1), and its start in the plane;
// of what rounding leaves the quotient is -8.
TEST(EdgeCrossing, AParameterBeforeTheFirstEndIsZero)
{
    const Facet slanted { { { { 12, -12, -9 } }, { { 12, 0, 9 } }, { { 0, 0, 3 } } } };
    const Position p { 2, -2, 1 };
    const Position q { -2, 0, 2 };
    ASSERT_TRUE(grown_ones_meet(p, q, slanted));
    const double t = Morpher().IntersectEdgeTri(p, q, slanted[0], slanted[1], slanted[2]);
    EXPECT_EQ(t, 0.0);
    EXPECT_FALSE(std::signbit(t));
}

// Five points near one plane, with full mantissas: the exact test rounds in its last stage and
// lets some edges meet triangles that they are apart from. That counts as all it says.
TEST(EdgeCrossing, PointsNearOnePlaneCrossAsTheExactTestSaysAlsoWhereBoxesAreApart)
{
    std::mt19937 engine(7);
    const auto number = [&engine] { return static_cast<double>(engine()) * 0x1p-31 - 1; };
    const auto point = [&number] {
        const double x = number();
        const double y = number();
        return Position { x, y, number() };
    };
    const Morpher morpher;
    int apart = 0;
    for (int i = 0; i < 20000; ++i) {
        const Position origin = point();
        const Position u = point();
        const Position v = point();
        std::array<Position, 5> p;
        for (Position& corner : p) {
            const double s = number();
            const double t = number();
            for (std::size_t axis = 0; axis < 3; ++axis)
                corner[axis] = origin[axis] + s * u[axis] + t * v[axis];
        }
        const Facet facet { p[2], p[3], p[4] };
        const double expected = Plain::intersect_edge_tri(p[0], p[1], facet, kTolerance);
        EXPECT_EQ(morpher.IntersectEdgeTri(p[0], p[1], p[2], p[3], p[4]), expected);
        if (expected >= 0 && Plain::Grown(p[0], p[1], facet, kTolerance).AreApart())
            ++apart;
    }
    EXPECT_GT(apart, 10) << "the sample has no such pairs any more";
}

// All degenerate positions that a small grid has.
TEST(EdgeCrossing, EdgesOfASmallGridCrossAsThePlainFormulaSays)
{
    int crossed = 0;
    const Facet facet { Position { 0, 0, 0 }, Position { 2, 0, 0 }, Position { 0, 2, 0 } };
    const Morpher morpher;
    for (int code = 0; code < 5 * 5 * 5 * 27; ++code) {
        const Position p { code % 5 - 1.0, code / 5 % 5 - 1.0, code / 25 % 5 - 1.0 };
        const int step = code / 125;
        const Position q { p[0] + step % 3 - 1, p[1] + step / 3 % 3 - 1, p[2] + step / 9 - 1 };
        const double expected = Plain::intersect_edge_tri(p, q, facet, kTolerance);
        EXPECT_EQ(morpher.IntersectEdgeTri(p, q, facet[0], facet[1], facet[2]), expected);
        crossed += expected >= 0 ? 1 : 0;
    }
    EXPECT_GT(crossed, 50);
}

} // namespace
