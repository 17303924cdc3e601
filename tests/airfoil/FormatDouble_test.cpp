// SPDX-License-Identifier: Apache-2.0
#include "airfoil/TableLines.h"

#include <gtest/gtest.h>

#include <limits>

using Tavro::cardNumber;
using Tavro::formatDouble;

TEST(FormatDouble, AMissingFieldIsBlank)
{
    EXPECT_EQ(formatDouble(1.5, 2, 7, false, false), "       ");
    EXPECT_EQ(formatDouble(1.5, 2, 0, false, false), "");
}

TEST(FormatDouble, TheDecimalsAreKeptAndRightJustified)
{
    EXPECT_EQ(formatDouble(0.25, 2, 7, true, false), "   0.25");
    EXPECT_EQ(formatDouble(1.5, 4, 10, true, false), "    1.5000");
    EXPECT_EQ(formatDouble(-12.0, 1, 7, true, false), "  -12.0");
}

TEST(FormatDouble, ThePointIsAlwaysShown)
{
    EXPECT_EQ(formatDouble(5, 0, 7, true, false), "     5.");
    EXPECT_EQ(formatDouble(0, 0, 7, true, false), "     0.");
}

TEST(FormatDouble, AZeroLeftOutStaysOut)
{
    EXPECT_EQ(formatDouble(0.25, 2, 7, true, true), "    .25");
    EXPECT_EQ(formatDouble(-0.5, 1, 7, true, true), "    -.5");
    EXPECT_EQ(formatDouble(0, 0, 7, true, true), "      .");
}

TEST(FormatDouble, OnlyAZeroBeforeThePointIsLeftOut)
{
    EXPECT_EQ(formatDouble(10.5, 1, 7, true, true), "   10.5");
    EXPECT_EQ(formatDouble(-10.5, 1, 7, true, true), "  -10.5");
}

TEST(FormatDouble, AZeroGoesWhereItSavesAColumnInNeed)
{
    EXPECT_EQ(formatDouble(0.123456, 6, 7, true, false), ".123456"); // 8 columns with the zero
    EXPECT_EQ(formatDouble(-0.12345, 5, 7, true, false), "-.12345");
    EXPECT_EQ(formatDouble(0.12345, 5, 7, true, false), "0.12345"); // it fits
}

TEST(FormatDouble, WhatIsStillTooLongIsNotCut)
{
    EXPECT_EQ(formatDouble(-0.1234567, 7, 7, true, false), "-.1234567");
    EXPECT_EQ(formatDouble(1234567, 0, 7, true, false), "1234567.");
}

TEST(FormatDouble, TheExactValueIsRoundedToEvenOnATie)
{
    EXPECT_EQ(formatDouble(0.125, 2, 7, true, false), "   0.12");
    EXPECT_EQ(formatDouble(0.375, 2, 7, true, false), "   0.38");
    EXPECT_EQ(formatDouble(2.675, 2, 7, true, false), "   2.67"); // it is a little below
    EXPECT_EQ(formatDouble(-0.001, 2, 7, true, false), "  -0.00");
}

TEST(FormatDouble, AnyNumberOfDecimalsIsPossible)
{
    EXPECT_EQ(formatDouble(0.5, 400, 7, true, true), ".5" + std::string(399, '0'));
    EXPECT_EQ(formatDouble(1.5, -3, 7, true, false), "     2.");
}

TEST(FormatDouble, TheLargestNumberHasAllItsDigits)
{
    const std::string text = formatDouble(std::numeric_limits<double>::max(), 3, 7, true, false);
    EXPECT_EQ(text.size(), 313U); // 309 digits, the point, 3 decimals
    EXPECT_EQ(text.substr(0, 12), "179769313486");
    EXPECT_EQ(text.substr(309), ".000");
}

TEST(FormatDouble, WhatIsNoNumberHasNoPoint)
{
    EXPECT_EQ(formatDouble(std::numeric_limits<double>::infinity(), 0, 7, true, false), "    inf");
    EXPECT_EQ(formatDouble(-std::numeric_limits<double>::infinity(), 2, 7, true, true), "   -inf");
}

TEST(CardNumber, UpToNineItIsADigit)
{
    EXPECT_EQ(cardNumber(0, ""), "0");
    EXPECT_EQ(cardNumber(9, ""), "9");
}

TEST(CardNumber, FromTenItIsALetter)
{
    EXPECT_EQ(cardNumber(10, ""), "A");
    EXPECT_EQ(cardNumber(35, ""), "Z");
}

TEST(CardNumber, From36ItIsNoTrueBase36)
{
    EXPECT_EQ(cardNumber(36, ""), "1["); // 36 / 36, then the byte 36 + 55 = 91
    EXPECT_EQ(cardNumber(71, ""), "1~"); // 71 + 55 = 126
    EXPECT_EQ(cardNumber(72, ""), "2\x7F");
    EXPECT_EQ(cardNumber(200, ""), "5\xFF"); // 200 / 36 = 5; 255
    EXPECT_EQ(cardNumber(201, ""), std::string("5\0", 2)); // 256 modulo 256
    EXPECT_EQ(cardNumber(360, ""), "A\x9F"); // 360 / 36 = 10; 415 - 256 = 159
    // 1296 / 36 = 36 is "1[" itself; 1296 + 55 = 1351 = 5 * 256 + 71, "G"
    EXPECT_EQ(cardNumber(1296, ""), "1[G");
}

TEST(CardNumber, ItStandsBehindTheText) { EXPECT_EQ(cardNumber(36, "LIFT"), "LIFT1["); }

TEST(CardNumber, TheLargestNumberWrapsAroundOnlyInItsByte)
{
    // 4294967295 / 36 = 119304647, / 36 = 3314017, / 36 = 92056, / 36 = 2557, / 36 = 71, / 36 = 1.
    // Bytes of n + 55 modulo 256: 1 "1"; 71 126; 2557 + 55 = 2612 - 10 * 256 = 52;
    // 92056 + 55 = 92111 - 359 * 256 = 207; 3314017 + 55 = 3314072 - 12945 * 256 = 152;
    // 119304647 + 55 = 119304702 - 466033 * 256 = 254; 4294967295 + 55 = 54 modulo 256.
    EXPECT_EQ(cardNumber(4294967295U, ""), "1~4\xCF\x98\xFE\x36");
}
