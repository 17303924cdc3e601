// SPDX-License-Identifier: Apache-2.0
#include "geometry/ExactPredicates.h"
#include "geometry/PredicateCounters.h"
#include "geometry/PredicateDetail.h"

#include "tests/geometry/ExactOracle.h"

#include <gtest/gtest.h>

#include <limits>

namespace {

using namespace Tavro;
using PredicateDetail::edge_boxedge_intersection_exists;
using Vec2 = Vector<double, 2>;
using Vec3 = Vector<double, 3>;

constexpr Vec3 kLo { 0, 0, 0 };
constexpr Vec3 kHi { 1, 1, 1 };
constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();

bool meets(const Vec3& t0, const Vec3& t1, const Vec3& t2)
{
    return tri_box_intersection_exists(t0, t1, t2, kLo, kHi);
}

std::uint64_t orientations()
{
    const PredicateCounters& counters = PredicateCounters::OfThisThread();
    return counters.filter + counters.exact + counters.perturbed;
}

Vec3 turned(const Vec3& p, std::size_t by)
{
    return { p[by % 3], p[(by + 1) % 3], p[(by + 2) % 3] };
}

TEST(PointBox, TheBoundaryIsInside)
{
    EXPECT_TRUE(vert_box_intersection_exists(Vec3 { 0, 1, 0.5 }, kLo, kHi));
    EXPECT_TRUE(vert_box_intersection_exists(Vec2 { 0, 1 }, Vec2 { 0, 0 }, Vec2 { 1, 1 }));
}

TEST(PointBox, BeyondAnyFaceIsOutside)
{
    for (std::size_t axis = 0; axis < 3; ++axis) {
        for (const double beyond : { -0.1, 1.1, kNaN }) {
            Vec3 p { 0.5, 0.5, 0.5 };
            p[axis] = beyond;
            EXPECT_FALSE(vert_box_intersection_exists(p, kLo, kHi));
        }
    }
    for (std::size_t axis = 0; axis < 2; ++axis) {
        for (const double beyond : { -0.1, 1.1, kNaN }) {
            Vec2 p { 0.5, 0.5 };
            p[axis] = beyond;
            EXPECT_FALSE(vert_box_intersection_exists(p, Vec2 { 0, 0 }, Vec2 { 1, 1 }));
        }
    }
}

TEST(TriangleBox, AVertexInTheClosedBoxIsEnough)
{
    const Vec3 far { 5, 5, 5 };
    const Vec3 farther { 5, 6, 9 };
    for (const Vec3& in : { Vec3 { 0.5, 0.5, 0.5 }, Vec3 { 1, 1, 1 }, Vec3 { 0, 0.5, 1 } }) {
        EXPECT_TRUE(meets(in, far, farther));
        EXPECT_TRUE(meets(far, in, farther));
        EXPECT_TRUE(meets(farther, far, in));
    }
}

TEST(TriangleBox, StrictlyBeyondAFaceItMisses)
{
    const std::uint64_t before = orientations();
    for (std::size_t axis = 0; axis < 3; ++axis) {
        EXPECT_FALSE(meets(turned({ 1.1, -9, -9 }, axis), turned({ 1.1, 9, -9 }, axis),
            turned({ 1.2, 0, 9 }, axis)));
        EXPECT_FALSE(meets(turned({ -0.1, -9, -9 }, axis), turned({ -0.1, 9, -9 }, axis),
            turned({ -0.2, 0, 9 }, axis)));
    }
    EXPECT_EQ(orientations(), before);
}

TEST(TriangleBox, AnEdgeThroughAFaceIsEnough)
{
    const std::uint64_t before = orientations();
    for (std::size_t axis = 0; axis < 3; ++axis) {
        const Vec3 p = turned({ -1, 0.5, 0.5 }, axis);
        const Vec3 q = turned({ 2, 0.5, 0.5 }, axis);
        const Vec3 r = turned({ 0.5, 9, 9 }, axis);
        EXPECT_TRUE(meets(p, q, r));
        EXPECT_TRUE(meets(r, p, q));
        EXPECT_TRUE(meets(q, r, p));
    }
    EXPECT_EQ(orientations(), before);
}

TEST(TriangleBox, CuttingTheWholeBoxItMeetsADiagonal)
{
    // Large triangles across the middle: no edge comes near the box.
    for (std::size_t axis = 0; axis < 3; ++axis) {
        EXPECT_TRUE(meets(turned({ 0.4, -9, -9 }, axis), turned({ 0.4, 20, -9 }, axis),
            turned({ 0.6, -9, 20 }, axis)));
    }
}

TEST(TriangleBox, CuttingOffACornerItMeetsTheDiagonalOfThatCorner)
{
    // x + y + z = 0.5 within the box leaves only the corner (0, 0, 0) on its other side; mirrored,
    // each of the eight corners in turn.
    for (unsigned int corner = 0; corner < 8; ++corner) {
        Vec3 t[3] { { 10.5, -5, -5 }, { -5, 10.5, -5 }, { -5, -5, 10.5 } };
        for (Vec3& vertex : t) {
            for (std::size_t i = 0; i < 3; ++i) {
                vertex[i] = (corner >> i & 1U) != 0 ? 1.0 - vertex[i] : vertex[i];
            }
        }
        EXPECT_TRUE(meets(t[0], t[1], t[2]));
    }
}

TEST(TriangleBox, PassingBesideACornerItMisses)
{
    // x + y + z = -0.5 and 3.5, in reach of the box on every axis.
    EXPECT_FALSE(meets({ 9.5, -5, -5 }, { -5, 9.5, -5 }, { -5, -5, 9.5 }));
    EXPECT_FALSE(meets({ 13.5, -5, -5 }, { -5, 13.5, -5 }, { -5, -5, 13.5 }));
}

TEST(TriangleBox, AnEdgeThatEndsOnAFacePlaneDoesNotCrossIt)
{
    // The end (0, 2, 0.5) lies on x = 0 outside the face, and so does the rest: by the diagonals.
    EXPECT_FALSE(meets({ 0, 2, 0.5 }, { -3, 0.5, 0.5 }, { -3, 2, 0.5 }));
}

// A triangle in the plane x = `x` around the whole face; no edge of it crosses a face.
bool touches(double x)
{
    const Vec3 t0 { x, -5, -5 };
    const Vec3 t1 { x, 20, -5 };
    const Vec3 t2 { x, -5, 20 };
    const auto s = Testing::ExactOracle<Testing::Whole>::orientation;
    const auto diagonal = [&](const Vec3& p, const Vec3& q) {
        return s(t0, t1, t2, p) != s(t0, t1, t2, q) && s(q, t0, t1, p) == s(q, t1, t2, p)
            && s(q, t1, t2, p) == s(q, t2, t0, p);
    };
    const bool expected = diagonal({ 0, 0, 0 }, { 1, 1, 1 }) || diagonal({ 0, 1, 0 }, { 1, 0, 1 })
        || diagonal({ 1, 1, 0 }, { 0, 0, 1 }) || diagonal({ 1, 0, 0 }, { 0, 1, 1 });
    const std::uint64_t before = PredicateCounters::OfThisThread().perturbed;
    EXPECT_EQ(meets(t0, t1, t2), expected);
    EXPECT_GT(PredicateCounters::OfThisThread().perturbed, before);
    return expected;
}

TEST(TriangleBox, TouchingAlongAFaceItIsDecidedByThePerturbation)
{
    // Both sides of the face cannot miss it: a corner of it has moved to one or the other.
    EXPECT_TRUE(touches(0) || touches(1));
}

TEST(TriangleBox, WithNaNItGetsAnAnswer)
{
    EXPECT_FALSE(meets({ kNaN, kNaN, kNaN }, { 5, 5, 5 }, { 6, 5, 5 }));
}

bool edge_meets(const Vec2& p, const Vec2& q)
{
    const bool result = edge_box_intersection_exists(p, q, { 0, 0 }, { 1, 1 });
    EXPECT_EQ(edge_box_intersection_exists(q, p, { 0, 0 }, { 1, 1 }), result);
    return result;
}

TEST(EdgeBox, StrictlyBeyondASideItMisses)
{
    EXPECT_FALSE(edge_meets({ 1.1, -5 }, { 1.2, 5 }));
    EXPECT_FALSE(edge_meets({ -1.1, -5 }, { -1.2, 5 }));
    EXPECT_FALSE(edge_meets({ -5, 1.1 }, { 5, 1.2 }));
    EXPECT_FALSE(edge_meets({ -5, -1.1 }, { 5, -1.2 }));
}

TEST(EdgeBox, AnEndInTheClosedBoxIsEnough)
{
    EXPECT_TRUE(edge_meets({ 0.5, 0.5 }, { 9, 7 }));
    EXPECT_TRUE(edge_meets({ 1, 1 }, { 9, 7 }));
    EXPECT_TRUE(edge_meets({ 0, 0.5 }, { -9, 7 }));
}

TEST(EdgeBox, AcrossAnySideItMeets)
{
    EXPECT_TRUE(edge_meets({ 0.3, -1 }, { 0.6, 2 })); // bottom and top
    EXPECT_TRUE(edge_meets({ -1, 0.3 }, { 2, 0.6 })); // left and right
    EXPECT_TRUE(edge_meets({ 0.9, -0.1 }, { 1.1, 0.1 })); // exactly through a corner
    EXPECT_TRUE(edge_meets({ -0.5, 0.4 }, { 0.6, 1.5 })); // left and top
}

TEST(EdgeBox, PassingACornerItMisses)
{
    EXPECT_FALSE(edge_meets({ 0.9, -0.2 }, { 1.2, 0.1 }));
    EXPECT_FALSE(edge_meets({ -0.2, 0.9 }, { 0.1, 1.2 }));
}

TEST(EdgeBox, ASegmentAlongASideMeets)
{
    EXPECT_TRUE(edge_meets({ -1, 0 }, { 2, 0 }));
    EXPECT_TRUE(edge_meets({ -1, 1 }, { 2, 1 }));
    EXPECT_TRUE(edge_meets({ 0, -1 }, { 0, 2 }));
    EXPECT_TRUE(edge_meets({ 1, -1 }, { 1, 2 }));
}

TEST(EdgeBox, OneOfFourSidesIsEnough)
{
    // Boxes without width or height leave one pair of sides.
    EXPECT_TRUE(edge_box_intersection_exists({ -1, -1 }, { 1, 1 }, { 0, -5 }, { 0, 5 }));
    EXPECT_TRUE(edge_box_intersection_exists({ -1, -1 }, { 1, 1 }, { -5, 0 }, { 5, 0 }));
    EXPECT_FALSE(edge_box_intersection_exists({ 3, -5 }, { 4, 5 }, { -5, 0 }, { 2, 0 }));
}

TEST(BoxSide, OneThatIsNotParallelToAnAxisIsNotMet)
{
    EXPECT_FALSE(edge_boxedge_intersection_exists({ 0, 1 }, { 1, 0 }, { 0, 0 }, { 1, 1 }));
}

TEST(BoxSide, ItsFixedAxisIsXIfBothEndsShareIt)
{
    EXPECT_TRUE(edge_boxedge_intersection_exists({ -1, 0.5 }, { 1, 0.5 }, { 0, 0 }, { 0, 1 }));
    EXPECT_TRUE(edge_boxedge_intersection_exists({ 0.5, -1 }, { 0.5, 1 }, { 0, 0 }, { 1, 0 }));
    // A side that is one point is taken for one across x.
    EXPECT_TRUE(edge_boxedge_intersection_exists({ -1, 0 }, { 1, 0 }, { 0, 0 }, { 0, 0 }));
    EXPECT_TRUE(edge_boxedge_intersection_exists({ 0, -1 }, { 0, 1 }, { 0, 0 }, { 0, 0 }));
}

TEST(BoxSide, BothEndsOnOneSideOfItMiss)
{
    EXPECT_FALSE(edge_boxedge_intersection_exists({ -2, 0.5 }, { -1, 0.5 }, { 0, 0 }, { 0, 1 }));
    EXPECT_FALSE(edge_boxedge_intersection_exists({ 2, 0.5 }, { 1, 0.5 }, { 0, 0 }, { 0, 1 }));
}

TEST(BoxSide, BothEndsBeyondTheSameEndOfItMiss)
{
    EXPECT_FALSE(edge_boxedge_intersection_exists({ -1, 2 }, { 1, 3 }, { 0, 0 }, { 0, 1 }));
    EXPECT_FALSE(edge_boxedge_intersection_exists({ -1, 2 }, { 1, 3 }, { 0, 1 }, { 0, 0 }));
    EXPECT_FALSE(edge_boxedge_intersection_exists({ -1, -2 }, { 1, -3 }, { 0, 0 }, { 0, 1 }));
    // Along the side's own line as well.
    EXPECT_FALSE(edge_boxedge_intersection_exists({ 0, 2 }, { 0, 3 }, { 0, 0 }, { 0, 1 }));
}

TEST(BoxSide, ASegmentAlongItMeetsOnceItIsWithinReach)
{
    EXPECT_TRUE(edge_boxedge_intersection_exists({ 0, -2 }, { 0, 3 }, { 0, 0 }, { 0, 1 }));
    EXPECT_TRUE(edge_boxedge_intersection_exists({ 0, 0.2 }, { 0, 0.3 }, { 0, 0 }, { 0, 1 }));
    EXPECT_TRUE(edge_boxedge_intersection_exists({ 0, 1 }, { 0, 3 }, { 0, 0 }, { 0, 1 }));
}

TEST(BoxSide, AnEndOnItIsTheCrossingPoint)
{
    EXPECT_TRUE(edge_boxedge_intersection_exists({ 0, 1 }, { 5, 7 }, { 0, 0 }, { 0, 1 }));
    EXPECT_TRUE(edge_boxedge_intersection_exists({ 5, 7 }, { 0, 1 }, { 0, 0 }, { 0, 1 }));
    EXPECT_FALSE(edge_boxedge_intersection_exists({ 0, 2 }, { 5, 0 }, { 0, 0 }, { 0, 1 }));
    EXPECT_FALSE(edge_boxedge_intersection_exists({ 5, 0 }, { 0, 2 }, { 0, 0 }, { 0, 1 }));
    // It is taken as it is, where the way from one end to the other would overflow.
    EXPECT_TRUE(
        edge_boxedge_intersection_exists({ 0, -1e308 }, { 5, 1.7e308 }, { 0, -1.5e308 }, { 0, 1 }));
    EXPECT_TRUE(
        edge_boxedge_intersection_exists({ 5, 1.7e308 }, { 0, -1e308 }, { 0, -1.5e308 }, { 0, 1 }));
}

TEST(BoxSide, TheCrossingPointLiesBetweenItsEndsInEitherOrder)
{
    EXPECT_TRUE(edge_boxedge_intersection_exists({ -1, 0 }, { 1, 2 }, { 0, 0 }, { 0, 1 }));
    EXPECT_TRUE(edge_boxedge_intersection_exists({ -1, 0 }, { 1, 2 }, { 0, 1 }, { 0, 0 }));
    EXPECT_FALSE(edge_boxedge_intersection_exists({ -1, 0.5 }, { 1, 2.5 }, { 0, 0 }, { 0, 1 }));
    EXPECT_FALSE(edge_boxedge_intersection_exists({ -1, 0.5 }, { 1, 2.5 }, { 0, 1 }, { 0, 0 }));
}

TEST(IntersectionExists, AnEdgeAndABoxInEitherOrder)
{
    const BoundingBox<double, 2> box { { 0, 0 }, { 1, 1 } };
    const Edge<double, 2> in { Vec2 { -1, 0.5 }, Vec2 { 2, 0.5 } };
    const Edge<double, 2> out { Vec2 { -1, 1.5 }, Vec2 { 2, 1.5 } };
    EXPECT_TRUE(IntersectionExists(in, box));
    EXPECT_TRUE(IntersectionExists(box, in));
    EXPECT_FALSE(IntersectionExists(out, box));
    EXPECT_FALSE(IntersectionExists(box, out));
}

TEST(IntersectionExists, AFacetAndABoxInEitherOrder)
{
    const BoundingBox<double, 3> box { kLo, kHi };
    const Facet<double, 3, 3> in { Vec3 { 0.5, 0.5, 0.5 }, Vec3 { 5, 5, 5 }, Vec3 { 5, 6, 5 } };
    const Facet<double, 3, 3> out { Vec3 { 4, 4, 4 }, Vec3 { 5, 5, 5 }, Vec3 { 5, 6, 5 } };
    EXPECT_TRUE(IntersectionExists(in, box));
    EXPECT_TRUE(IntersectionExists(box, in));
    EXPECT_FALSE(IntersectionExists(out, box));
    EXPECT_FALSE(IntersectionExists(box, out));
}

TEST(IntersectionExists, TouchingBoxesIntersect)
{
    const BoundingBox<double, 3> box { kLo, kHi };
    const BoundingBox<double, 2> square { { 0, 0 }, { 1, 1 } };
    EXPECT_TRUE(IntersectionExists(box, BoundingBox<double, 3> { { 1, 1, 1 }, { 2, 2, 2 } }));
    EXPECT_TRUE(IntersectionExists(square, BoundingBox<double, 2> { { -1, -1 }, { 0, 0 } }));
    for (std::size_t axis = 0; axis < 3; ++axis) {
        BoundingBox<double, 3> apart { { 0.5, 0.5, 0.5 }, { 2, 2, 2 } };
        apart.m_vMin[axis] = 1.25;
        EXPECT_FALSE(IntersectionExists(box, apart));
        EXPECT_FALSE(IntersectionExists(apart, box));
    }
    for (std::size_t axis = 0; axis < 2; ++axis) {
        BoundingBox<double, 2> apart { { 0.5, 0.5 }, { 2, 2 } };
        apart.m_vMin[axis] = 1.25;
        EXPECT_FALSE(IntersectionExists(square, apart));
        EXPECT_FALSE(IntersectionExists(apart, square));
    }
}

TEST(IntersectionExists, ABoxHoldsThePointsOfItsBoundary)
{
    const BoundingBox<double, 3> box { kLo, kHi };
    const BoundingBox<double, 2> square { { 0, 0 }, { 1, 1 } };
    EXPECT_TRUE(IntersectionExists(Vec3 { 1, 0, 1 }, box));
    EXPECT_FALSE(IntersectionExists(Vec3 { 1, 0, 1.5 }, box));
    EXPECT_TRUE(IntersectionExists(Vec2 { 1, 0 }, square));
    EXPECT_FALSE(IntersectionExists(Vec2 { 1, -0.5 }, square));
}

} // namespace
