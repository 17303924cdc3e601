// SPDX-License-Identifier: Apache-2.0
#include "geometry/ExactPredicates.h"
#include "geometry/PredicateCounters.h"

#include <gtest/gtest.h>

#include <array>

namespace {

using namespace Tavro;
using Vec2 = Vector<double, 2>;
using Vec3 = Vector<double, 3>;

// The lower left half of a square, in the plane z = 0.
constexpr Vec3 kT0 { 0, 0, 0 };
constexpr Vec3 kT1 { 4, 0, 0 };
constexpr Vec3 kT2 { 0, 4, 0 };

std::uint64_t evaluations()
{
    const PredicateCounters& counters = PredicateCounters::OfThisThread();
    return counters.filter + counters.exact + counters.perturbed;
}

bool edge_crosses(const Vec3& e0, const Vec3& e1)
{
    const bool crosses = sos_edge_tri_intersection_exists(e0, e1, kT0, kT1, kT2);
    // Neither the direction of the edge nor the winding of the triangle matters.
    EXPECT_EQ(sos_edge_tri_intersection_exists(e1, e0, kT0, kT1, kT2), crosses);
    EXPECT_EQ(sos_edge_tri_intersection_exists(e0, e1, kT0, kT2, kT1), crosses);
    EXPECT_EQ(sos_edge_tri_intersection_exists(e0, e1, kT1, kT2, kT0), crosses);
    return crosses;
}

TEST(LineTriangle, ALineThroughTheInsideCrosses)
{
    EXPECT_TRUE(sos_line_tri_intersection_exists({ 1, 1, -1 }, { 1, 1, 1 }, kT0, kT1, kT2));
    EXPECT_TRUE(sos_line_tri_intersection_exists({ 1, 1, 1 }, { 1, 1, -1 }, kT0, kT1, kT2));
}

TEST(LineTriangle, ItGoesOnBeyondItsPoints)
{
    EXPECT_TRUE(sos_line_tri_intersection_exists({ 1, 1, 1 }, { 1, 1, 2 }, kT0, kT1, kT2));
}

TEST(LineTriangle, ALineBesideAnEdgeMisses)
{
    EXPECT_FALSE(sos_line_tri_intersection_exists({ 3, 3, -1 }, { 3, 3, 1 }, kT0, kT1, kT2));
    EXPECT_FALSE(sos_line_tri_intersection_exists({ -1, 1, -1 }, { -1, 1, 1 }, kT0, kT1, kT2));
    EXPECT_FALSE(sos_line_tri_intersection_exists({ 1, -1, -1 }, { 1, -1, 1 }, kT0, kT1, kT2));
}

TEST(EdgePlane, EndsOnOppositeSidesCrossAnywhere)
{
    EXPECT_TRUE(sos_edge_plane_intersection_exists({ 9, 9, -1 }, { 9, 9, 1 }, kT0, kT1, kT2));
    EXPECT_FALSE(sos_edge_plane_intersection_exists({ 9, 9, 2 }, { 9, 9, 1 }, kT0, kT1, kT2));
}

TEST(EdgeTriangle, AnEdgeThroughTheInsideCrosses)
{
    EXPECT_TRUE(edge_crosses({ 1, 1, -1 }, { 1, 1, 1 }));
}

TEST(EdgeTriangle, AnEdgeBesideTheTriangleMisses)
{
    EXPECT_FALSE(edge_crosses({ 3, 3, -1 }, { 3, 3, 1 }));
}

TEST(EdgeTriangle, WithBothEndsOnOneSideOnlyTheTwoPlaneTestsRun)
{
    const std::uint64_t before = evaluations();
    EXPECT_FALSE(sos_edge_tri_intersection_exists({ 1, 1, 1 }, { 1, 1, 2 }, kT0, kT1, kT2));
    EXPECT_EQ(evaluations() - before, 2U);
    EXPECT_TRUE(sos_edge_tri_intersection_exists({ 1, 1, 1 }, { 1, 1, -2 }, kT0, kT1, kT2));
    EXPECT_EQ(evaluations() - before, 7U);
}

TEST(EdgeTriangle, AnEndInThePlaneBelongsToOneSide)
{
    // Of two edges that meet in the plane within the triangle, one crosses it.
    for (const Vec3& meeting : { Vec3 { 1, 1, 0 }, Vec3 { 0.1, 0.2, 0.0 } }) {
        const bool fromBelow = edge_crosses({ 1, 1, -1 }, meeting);
        const bool fromAbove = edge_crosses({ 1, 1, 1 }, meeting);
        EXPECT_NE(fromBelow, fromAbove);
        EXPECT_EQ(edge_crosses({ 1, 1, -1 }, meeting), fromBelow);
    }
}

TEST(EdgeTriangle, ThroughASharedEdgeItCrossesOneOfTheTwo)
{
    // The other half of the square, with the same winding.
    const Vec3 far { 4, 4, 0 };
    const Vec3 below { 2, 2, -1 };
    const Vec3 above { 2, 2, 1 };
    EXPECT_NE(sos_edge_tri_intersection_exists(below, above, kT0, kT1, kT2),
        sos_edge_tri_intersection_exists(below, above, kT1, far, kT2));
}

TEST(EdgeTriangle, ThroughASharedVertexItCrossesOneOfTheFan)
{
    const std::array<Vec3, 4> rim { Vec3 { 1, 0, 0 }, Vec3 { 0, 1, 0 }, Vec3 { -1, 0, 0 },
        Vec3 { 0, -1, 0 } };
    int crossed = 0;
    for (std::size_t i = 0; i < 4; ++i) {
        crossed += sos_edge_tri_intersection_exists(
                       { 0, 0, -1 }, { 0, 0, 1 }, { 0, 0, 0 }, rim[i], rim[(i + 1) % 4])
            ? 1
            : 0;
    }
    EXPECT_EQ(crossed, 1);
}

class TriangleTriangle : public testing::TestWithParam<std::size_t> {
protected:
    // A triangle whose vertex GetParam() pokes through (1, 1, 0), with the others above it.
    [[nodiscard]] static std::array<Vec3, 3> poking()
    {
        std::array<Vec3, 3> triangle { Vec3 { 1, 0.5, 3 }, Vec3 { 1, 1.5, 3 }, Vec3 { 1, 1, 4 } };
        triangle[GetParam()] = { 1, 1, -1 };
        return triangle;
    }
};

TEST_P(TriangleTriangle, AVertexThroughTheOtherTriangleIsFoundFromEitherSide)
{
    const auto [p0, p1, p2] = poking();
    EXPECT_TRUE(sos_tri_tri_intersection_exists(p0, p1, p2, kT0, kT1, kT2));
    EXPECT_TRUE(sos_tri_tri_intersection_exists(kT0, kT1, kT2, p0, p1, p2));
}

TEST_P(TriangleTriangle, AVertexBesideTheOtherTriangleMisses)
{
    auto triangle = poking();
    for (Vec3& vertex : triangle) {
        vertex[0] += 3.0;
    }
    EXPECT_FALSE(
        sos_tri_tri_intersection_exists(triangle[0], triangle[1], triangle[2], kT0, kT1, kT2));
}

INSTANTIATE_TEST_SUITE_P(ByVertex, TriangleTriangle, testing::Values(0U, 1U, 2U));

TEST(TriangleTriangle, OneEdgeOfEachIsEnough)
{
    // Two triangles like links of a chain: the edge a2a0 crosses b, and an edge of b crosses a.
    const Vec3 a0 { 1, 1, -1 };
    const Vec3 a1 { 9, 1, 0.5 };
    const Vec3 a2 { 1, 1, 1 };
    EXPECT_TRUE(sos_tri_tri_intersection_exists(a0, a1, a2, kT0, kT1, kT2));
    EXPECT_TRUE(sos_tri_tri_intersection_exists(kT0, kT1, kT2, a0, a1, a2));
}

TEST(PointTriangle, TheInsideIsInWhateverTheWinding)
{
    EXPECT_TRUE(sos_point_tri_intersection_exists({ 1, 1 }, { 0, 0 }, { 4, 0 }, { 0, 4 }));
    EXPECT_TRUE(sos_point_tri_intersection_exists({ 1, 1 }, { 0, 0 }, { 0, 4 }, { 4, 0 }));
    EXPECT_FALSE(sos_point_tri_intersection_exists({ 3, 3 }, { 0, 0 }, { 4, 0 }, { 0, 4 }));
    EXPECT_FALSE(sos_point_tri_intersection_exists({ -1, 1 }, { 0, 0 }, { 4, 0 }, { 0, 4 }));
}

TEST(PointTriangle, APointOnASharedEdgeIsInOneOfTheTwo)
{
    for (const Vec2& p : { Vec2 { 2, 2 }, Vec2 { 1, 3 }, Vec2 { 3.5, 0.5 } }) {
        EXPECT_NE(sos_point_tri_intersection_exists(p, { 0, 0 }, { 4, 0 }, { 0, 4 }),
            sos_point_tri_intersection_exists(p, { 4, 4 }, { 0, 4 }, { 4, 0 }));
    }
}

bool edges_cross(const Vec2& a, const Vec2& b, const Vec2& c, const Vec2& d)
{
    const bool cross = sos_edge_edge_intersection_exists(a, b, c, d);
    EXPECT_EQ(sos_edge_edge_intersection_exists(b, a, c, d), cross);
    EXPECT_EQ(sos_edge_edge_intersection_exists(a, b, d, c), cross);
    return cross;
}

TEST(EdgeEdge, CrossingEdgesMeet)
{
    EXPECT_TRUE(edges_cross({ 0, 0 }, { 2, 2 }, { 0, 2 }, { 2, 0 }));
}

TEST(EdgeEdge, BothEndsOfOneBesideTheOtherMiss)
{
    EXPECT_FALSE(edges_cross({ 0, 0 }, { 2, 2 }, { 3, 0 }, { 2, 1 })); // c and d on one side
    EXPECT_FALSE(edges_cross({ 3, 0 }, { 2, 1 }, { 0, 0 }, { 2, 2 })); // a and b on one side
}

TEST(EdgeEdge, OneOfTwoEdgesThatMeetOnAnotherCrossesIt)
{
    const Vec2 meeting { 1, 1 };
    EXPECT_NE(edges_cross({ 0, 0 }, { 2, 2 }, { 0, 2 }, meeting),
        edges_cross({ 0, 0 }, { 2, 2 }, { 2, 0 }, meeting));
}

} // namespace
