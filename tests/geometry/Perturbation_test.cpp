// SPDX-License-Identifier: Apache-2.0
#include "geometry/PredicateDetail.h"

#include <gtest/gtest.h>

#include <array>
#include <cmath>

namespace {

using namespace Tavro::PredicateDetail;
using Point = Tavro::Vector<double, 3>;

const Point kOrigin { 0, 0, 0 };
const Point kX { 1, 0, 0 };
const Point kY { 0, 1, 0 };
const Point kZ { 0, 0, 1 };

struct Decision {
    unsigned int term;
    bool positive;
    bool operator==(const Decision&) const = default;
};

std::ostream& operator<<(std::ostream& out, const Decision& decision)
{
    return out << "term " << decision.term << (decision.positive ? " true" : " false");
}

Decision decide(const Point& a, const Point& b, const Point& c, const Point& d)
{
    unsigned int term = 0;
    const bool positive = sos_get_perturbed_sign(a, b, c, d, term);
    return { term, positive };
}

Decision term(unsigned int number, bool positive) { return { number, positive }; }

Point point(double x, double y, double z) { return { x, y, z }; }

TEST(Det33Col31Sign, IsTheTurnOfThreePoints)
{
    // (0 - 0)(0 - 1) - (0 - 1)(1 - 0) = 1
    EXPECT_EQ(Det33Col31Sign(0, 0, 1, 0, 0, 1), 1);
    EXPECT_EQ(Det33Col31Sign(0, 0, 0, 1, 1, 0), -1);
    EXPECT_EQ(Det33Col31Sign(0, 0, 1, 1, 2, 2), 0);
}

TEST(Det33Col31Sign, TellsATurnThatDoublesRoundAway)
{
    // (1 + 2^-52)(1 - 2^-52) - 1 * 1 = -2^-104
    EXPECT_EQ(Det33Col31Sign(1.0 + 0x1p-52, 1.0, 1.0, 1.0 - 0x1p-52, 0.0, 0.0), -1);
    // (2^23 - 1)(2^23 + 1) - 2^23 2^23 = -1, with differences of distant coordinates.
    EXPECT_EQ(Det33Col31Sign(0x1p23 - 1, 0x1p23, 0x1p23, 0x1p23 + 1, 0x1p-40, 0x1p-40), -1);
}

TEST(Det22Col21Sign, IsTheSignOfTheDifference)
{
    EXPECT_EQ(Det22Col21Sign(2.0, 1.0), 1);
    EXPECT_EQ(Det22Col21Sign(1.0, 2.0), -1);
    EXPECT_EQ(Det22Col21Sign(0.0, -0.0), 0);
    EXPECT_EQ(Det22Col21Sign(1e16, std::nextafter(1e16, 0.0)), 1);
}

TEST(PerturbedSign, Step1IsTheTurnOfBCDInXY)
{
    EXPECT_EQ(decide(kOrigin, kOrigin, kX, kY), term(1, true));
    EXPECT_EQ(decide(kOrigin, kOrigin, kY, kX), term(1, false));
}

TEST(PerturbedSign, Step2IsTheTurnOfBCDInXZ)
{
    EXPECT_EQ(decide(kOrigin, kOrigin, kX, kZ), term(2, false));
    EXPECT_EQ(decide(kOrigin, kOrigin, kZ, kX), term(2, true));
}

TEST(PerturbedSign, Step3IsTheTurnOfBCDInYZ)
{
    EXPECT_EQ(decide(kOrigin, kOrigin, kY, kZ), term(3, true));
    EXPECT_EQ(decide(kOrigin, kOrigin, kZ, kY), term(3, false));
}

TEST(PerturbedSign, Step4IsTheTurnOfACDInXY)
{
    EXPECT_EQ(decide(kOrigin, kX, kX, kY), term(4, false));
    EXPECT_EQ(decide(kOrigin, kY, kY, kX), term(4, true));
}

TEST(PerturbedSign, Step5ComparesCAndDInX)
{
    EXPECT_EQ(decide(kX, kX, kX, kOrigin), term(5, true));
    EXPECT_EQ(decide(kOrigin, kOrigin, kOrigin, kX), term(5, false));
}

TEST(PerturbedSign, Step6ComparesCAndDInY)
{
    EXPECT_EQ(decide(kY, kY, kY, kOrigin), term(6, false));
    EXPECT_EQ(decide(kOrigin, kOrigin, kOrigin, kY), term(6, true));
}

TEST(PerturbedSign, Step7IsTheTurnOfACDInXZ)
{
    // (-1 - 0)(0 - 1) - (0 - 1)(0 - 0) = 1
    EXPECT_EQ(decide(point(-1, 0, 0), kOrigin, kOrigin, kZ), term(7, true));
    EXPECT_EQ(decide(kX, kOrigin, kOrigin, kZ), term(7, false));
}

TEST(PerturbedSign, Step8ComparesCAndDInZ)
{
    EXPECT_EQ(decide(kZ, kZ, kZ, kOrigin), term(8, true));
    EXPECT_EQ(decide(kOrigin, kOrigin, kOrigin, kZ), term(8, false));
}

TEST(PerturbedSign, Step9IsZeroWheneverItIsReached)
{
    // c and d are equal by then; all rows with coordinates 0 and 1, and the others with a.y = 2.
    std::array<unsigned int, 15> reached {};
    for (unsigned int bits = 0; bits < 1U << 12; ++bits) {
        Point rows[4];
        for (unsigned int k = 0; k < 12; ++k) {
            rows[k / 3][k % 3] = bits >> k & 1U;
        }
        ++reached[decide(rows[0], rows[1], rows[2], rows[3]).term];
        rows[0][1] *= 2;
        ++reached[decide(rows[0], rows[1], rows[2], rows[3]).term];
    }
    for (unsigned int step = 1; step <= 14; ++step) {
        EXPECT_EQ(reached[step] == 0, step == 9) << step;
    }
}

TEST(PerturbedSign, Step10IsTheTurnOfABDInXY)
{
    EXPECT_EQ(decide(kOrigin, kX, kY, kY), term(10, true));
    EXPECT_EQ(decide(kX, kOrigin, kY, kY), term(10, false));
}

TEST(PerturbedSign, Step11ComparesBAndDInX)
{
    EXPECT_EQ(decide(kOrigin, kX, kOrigin, kOrigin), term(11, false));
    EXPECT_EQ(decide(kX, kOrigin, kX, kX), term(11, true));
}

TEST(PerturbedSign, Step12ComparesBAndDInY)
{
    EXPECT_EQ(decide(kOrigin, kY, kOrigin, kOrigin), term(12, true));
    EXPECT_EQ(decide(kY, kOrigin, kY, kY), term(12, false));
}

TEST(PerturbedSign, Step13ComparesAAndDInX)
{
    EXPECT_EQ(decide(kX, kOrigin, kOrigin, kOrigin), term(13, true));
    EXPECT_EQ(decide(kOrigin, kX, kX, kX), term(13, false));
}

TEST(PerturbedSign, WithAllThirteenZeroItIsTrue)
{
    EXPECT_EQ(decide(kX, kX, kX, kX), term(14, true));
    EXPECT_EQ(decide(point(0, 5, 7), kOrigin, kOrigin, kOrigin), term(14, true));
}

TEST(SwapRow, ExchangesTwoPoints)
{
    Point first = kX;
    Point second = kZ;
    sos_swap_row(first, second);
    EXPECT_EQ(first[2], 1.0);
    EXPECT_EQ(second[0], 1.0);
}

struct Sorted {
    std::array<double, 4> order;
    unsigned int swaps;
    bool operator==(const Sorted&) const = default;
};

// Rows that differ in one coordinate only; the other two are alike.
Sorted sort(const std::array<double, 4>& values, std::size_t coordinate)
{
    Point rows[4] {};
    for (std::size_t i = 0; i < 4; ++i) {
        rows[i] = { 7.0, 7.0, 7.0 };
        rows[i][coordinate] = values[i];
    }
    const unsigned int swaps = sos_sort_rows(rows);
    return { { rows[0][coordinate], rows[1][coordinate], rows[2][coordinate], rows[3][coordinate] },
        swaps };
}

class SortRows : public testing::TestWithParam<std::size_t> { };

TEST_P(SortRows, CountsItsSwaps)
{
    EXPECT_EQ(sort({ 0, 1, 2, 3 }, GetParam()), (Sorted { { 0, 1, 2, 3 }, 0 }));
    EXPECT_EQ(sort({ 1, 0, 2, 3 }, GetParam()), (Sorted { { 0, 1, 2, 3 }, 1 }));
    EXPECT_EQ(sort({ 0, 2, 1, 3 }, GetParam()), (Sorted { { 0, 1, 2, 3 }, 1 }));
    EXPECT_EQ(sort({ 0, 1, 3, 2 }, GetParam()), (Sorted { { 0, 1, 2, 3 }, 1 }));
    EXPECT_EQ(sort({ 2, 1, 0, 3 }, GetParam()), (Sorted { { 0, 1, 2, 3 }, 1 }));
    EXPECT_EQ(sort({ 0, 3, 2, 1 }, GetParam()), (Sorted { { 0, 1, 2, 3 }, 1 }));
    // {0,2,1,3} after the first swap
    EXPECT_EQ(sort({ 3, 2, 1, 0 }, GetParam()), (Sorted { { 0, 1, 2, 3 }, 2 }));
    // {0,2,3,1}, {0,1,3,2}
    EXPECT_EQ(sort({ 1, 2, 3, 0 }, GetParam()), (Sorted { { 0, 1, 2, 3 }, 3 }));
}

TEST_P(SortRows, AJointMinimumLeavesTheRowInItsPlace)
{
    EXPECT_EQ(sort({ 1, 0, 0, 2 }, GetParam()), (Sorted { { 1, 0, 0, 2 }, 0 }));
    EXPECT_EQ(sort({ 2, 1, 0, 0 }, GetParam()), (Sorted { { 2, 1, 0, 0 }, 0 }));
    EXPECT_EQ(sort({ 0, 2, 1, 1 }, GetParam()), (Sorted { { 0, 2, 1, 1 }, 0 }));
    // The last place still sorts.
    EXPECT_EQ(sort({ 1, 0, 2, 0 }, GetParam()), (Sorted { { 1, 0, 0, 2 }, 1 }));
}

TEST_P(SortRows, IdenticalPointsAreNeverExchanged)
{
    EXPECT_EQ(sort({ 4, 4, 4, 4 }, GetParam()), (Sorted { { 4, 4, 4, 4 }, 0 }));
    EXPECT_EQ(sort({ 0.0, -0.0, 1, 2 }, GetParam()), (Sorted { { 0, 0, 1, 2 }, 0 }));
}

INSTANTIATE_TEST_SUITE_P(ByCoordinate, SortRows, testing::Values(0U, 1U, 2U));

TEST(SortRows, LooksAtXBeforeYBeforeZ)
{
    Point rows[4] { point(1, 0, 0), point(0, 2, 0), point(0, 1, 9), point(0, 1, 8) };
    EXPECT_EQ(sos_sort_rows(rows), 2U); // {p3, p1, p2, p0}, then {p3, p2, p1, p0}
    EXPECT_EQ(rows[0][2], 8.0);
    EXPECT_EQ(rows[1][2], 9.0);
    EXPECT_EQ(rows[2][1], 2.0);
    EXPECT_EQ(rows[3][0], 1.0);
}

} // namespace
