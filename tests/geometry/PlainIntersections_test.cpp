// SPDX-License-Identifier: Apache-2.0
#include "geometry/ExactPredicates.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

namespace {

using namespace Tavro;
using Vec2 = Vector<double, 2>;
using Vec3 = Vector<double, 3>;

constexpr Vec3 kA { 0, 0, 0 };
constexpr Vec3 kB { 4, 0, 0 };
constexpr Vec3 kC { 0, 4, 0 };

TEST(LinePlane, TheParameterRunsFromTheFirstPointToTheSecond)
{
    EXPECT_EQ(fast_line_plane_intersect({ 9, 9, 1 }, { 9, 9, -3 }, kA, kB, kC), 0.25);
    EXPECT_EQ(fast_line_plane_intersect({ 9, 9, 1 }, { 9, 9, 2 }, kA, kB, kC), -1.0);
    EXPECT_EQ(fast_line_plane_intersect({ 9, 9, 4 }, { 9, 9, 3 }, kA, kB, kC), 4.0);
}

TEST(LinePlane, AParallelLineGivesTheLargestDouble)
{
    EXPECT_EQ(fast_line_plane_intersect({ 0, 0, 1 }, { 5, 3, 1 }, kA, kB, kC),
        std::numeric_limits<double>::max());
}

TEST(LinePlane, OnlyALineThatIsExactlyParallelHasNone)
{
    // It rises by 2^-1060 over its length, from within the plane and from 2^-1059 below it.
    EXPECT_EQ(fast_line_plane_intersect({ 0, 0, 0 }, { 1, 0, 0x1p-1060 }, kA, kB, kC), 0.0);
    EXPECT_EQ(
        fast_line_plane_intersect({ 0, 0, -0x1p-1059 }, { 1, 0, -0x1p-1060 }, kA, kB, kC), 2.0);
}

TEST(LinePlane, APlaneOfCollinearPointsGivesNaN)
{
    EXPECT_TRUE(std::isnan(fast_line_plane_intersect({ 0, 0, 1 }, { 0, 0, 0 }, kA, kB, kB)));
}

TEST(LineTriangleFast, TheParameterIsThatOfThePlane)
{
    double t = 7.0;
    EXPECT_TRUE(fast_line_tri_intersect({ 1, 1, 1 }, { 1, 1, -3 }, kA, kB, kC, t));
    EXPECT_EQ(t, 0.25);
    EXPECT_TRUE(fast_line_tri_intersect({ 1, 1, 1 }, { 1, 1, 2 }, kA, kC, kB, t));
    EXPECT_EQ(t, -1.0);
}

TEST(LineTriangleFast, TheBoundaryCountsAsInside)
{
    double t = 0.0;
    EXPECT_TRUE(fast_line_tri_intersect({ 2, 0, 1 }, { 2, 0, -1 }, kA, kB, kC, t));
    EXPECT_TRUE(fast_line_tri_intersect({ 2, 2, 1 }, { 2, 2, -1 }, kA, kB, kC, t));
    EXPECT_TRUE(fast_line_tri_intersect({ 0, 2, 1 }, { 0, 2, -1 }, kA, kB, kC, t));
    EXPECT_TRUE(fast_line_tri_intersect({ 0, 4, 1 }, { 0, 4, -1 }, kA, kB, kC, t));
}

TEST(LineTriangleFast, OutsideAnyEdgeTheParameterStaysAsItWas)
{
    double t = 7.0;
    EXPECT_FALSE(fast_line_tri_intersect({ 2, -1, 1 }, { 2, -1, -1 }, kA, kB, kC, t));
    EXPECT_FALSE(fast_line_tri_intersect({ 3, 3, 1 }, { 3, 3, -1 }, kA, kB, kC, t));
    EXPECT_FALSE(fast_line_tri_intersect({ -1, 2, 1 }, { -1, 2, -1 }, kA, kB, kC, t));
    EXPECT_EQ(t, 7.0);
}

TEST(LineTriangleFast, AParallelLineMisses)
{
    double t = 7.0;
    EXPECT_FALSE(fast_line_tri_intersect({ 1, 1, 0 }, { 2, 1, 0 }, kA, kB, kC, t));
    EXPECT_EQ(t, 7.0);
}

TEST(LineTriangleFast, ATriangleWithoutAreaIsMissed)
{
    double t = 7.0;
    EXPECT_FALSE(fast_line_tri_intersect({ 1, 0, 1 }, { 1, 0, -1 }, kA, kB, kB, t));
    EXPECT_EQ(t, 7.0);
}

TEST(LineLine, MeetsBeyondThePointsThatGiveTheLines)
{
    Vec2 out { 7, 7 };
    // y = x and y = 6 - x
    EXPECT_TRUE(fast_line_line_intersect({ 0, 0 }, { 1, 1 }, { 6, 0 }, { 5, 1 }, out));
    EXPECT_EQ(out[0], 3.0);
    EXPECT_EQ(out[1], 3.0);
    // x = 2 and y = 5
    EXPECT_TRUE(fast_line_line_intersect({ 2, 0 }, { 2, 1 }, { 0, 5 }, { 1, 5 }, out));
    EXPECT_EQ(out[0], 2.0);
    EXPECT_EQ(out[1], 5.0);
}

TEST(LineLine, ParallelLinesLeaveTheResultAsItWas)
{
    Vec2 out { 7, 8 };
    EXPECT_FALSE(fast_line_line_intersect({ 0, 0 }, { 1, 1 }, { 1, 0 }, { 2, 1 }, out));
    EXPECT_EQ(out[0], 7.0);
    EXPECT_EQ(out[1], 8.0);
}

TEST(LineLine, TheResultMayBeOneOfThePoints)
{
    Vec2 point { 0, 0 };
    EXPECT_TRUE(fast_line_line_intersect(point, { 1, 1 }, { 6, 0 }, { 5, 1 }, point));
    EXPECT_EQ(point[0], 3.0);
    EXPECT_EQ(point[1], 3.0);
}

class CartPlane : public testing::TestWithParam<unsigned int> {
protected:
    [[nodiscard]] static Vec3 at(double value)
    {
        Vec3 p { 8, 8, 8 };
        p[GetParam()] = value;
        return p;
    }
    // -1 if the segment from `p` to `q` does not meet the plane at `value`.
    [[nodiscard]] static double met(double value, double p, double q)
    {
        double t = -1.0;
        const bool meets = LineCartPlaneIntersection(GetParam(), value, at(p), at(q), t);
        EXPECT_EQ(meets, t != -1.0);
        return t;
    }
};

TEST_P(CartPlane, ASegmentWithinAPlaneOfTheAxisMisses) { EXPECT_EQ(met(2, 2, 2), -1.0); }

TEST_P(CartPlane, AValueStrictlyBeyondBothEndsMisses)
{
    EXPECT_EQ(met(1, 2, 3), -1.0);
    EXPECT_EQ(met(4, 2, 3), -1.0);
    EXPECT_EQ(met(4, 3, 2), -1.0);
}

TEST_P(CartPlane, TheStartGivesZeroEvenIfTheSegmentGoesOn)
{
    EXPECT_EQ(met(2, 2, 6), 0.0);
    EXPECT_EQ(met(6, 6, 2), 0.0);
}

TEST_P(CartPlane, TheEndGivesOne)
{
    EXPECT_EQ(met(6, 2, 6), 1.0);
    EXPECT_EQ(met(2, 6, 2), 1.0);
}

TEST_P(CartPlane, BetweenThemItIsTheShareOfTheWay)
{
    EXPECT_EQ(met(3, 2, 6), 0.25);
    EXPECT_EQ(met(3, 6, 2), 0.75);
}

INSTANTIATE_TEST_SUITE_P(ByAxis, CartPlane, testing::Values(0U, 1U, 2U));

TEST(CartPlaneAxis, AnAxisThatThereIsNotMisses)
{
    double t = -1.0;
    EXPECT_FALSE(LineCartPlaneIntersection(3, 0.5, { 0, 0, 0 }, { 1, 1, 1 }, t));
    EXPECT_EQ(t, -1.0);
}

struct Circles {
    bool meet = false;
    Vec2 out1 { 7, 7 };
    Vec2 out2 { 7, 7 };
};

Circles circles(const Vec2& c1, const Vec2& c2, double r1, double r2)
{
    Circles result;
    result.meet = CircleCircleIntersection(c1, c2, r1, r2, result.out1, result.out2);
    return result;
}

TEST(CircleCircle, MeetInTwoPoints)
{
    // H = (5 + 5 + 6)(5 + 6 - 5)(6 - 5 + 5)(5 - 6 + 5) = 16 * 6 * 6 * 4
    // = 48^2, K = 24, and 6 * 24 / 36 = 4.
    const Circles equal = circles({ 0, 0 }, { 6, 0 }, 5, 5);
    EXPECT_TRUE(equal.meet);
    EXPECT_EQ(equal.out1[0], 3.0);
    EXPECT_EQ(equal.out1[1], 4.0);
    EXPECT_EQ(equal.out2[0], 3.0);
    EXPECT_EQ(equal.out2[1], -4.0);
}

TEST(CircleCircle, TheAxisShiftsTowardsTheSmallerCircle)
{
    // Centres 14 apart on y, radii 13 and 15: x = +-12, 5 above the first centre.
    const Circles unequal = circles({ 1, 2 }, { 1, 16 }, 13, 15);
    EXPECT_TRUE(unequal.meet);
    EXPECT_EQ(unequal.out1[0], -11.0);
    EXPECT_EQ(unequal.out1[1], 7.0);
    EXPECT_EQ(unequal.out2[0], 13.0);
    EXPECT_EQ(unequal.out2[1], 7.0);
}

TEST(CircleCircle, TouchingFromOutsideGivesThePointTwice)
{
    const Circles touching = circles({ 0, 0 }, { 3, 0 }, 1, 2);
    EXPECT_TRUE(touching.meet);
    EXPECT_EQ(touching.out1[0], 1.0);
    EXPECT_EQ(touching.out1[1], 0.0);
    EXPECT_EQ(touching.out2[0], 1.0);
    EXPECT_EQ(touching.out2[1], 0.0);
}

TEST(CircleCircle, TouchingFromInsideGivesThePointTwice)
{
    const Circles touching = circles({ 0, 0 }, { 1, 0 }, 3, 2);
    EXPECT_TRUE(touching.meet);
    EXPECT_EQ(touching.out1[0], 3.0);
    EXPECT_EQ(touching.out2[0], 3.0);
}

TEST(CircleCircle, ApartOrWithinTheResultsStayAsTheyWere)
{
    for (const Circles& none :
        { circles({ 0, 0 }, { 9, 0 }, 1, 2), circles({ 0, 0 }, { 1, 0 }, 9, 2) }) {
        EXPECT_FALSE(none.meet);
        EXPECT_EQ(none.out1[0], 7.0);
        EXPECT_EQ(none.out2[1], 7.0);
    }
}

TEST(CircleCircle, AboutOneCentreThePointsAreNaN)
{
    const Circles same = circles({ 1, 1 }, { 1, 1 }, 2, 2);
    EXPECT_TRUE(same.meet);
    EXPECT_TRUE(std::isnan(same.out1[0]));
    EXPECT_FALSE(circles({ 1, 1 }, { 1, 1 }, 2, 3).meet);
}

} // namespace
