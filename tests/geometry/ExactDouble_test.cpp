// SPDX-License-Identifier: Apache-2.0
#include "geometry/ExactDouble.h"

#include "tests/geometry/Allocations.h"
#include "tests/support/Isolated.h"
#include "tests/support/Locales.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstdio>
#include <limits>

namespace {

using Doubles = std::vector<double>;
using Tavro::ExactDouble;

// 1e16 + 1, which no double holds.
ExactDouble long_one() { return ExactDouble(1e16) + 1.0; }

TEST(ExactDouble, IsOneZeroByDefault) { EXPECT_EQ(ExactDouble().GetExpansion(), Doubles { 0.0 }); }

TEST(ExactDouble, IsMadeOfOneDouble)
{
    EXPECT_EQ(ExactDouble(-2.5).GetExpansion(), Doubles { -2.5 });
}

TEST(ExactDouble, CopiesTakeTheWholeArray)
{
    const ExactDouble source = long_one();
    ExactDouble copy = source;
    EXPECT_EQ(copy.GetExpansion(), (Doubles { 1.0, 1e16 }));
    copy = ExactDouble(3.0);
    EXPECT_EQ(copy.GetExpansion(), Doubles { 3.0 });
    copy = source;
    EXPECT_EQ(copy.GetExpansion(), (Doubles { 1.0, 1e16 }));
}

TEST(ExactDouble, AssignmentToItselfChangesNothing)
{
    ExactDouble e = long_one();
    const ExactDouble& same = e;
    e = same;
    EXPECT_EQ(e.GetExpansion(), (Doubles { 1.0, 1e16 }));
}

TEST(ExactDouble, AssigningADoubleToALongExpansionLeavesOneComponent)
{
    ExactDouble e = long_one();
    e = 4.0;
    EXPECT_EQ(e.GetExpansion(), Doubles { 4.0 });
}

TEST(ExactDouble, MovingFromItLeavesAValue)
{
    ExactDouble e = long_one();
    const ExactDouble other = std::move(e); // NOLINT(performance-move-const-arg)
    EXPECT_EQ(other.GetExpansion(), (Doubles { 1.0, 1e16 }));
    EXPECT_EQ(e.GetExpansion().size(), 2U); // NOLINT(bugprone-use-after-move)
}

TEST(ExactDouble, ApproximationIsTheLastComponent)
{
    EXPECT_EQ(long_one().GetApproximation(), 1e16);
    EXPECT_EQ(ExactDouble(0.5).GetApproximation(), 0.5);
}

TEST(ExactDouble, ExpansionIsACopy)
{
    const ExactDouble e(2.0);
    Tavro::Expansion copy = e.GetExpansion();
    copy[0] = 9.0;
    EXPECT_EQ(e.GetApproximation(), 2.0);
}

TEST(ExactDouble, SignIsThatOfTheLastComponent)
{
    EXPECT_EQ(ExactDouble(3.0).GetSign(), 1);
    EXPECT_EQ(ExactDouble(-3.0).GetSign(), -1);
    EXPECT_EQ(ExactDouble(0.0).GetSign(), 0);
    EXPECT_EQ(ExactDouble(-0.0).GetSign(), 0);
    EXPECT_EQ((ExactDouble(-1e16) + 1.0).GetSign(), -1);
}

TEST(ExactDouble, TextOfOneComponentStandsInBraces)
{
    EXPECT_EQ(ExactDouble(2.5).ToString(), "{ 2.5 }");
}

TEST(ExactDouble, TextPutsTheLargestFirstOnALineOfItsOwn)
{
    EXPECT_EQ(long_one().ToString(), "{ 1e+16 + \n1 }");
    EXPECT_EQ((long_one() + 0x1p-60).ToString(), "{ 1e+16 + \n1 + \n8.67362e-19 }");
}

TEST(ExactDouble, TextHasSixDigits)
{
    EXPECT_EQ(ExactDouble(1.0 / 3.0).ToString(), "{ 0.333333 }");
}

TEST(ExactDouble, TextDoesNotDependOnTheLocale)
{
    const Testing::Outcome outcome = Testing::run_isolated([] {
        (void)std::fputs(
            Testing::use_comma_locale() ? ExactDouble(12345.5).ToString().c_str() : "none", stdout);
    });
    if (outcome.out == "none") {
        GTEST_SKIP() << "no locale with a decimal comma can be made here";
    }
    EXPECT_EQ(outcome.out, "{ 12345.5 }");
}

TEST(ExactDouble, AddsADouble)
{
    EXPECT_EQ((ExactDouble(1e16) + 1.0).GetExpansion(), (Doubles { 1.0, 1e16 }));
}

TEST(ExactDouble, AddsAnExactDouble)
{
    EXPECT_EQ((long_one() + long_one()).GetExpansion(), (Doubles { 2.0, 2e16 }));
    EXPECT_EQ((ExactDouble(1.0) + ExactDouble(0x1p-60)).GetExpansion(), (Doubles { 0x1p-60, 1.0 }));
}

TEST(ExactDouble, SubtractsADouble)
{
    EXPECT_EQ((long_one() - 1e16).GetExpansion(), Doubles { 1.0 });
    EXPECT_EQ((ExactDouble(1.0) - 0.0).GetExpansion(), Doubles { 1.0 });
}

TEST(ExactDouble, SubtractsAnExactDouble)
{
    EXPECT_EQ((long_one() - ExactDouble(1e16)).GetExpansion(), Doubles { 1.0 });
    EXPECT_EQ((ExactDouble(1.0) - long_one()).GetExpansion(), Doubles { -1e16 });
}

TEST(ExactDouble, MultipliesByADouble)
{
    // 3 (1e16 + 1): both products are exact.
    EXPECT_EQ((long_one() * 3.0).GetExpansion(), (Doubles { -1.0, 30000000000000004.0 }));
    EXPECT_EQ((long_one() * 0.0).GetExpansion(), Doubles { 0.0 });
}

TEST(ExactDouble, MultipliesByAnExactDouble)
{
    // (2^60 + 1)(2^60 + 1) = 2^120 + 2^61 + 1
    const ExactDouble e = ExactDouble(0x1p60) + 1.0;
    EXPECT_EQ((e * e).GetExpansion(), (Doubles { 1.0, 0x1p61, 0x1p120 }));
}

TEST(ExactDouble, BelowLooksAtTheWholeDifference)
{
    EXPECT_TRUE(ExactDouble(1e16) < long_one());
    EXPECT_FALSE(long_one() < ExactDouble(1e16));
    EXPECT_FALSE(long_one() < long_one());
    EXPECT_FALSE(long_one() < 1e16);
    EXPECT_TRUE(long_one() < 1e16 + 2.0);
}

TEST(ExactDouble, AboveLooksAtTheWholeDifference)
{
    EXPECT_TRUE(long_one() > ExactDouble(1e16));
    EXPECT_FALSE(ExactDouble(1e16) > long_one());
    EXPECT_FALSE(long_one() > long_one());
    EXPECT_TRUE(long_one() > 1e16);
    EXPECT_FALSE(long_one() > 1e16 + 2.0);
}

TEST(ExactDouble, EqualLooksAtTheWholeDifference)
{
    EXPECT_TRUE(long_one() == long_one());
    EXPECT_FALSE(long_one() == ExactDouble(1e16));
    EXPECT_FALSE(long_one() == 1e16);
    EXPECT_TRUE(ExactDouble(1e16) == 1e16);
}

TEST(ExactDouble, AtLeastIsNotBelow)
{
    EXPECT_TRUE(long_one() >= ExactDouble(1e16));
    EXPECT_TRUE(long_one() >= long_one());
    EXPECT_FALSE(ExactDouble(1e16) >= long_one());
    EXPECT_TRUE(long_one() >= 1e16);
    EXPECT_FALSE(long_one() >= 1e16 + 2.0);
}

TEST(ExactDouble, AtMostIsNotAbove)
{
    EXPECT_FALSE(long_one() <= ExactDouble(1e16));
    EXPECT_TRUE(long_one() <= long_one());
    EXPECT_TRUE(ExactDouble(1e16) <= long_one());
    EXPECT_FALSE(long_one() <= 1e16);
    EXPECT_TRUE(long_one() <= 1e16 + 2.0);
}

TEST(ExactDouble, UnequalIsNotEqual)
{
    EXPECT_TRUE(long_one() != ExactDouble(1e16));
    EXPECT_FALSE(long_one() != long_one());
    EXPECT_TRUE(long_one() != 1e16);
    EXPECT_FALSE(ExactDouble(0.0) != -0.0);
}

TEST(ExactDouble, ZeroMinusZeroIsOneZero)
{
    const ExactDouble zero = ExactDouble(0.0) - ExactDouble(0.0);
    EXPECT_EQ(zero.GetExpansion(), Doubles { 0.0 });
    EXPECT_EQ(zero.GetSign(), 0);
    EXPECT_TRUE(zero == 0.0);
}

TEST(ExactDouble, WhatADoubleWouldRoundAwayComesBack)
{
    const ExactDouble one = (ExactDouble(1e16) + ExactDouble(1.0)) - ExactDouble(1e16);
    EXPECT_EQ(one.GetExpansion(), Doubles { 1.0 });
    EXPECT_EQ(one.GetSign(), 1);
    EXPECT_TRUE(one == 1.0);
    const volatile double sum = 1e16 + 1.0;
    EXPECT_EQ(sum - 1e16, 0.0);
}

TEST(ExactDouble, OverflowGivesNaNWithoutASign)
{
    const ExactDouble infinite = ExactDouble(1e308) + 1e308;
    const ExactDouble none = infinite - (ExactDouble(1e308) + 1e308);
    EXPECT_EQ(none.GetSign(), 0);
    EXPECT_FALSE(none < 0.0);
    EXPECT_FALSE(none > 0.0);
    EXPECT_FALSE(none == 0.0);
    EXPECT_TRUE(none >= 0.0);
    EXPECT_TRUE(none <= 0.0);
    EXPECT_TRUE(none != 0.0);
}

TEST(ExactDouble, AComponentTooLargeToSplitTurnsItsNegativeIntoNaN)
{
    // Exact numbers are negated by a product, doubles by their sign bit.
    EXPECT_EQ((ExactDouble(1.0) - ExactDouble(1e308)).GetSign(), 0);
    EXPECT_EQ((ExactDouble(1.0) - 1e308).GetSign(), -1);
}

TEST(ExactDouble, TheUsualLengthsTakeNoMemory)
{
    const ExactDouble a = ExactDouble(0.1) - ExactDouble(0x1.23456789abcdep-9);
    const ExactDouble b = ExactDouble(0.7) - ExactDouble(0x1.fedcba9876543p-7);
    const ExactDouble c = ExactDouble(0.3) - ExactDouble(0x1.13579bdf02468p-5);
    const std::size_t before = Testing::allocations();
    const ExactDouble minor = a * b - b * c;
    const ExactDouble sum = minor * a + minor * c;
    EXPECT_NE(sum.GetSign(), 0);
    EXPECT_EQ(Testing::allocations(), before);
}

TEST(ExactDouble, GrowsWithoutLimit)
{
    // Powers of two that are 54 apart never share a component.
    const auto power = [](int i) { return std::ldexp(1.0, 54 * (i - 18)); };
    ExactDouble sum;
    for (int i = 0; i < 36; ++i) {
        sum = sum + power(i);
    }
    EXPECT_EQ(sum.GetExpansion().size(), 36U);
    for (int i = 35; i > 0; --i) {
        sum = sum - power(i);
    }
    EXPECT_EQ(sum.GetExpansion(), Doubles { 0x1p-972 });
}

} // namespace
