// SPDX-License-Identifier: Apache-2.0
#include "airfoil/FieldText.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <string>

using Tavro::FieldText::leading_double;
using Tavro::FieldText::leading_int;

namespace {

constexpr double kInfinity = std::numeric_limits<double>::infinity();

} // namespace

// Texts with other characters than those of a number get here when an owner refuses a repair.

TEST(LeadingDouble, ExponentsAreRead)
{
    EXPECT_EQ(leading_double("1.5E-3"), 0.0015);
    EXPECT_EQ(leading_double("1e5x"), 1e5);
    EXPECT_EQ(leading_double("1e"), 1.0);
    EXPECT_EQ(leading_double("1e+"), 1.0);
}

TEST(LeadingDouble, NamesOfNumbersAreRead)
{
    EXPECT_EQ(leading_double("inf"), kInfinity);
    EXPECT_EQ(leading_double("-Infinity"), -kInfinity);
    EXPECT_TRUE(std::isnan(leading_double("NaN")));
}

TEST(LeadingDouble, HexadecimalNumbersAreRead)
{
    EXPECT_EQ(leading_double("0x1A"), 26.0);
    EXPECT_EQ(leading_double("-0X.8p1"), -1.0);
    EXPECT_EQ(leading_double("0x"), 0.0);
    EXPECT_EQ(leading_double("0xinf"), 0.0);
    EXPECT_EQ(leading_double("0x-5"), 0.0);
    EXPECT_EQ(leading_double("0x.g"), 0.0);
}

TEST(LeadingDouble, TextsWithoutANumberAreAPositiveZero)
{
    for (const char* text : { "", " ", "-", "-abc", "+", "-.", "e5", "-e5", ".e5" }) {
        EXPECT_EQ(leading_double(text), 0.0) << text;
        EXPECT_FALSE(std::signbit(leading_double(text))) << text;
    }
}

TEST(LeadingDouble, WhiteSpaceInFrontIsSkipped) { EXPECT_EQ(leading_double(" \t\n-2.5 "), -2.5); }

TEST(LeadingDouble, BeyondTheRangeItIsInfiniteOrZero)
{
    EXPECT_EQ(leading_double("1e400"), kInfinity);
    EXPECT_EQ(leading_double("-1e400"), -kInfinity);
    EXPECT_EQ(leading_double("1e-400"), 0.0);
    EXPECT_TRUE(std::signbit(leading_double("-1e-400")));
    EXPECT_EQ(leading_double("1e99999999999999999999"), kInfinity);
    EXPECT_EQ(leading_double("1e-99999999999999999999"), 0.0);
    EXPECT_EQ(leading_double("0e99999999999999999999"), 0.0);
    // 1000 digits less 100 powers of ten are still too many; 500 zeros and 100 powers too few.
    EXPECT_EQ(leading_double(std::string(1000, '9') + "e-100"), kInfinity);
    EXPECT_EQ(leading_double("0." + std::string(500, '0') + "1e100"), 0.0);
    EXPECT_EQ(leading_double("0x1p99999"), kInfinity);
    EXPECT_EQ(leading_double("0x1p-99999"), 0.0);
}

TEST(LeadingDouble, TheSmallestNumbersAreKept)
{
    EXPECT_EQ(leading_double("4.9406564584124654e-324"), 0x1p-1074);
    EXPECT_EQ(leading_double("1.7976931348623157e308"), std::numeric_limits<double>::max());
}

TEST(LeadingInt, TheLeadingPartCounts)
{
    EXPECT_EQ(leading_int("12x"), 12);
    EXPECT_EQ(leading_int(" -12 "), -12);
    EXPECT_EQ(leading_int("+7"), 7);
    EXPECT_EQ(leading_int(""), 0);
    EXPECT_EQ(leading_int("- 7"), 0);
    EXPECT_EQ(leading_int("x"), 0);
    EXPECT_EQ(leading_int("9 "), 9);
    EXPECT_EQ(leading_int("1 2"), 1);
}

TEST(LeadingInt, WhatIsTooLargeIsTheNearestValue)
{
    EXPECT_EQ(leading_int("2147483647"), 2147483647);
    EXPECT_EQ(leading_int("2147483648"), 2147483647);
    EXPECT_EQ(leading_int("-2147483648"), std::numeric_limits<std::int32_t>::min());
    EXPECT_EQ(leading_int(std::string(100, '9')), 2147483647);
    EXPECT_EQ(leading_int("-" + std::string(100, '9')), std::numeric_limits<std::int32_t>::min());
}
