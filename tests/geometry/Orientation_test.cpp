// SPDX-License-Identifier: Apache-2.0
#include "geometry/ExactPredicates.h"
#include "geometry/PredicateCounters.h"

#include "tests/geometry/Allocations.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <limits>
#include <thread>

namespace {

using Point = Tavro::Vector<double, 3>;
using Tavro::PredicateCounters;
using Tavro::sos_tetrahedron_volume_sign;

class Orientation : public testing::Test {
protected:
    Orientation() { PredicateCounters::OfThisThread() = {}; }
    [[nodiscard]] static const PredicateCounters& counters()
    {
        return PredicateCounters::OfThisThread();
    }

    const Point m_origin { 0, 0, 0 };
    const Point m_x { 1, 0, 0 };
    const Point m_y { 0, 1, 0 };
    const Point m_z { 0, 0, 1 };
    const Point m_xy { 1, 1, 0 };
};

// Of four points that differ, in every order: the sign of an order follows its parity.
void expect_exchanges_to_invert(const std::array<Point, 4>& points)
{
    const bool first = sos_tetrahedron_volume_sign(points[0], points[1], points[2], points[3]);
    std::array<std::size_t, 4> order { 0, 1, 2, 3 };
    do {
        bool odd = false;
        for (std::size_t i = 0; i < 4; ++i) {
            for (std::size_t j = i + 1; j < 4; ++j) {
                odd = odd != (order[i] > order[j]);
            }
        }
        EXPECT_EQ(sos_tetrahedron_volume_sign(
                      points[order[0]], points[order[1]], points[order[2]], points[order[3]]),
            first != odd);
    } while (std::next_permutation(order.begin(), order.end()));
}

TEST_F(Orientation, APositiveVolumeIsTrueAndPassesTheFilter)
{
    EXPECT_TRUE(sos_tetrahedron_volume_sign(m_x, m_y, m_z, m_origin));
    EXPECT_FALSE(sos_tetrahedron_volume_sign(m_y, m_x, m_z, m_origin));
    EXPECT_EQ(counters().filter, 2U);
    EXPECT_EQ(counters().exact, 0U);
    EXPECT_EQ(counters().perturbed, 0U);
}

TEST_F(Orientation, TheFilterHoldsBackWhatItsLiteralCovers)
{
    // a = (1, 0, 0): the determinant is b.y c.z - b.z c.y, the permanent their sum. 7 against 2^53
    // - 1 lies above the bound of the error analysis, but below 7.77157e-16.
    const Point c { 0, 1, 1 };
    EXPECT_TRUE(sos_tetrahedron_volume_sign(m_x, { 0, 0x1p52 + 3.0, 0x1p52 - 4.0 }, c, m_origin));
    EXPECT_EQ(counters().exact, 1U);
    // 8 against 2^53
    EXPECT_TRUE(sos_tetrahedron_volume_sign(m_x, { 0, 0x1p52 + 4.0, 0x1p52 - 4.0 }, c, m_origin));
    EXPECT_EQ(counters().filter, 1U);
    EXPECT_EQ(counters().exact, 1U);
}

TEST_F(Orientation, AVolumeOfOneAmongLargeCoordinatesIsExact)
{
    // c = a + b + (0, 0, 1): the determinant is N N - (N + 1)(N - 1) = 1, the permanent above 2^66.
    constexpr double n = 0x1p22;
    const Point a { n, n + 1, n };
    const Point b { n - 1, n, -n };
    const Point c { 2 * n - 1, 2 * n + 1, 1 };
    EXPECT_TRUE(sos_tetrahedron_volume_sign(a, b, c, m_origin));
    EXPECT_EQ(counters().exact, 1U);
    expect_exchanges_to_invert({ a, b, c, m_origin });
    EXPECT_EQ(counters().filter, 0U);
    EXPECT_EQ(counters().perturbed, 0U);
}

TEST_F(Orientation, DifferencesAreTakenExactly)
{
    // a, b and c lie on z = x, d is t above it: the volume is -t times twice the area of a, b, c in
    // xy, which is negative. As doubles, the differences of z lose t.
    constexpr double far = 0x1p30;
    constexpr double t = 0x1p-26;
    const Point a { far, 0, far };
    const Point b { -far, far, -far };
    const Point c { far, far, far };
    EXPECT_TRUE(sos_tetrahedron_volume_sign(a, b, c, { 1, 1, 1 + t }));
    EXPECT_FALSE(sos_tetrahedron_volume_sign(a, b, c, { 1, 1, 1 - t }));
    EXPECT_EQ(counters().exact, 2U);
    EXPECT_EQ(Tavro::fast_tetrahedron_volume_sign(a, b, c, { 1, 1, 1 + t }), 0);
}

TEST_F(Orientation, CoplanarPointsGetTheSignOfTheirPerturbation)
{
    // One swap gives (0,0) (0,1) (1,0) (1,1); step 1 of the last three is (0-1)(0-1) - 0 = 1, true,
    // which the odd swap inverts.
    EXPECT_FALSE(sos_tetrahedron_volume_sign(m_origin, m_x, m_y, m_xy));
    EXPECT_EQ(counters().perturbed, 1U);
    EXPECT_EQ(counters().byTerm[0], 1U);
    EXPECT_EQ(counters().filter + counters().exact, 0U);
}

TEST_F(Orientation, ExchangingTwoCoplanarPointsInverts)
{
    expect_exchanges_to_invert({ m_origin, m_x, m_y, m_xy });
    expect_exchanges_to_invert({ m_origin, m_y, m_z, Point { 0, 5, 3 } });
    expect_exchanges_to_invert({ Point { 1, 2, 3 }, Point { 2, 4, 6 }, Point { 3, 6, 9 }, m_xy });
    expect_exchanges_to_invert({ m_origin, m_x, Point { 2, 0, 0 }, Point { 5, 0, 0 } });
    expect_exchanges_to_invert({ m_origin, m_z, Point { 0, 0, 2 }, Point { 0, 0, 5 } });
    EXPECT_EQ(counters().perturbed, 5 * 25U);
}

TEST_F(Orientation, FourIdenticalPointsAreTrue)
{
    const Point p { 0.1, -0.2, 0.3 };
    EXPECT_TRUE(sos_tetrahedron_volume_sign(p, p, p, p));
    EXPECT_EQ(counters().byTerm[13], 1U);
}

TEST_F(Orientation, ExchangingIdenticalPointsChangesNothing)
{
    // c and d are swapped once; step 1 is (0-1)(1-0) - 0 = -1, false, inverted.
    EXPECT_TRUE(sos_tetrahedron_volume_sign(m_origin, Point(m_origin), m_x, m_y));
}

TEST_F(Orientation, AJointMinimumIsNotSortedToTheFront)
{
    // No swap; steps 1 to 3 are zero for b = c, step 4 is (1-0)(0-1) - 0 = -1, true.
    EXPECT_TRUE(sos_tetrahedron_volume_sign(m_x, m_origin, m_origin, m_y));
    EXPECT_EQ(counters().byTerm[3], 1U);
}

TEST_F(Orientation, GivesTheSameAnswerEveryTime)
{
    const Point p { 0.1, 0.2, 0.5 };
    const Point q { 0.7, 0.3, 0.5 };
    const Point r { 0.9, 0.9, 0.5 };
    const Point s { 0.4, 0.8, 0.5 };
    const bool first = sos_tetrahedron_volume_sign(p, q, r, s);
    for (int i = 0; i < 100; ++i) {
        EXPECT_EQ(sos_tetrahedron_volume_sign(p, q, r, s), first);
    }
}

TEST_F(Orientation, NoStageTakesMemoryForTheUsualLengths)
{
    const std::size_t before = Testing::allocations();
    (void)sos_tetrahedron_volume_sign(m_x, m_y, m_z, m_origin);
    // The middle of a segment, rounded: three exact differences of full mantissas in every product.
    const Point p { 0.1, 0.2, 0.3 };
    const Point q { 0.7, 0.5, 0.11 };
    const Point middle { (0.1 + 0.7) / 2, (0.2 + 0.5) / 2, (0.3 + 0.11) / 2 };
    (void)sos_tetrahedron_volume_sign(p, q, middle, { 0.37, 0.91, 0.17 });
    (void)sos_tetrahedron_volume_sign(m_origin, m_x, m_y, m_xy);
    EXPECT_EQ(Testing::allocations(), before);
    EXPECT_EQ(counters().filter, 1U);
    EXPECT_EQ(counters().exact, 1U);
    EXPECT_EQ(counters().perturbed, 1U);
}

TEST_F(Orientation, EachThreadCountsForItself)
{
    (void)sos_tetrahedron_volume_sign(m_x, m_y, m_z, m_origin);
    std::uint64_t there = 0;
    std::thread other([&] {
        (void)sos_tetrahedron_volume_sign(m_x, m_y, m_z, m_origin);
        (void)sos_tetrahedron_volume_sign(m_x, m_y, m_z, m_origin);
        there = counters().filter;
    });
    other.join();
    EXPECT_EQ(there, 2U);
    EXPECT_EQ(counters().filter, 1U);
}

TEST_F(Orientation, ValuesWithoutMeaningGetAnAnswer)
{
    constexpr double nan = std::numeric_limits<double>::quiet_NaN();
    constexpr double infinity = std::numeric_limits<double>::infinity();
    for (const double x : { nan, infinity, -infinity, 1.7e308 }) {
        const Point p { x, 1, 2 };
        const bool first = sos_tetrahedron_volume_sign(p, m_x, m_y, p);
        EXPECT_EQ(sos_tetrahedron_volume_sign(p, m_x, m_y, p), first);
        (void)sos_tetrahedron_volume_sign(m_x, { x, x, x }, { -x, x, x }, m_z);
    }
    // Nothing is below NaN, and every term is NaN, which has no sign.
    EXPECT_TRUE(sos_tetrahedron_volume_sign(
        { nan, nan, nan }, { nan, nan, nan }, { nan, nan, nan }, { nan, nan, nan }));
}

TEST_F(Orientation, PlainSignIsThatOfTheRoundedDeterminant)
{
    EXPECT_EQ(Tavro::fast_tetrahedron_volume_sign(m_x, m_y, m_z, m_origin), 1);
    EXPECT_EQ(Tavro::fast_tetrahedron_volume_sign(m_y, m_x, m_z, m_origin), -1);
    EXPECT_EQ(Tavro::fast_tetrahedron_volume_sign(m_origin, m_x, m_y, m_xy), 0);
    // The volume of one again: the second product rounds off its last bit, and the rest cancels.
    constexpr double n = 0x1p22;
    EXPECT_EQ(Tavro::fast_tetrahedron_volume_sign(
                  { n, n + 1, n }, { n - 1, n, -n }, { 2 * n - 1, 2 * n + 1, 1 }, m_origin),
        0);
}

} // namespace
