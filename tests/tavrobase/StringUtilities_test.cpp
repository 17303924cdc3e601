// SPDX-License-Identifier: Apache-2.0
#include "tavrobase/StringUtilities.h"

#include <gtest/gtest.h>

#include <climits>
#include <limits>
#include <string>

namespace {

using Tavro::formatInteger;
using Tavro::NumToString;

constexpr double kInfinity = std::numeric_limits<double>::infinity();
constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();

} // namespace

TEST(NumToString, ADoubleThatIsWholeHasNoPoint)
{
    EXPECT_EQ(NumToString(1.0), "1");
    EXPECT_EQ(NumToString(0.0), "0");
    EXPECT_EQ(NumToString(-20.0), "-20");
}

TEST(NumToString, ADoubleHasNoTrailingZeros) { EXPECT_EQ(NumToString(0.1), "0.1"); }

TEST(NumToString, ADoubleHasSixSignificantDigits)
{
    EXPECT_EQ(NumToString(1234.5678), "1234.57");
    EXPECT_EQ(NumToString(1.0 / 3.0), "0.333333");
    EXPECT_EQ(NumToString(-2.0 / 3.0), "-0.666667");
    EXPECT_EQ(NumToString(100000.4), "100000");
}

TEST(NumToString, ADoubleOfSixDigitsIsPlain)
{
    EXPECT_EQ(NumToString(123456.0), "123456");
    EXPECT_EQ(NumToString(999999.0), "999999");
    EXPECT_EQ(NumToString(0.0001), "0.0001");
}

TEST(NumToString, ADoubleOfMoreThanSixDigitsHasAnExponent)
{
    EXPECT_EQ(NumToString(1234567.0), "1.23457e+06");
    EXPECT_EQ(NumToString(1000000.0), "1e+06");
    EXPECT_EQ(NumToString(999999.5), "1e+06"); // a tie that goes to the even 1000000
    EXPECT_EQ(NumToString(1e100), "1e+100");
}

TEST(NumToString, ADoubleBelowATenthOfAThousandthHasAnExponent)
{
    EXPECT_EQ(NumToString(0.00001), "1e-05");
    EXPECT_EQ(NumToString(0.000099999951), "0.0001"); // rounded before the form is chosen
    EXPECT_EQ(NumToString(-1.5e-300), "-1.5e-300");
}

TEST(NumToString, MinusZeroKeepsItsSign) { EXPECT_EQ(NumToString(-0.0), "-0"); }

TEST(NumToString, WhatIsNoNumberHasTheStreamsWords)
{
    EXPECT_EQ(NumToString(kInfinity), "inf");
    EXPECT_EQ(NumToString(-kInfinity), "-inf");
    EXPECT_EQ(NumToString(kNaN), "nan");
    EXPECT_EQ(NumToString(-kNaN), "-nan");
}

TEST(NumToString, TheLimitsOfADoubleKeepSixDigits)
{
    EXPECT_EQ(NumToString(std::numeric_limits<double>::max()), "1.79769e+308");
    EXPECT_EQ(NumToString(std::numeric_limits<double>::min()), "2.22507e-308");
    EXPECT_EQ(NumToString(std::numeric_limits<double>::denorm_min()), "4.94066e-324");
}

TEST(NumToString, AFloatIsAsTheDoubleOfItsValue)
{
    EXPECT_EQ(NumToString(0.1F), "0.1");
    EXPECT_EQ(NumToString(1234.5678F), "1234.57");
    EXPECT_EQ(NumToString(16777216.0F), "1.67772e+07");
    EXPECT_EQ(NumToString(-0.0F), "-0");
    EXPECT_EQ(NumToString(std::numeric_limits<float>::max()), "3.40282e+38");
    EXPECT_EQ(NumToString(std::numeric_limits<float>::infinity()), "inf");
}

TEST(NumToString, AShortIsPlainDecimal)
{
    EXPECT_EQ(NumToString(short { -32768 }), "-32768");
    EXPECT_EQ(NumToString(short { 32767 }), "32767");
}

TEST(NumToString, AnUnsignedShortIsPlainDecimal)
{
    EXPECT_EQ(NumToString(static_cast<unsigned short>(0)), "0");
    EXPECT_EQ(NumToString(static_cast<unsigned short>(65535)), "65535");
}

TEST(NumToString, AnIntIsPlainDecimal)
{
    EXPECT_EQ(NumToString(INT_MIN), "-2147483648");
    EXPECT_EQ(NumToString(INT_MAX), "2147483647");
    EXPECT_EQ(NumToString(0), "0");
}

TEST(NumToString, AnUnsignedIntIsPlainDecimal)
{
    EXPECT_EQ(NumToString(0U), "0");
    EXPECT_EQ(NumToString(UINT_MAX), "4294967295");
}

TEST(NumToString, ALongLongIsPlainDecimal)
{
    EXPECT_EQ(NumToString(LLONG_MIN), "-9223372036854775808");
    EXPECT_EQ(NumToString(LLONG_MAX), "9223372036854775807");
}

TEST(NumToString, AnUnsignedLongLongIsPlainDecimal)
{
    EXPECT_EQ(NumToString(0ULL), "0");
    EXPECT_EQ(NumToString(ULLONG_MAX), "18446744073709551615");
}

TEST(NumToString, ALongIsPlainDecimal)
{
    EXPECT_EQ(NumToString(-1234567L), "-1234567");
    EXPECT_EQ(NumToString(1234567UL), "1234567");
}

TEST(NumToString, ASignedCharIsANumberAndNoCharacter)
{
    EXPECT_EQ(NumToString(static_cast<signed char>(-128)), "-128");
    EXPECT_EQ(NumToString(static_cast<signed char>('A')), "65");
}

TEST(NumToString, AnUnsignedCharIsANumberAndNoCharacter)
{
    EXPECT_EQ(NumToString(static_cast<unsigned char>(255)), "255");
    EXPECT_EQ(NumToString(static_cast<unsigned char>('A')), "65");
}

TEST(FormatInteger, AnUnsignedNumberHasACommaBeforeEveryThirdDigit)
{
    EXPECT_EQ(formatInteger(1234567U), "1,234,567");
    EXPECT_EQ(formatInteger(0U), "0");
    EXPECT_EQ(formatInteger(999U), "999");
    EXPECT_EQ(formatInteger(1000U), "1,000");
    EXPECT_EQ(formatInteger(999999U), "999,999");
    EXPECT_EQ(formatInteger(1000000U), "1,000,000");
}

TEST(FormatInteger, ThreeDigitsHaveNoCommaAndFourDo)
{
    EXPECT_EQ(formatInteger(999), "999");
    EXPECT_EQ(formatInteger(1000), "1,000");
}

TEST(FormatInteger, AMinusSignIsNoDigit)
{
    EXPECT_EQ(formatInteger(-123), "-123");
    EXPECT_EQ(formatInteger(-1234), "-1,234");
    EXPECT_EQ(formatInteger(-123456), "-123,456");
    EXPECT_EQ(formatInteger(-1234567), "-1,234,567");
    EXPECT_EQ(formatInteger(-999), "-999");
    EXPECT_EQ(formatInteger(-1), "-1");
}

TEST(FormatInteger, ACharTypeHasNoSeparator)
{
    EXPECT_EQ(formatInteger(static_cast<signed char>(-128)), "-128");
    EXPECT_EQ(formatInteger(static_cast<unsigned char>(255)), "255");
}

TEST(FormatInteger, TheLimitsOfEveryTypeAreGrouped)
{
    EXPECT_EQ(formatInteger(short { -32768 }), "-32,768");
    EXPECT_EQ(formatInteger(short { 32767 }), "32,767");
    EXPECT_EQ(formatInteger(static_cast<unsigned short>(65535)), "65,535");
    EXPECT_EQ(formatInteger(INT_MIN), "-2,147,483,648");
    EXPECT_EQ(formatInteger(INT_MAX), "2,147,483,647");
    EXPECT_EQ(formatInteger(UINT_MAX), "4,294,967,295");
    EXPECT_EQ(formatInteger(LLONG_MIN), "-9,223,372,036,854,775,808");
    EXPECT_EQ(formatInteger(LLONG_MAX), "9,223,372,036,854,775,807");
    EXPECT_EQ(formatInteger(ULLONG_MAX), "18,446,744,073,709,551,615");
    EXPECT_EQ(formatInteger(-1000L), "-1,000");
    EXPECT_EQ(formatInteger(1000UL), "1,000");
}

TEST(BoolText, ABoolIsTrueOrFalse)
{
    EXPECT_EQ(Tavro::BoolToString(true), "True");
    EXPECT_EQ(Tavro::BoolToString(false), "False");
}

TEST(BoolText, AFortranBoolStandsBetweenPoints)
{
    EXPECT_EQ(Tavro::BoolToFortranString(true), ".TRUE.");
    EXPECT_EQ(Tavro::BoolToFortranString(false), ".FALSE.");
}

TEST(LetterCase, LettersChangeAndAllElseStays)
{
    EXPECT_EQ(Tavro::ToUpperCase("aZ az_09-[`{"), "AZ AZ_09-[`{");
    EXPECT_EQ(Tavro::ToLowerCase("aZ AZ_09-[@{"), "az az_09-[@{");
    EXPECT_EQ(Tavro::ToUpperCase(""), "");
    EXPECT_EQ(Tavro::ToLowerCase(""), "");
}

TEST(LetterCase, NulAndHighBytesStayInThePlainLocale)
{
    const std::string bytes("\0\x80\xC3\xA9\xFF", 5);
    EXPECT_EQ(Tavro::ToUpperCase(bytes), bytes);
    EXPECT_EQ(Tavro::ToLowerCase(bytes), bytes);
}

TEST(MergeString, TheDelimiterStandsBetweenThePieces)
{
    EXPECT_EQ(Tavro::MergeString({ "a", "b", "c" }, ", "), "a, b, c");
    EXPECT_EQ(Tavro::MergeString({ "a", "b" }, ""), "ab");
}

TEST(MergeString, OnePieceHasNoDelimiter) { EXPECT_EQ(Tavro::MergeString({ "a" }, ", "), "a"); }

TEST(MergeString, NoPieceGivesAnEmptyText) { EXPECT_EQ(Tavro::MergeString({}, ", "), ""); }

TEST(MergeString, EmptyPiecesAreParted)
{
    EXPECT_EQ(Tavro::MergeString({ "", "", "" }, "/"), "//");
}

namespace {

std::string stripped(std::string text, char last = '\r')
{
    Tavro::StripDOS_EOLChar(text, last);
    return text;
}

} // namespace

TEST(StripDosEol, OneCharacterIsTakenOffTheEnd)
{
    EXPECT_EQ(stripped("line\r"), "line");
    EXPECT_EQ(stripped("line\r\r"), "line\r");
    EXPECT_EQ(stripped("\r"), "");
}

TEST(StripDosEol, AnEmptyTextStays) { EXPECT_EQ(stripped(""), ""); }

TEST(StripDosEol, ATextThatEndsOtherwiseStays)
{
    EXPECT_EQ(stripped("line"), "line");
    EXPECT_EQ(stripped("line\r\n"), "line\r\n");
    EXPECT_EQ(stripped("\rline"), "\rline");
}

TEST(StripDosEol, TheCharacterIsTheCallers) { EXPECT_EQ(stripped("a;", ';'), "a"); }

// U+2070 is E2 81 B0 in UTF-8, U+00B9 is C2 B9, and so on.
TEST(Superscript, EveryKnownCharacterIsRaised)
{
    EXPECT_EQ(Tavro::convertToSuperscript("0"), "\xE2\x81\xB0");
    EXPECT_EQ(Tavro::convertToSuperscript("1"), "\xC2\xB9");
    EXPECT_EQ(Tavro::convertToSuperscript("2"), "\xC2\xB2");
    EXPECT_EQ(Tavro::convertToSuperscript("3"), "\xC2\xB3");
    EXPECT_EQ(Tavro::convertToSuperscript("4"), "\xE2\x81\xB4");
    EXPECT_EQ(Tavro::convertToSuperscript("5"), "\xE2\x81\xB5");
    EXPECT_EQ(Tavro::convertToSuperscript("6"), "\xE2\x81\xB6");
    EXPECT_EQ(Tavro::convertToSuperscript("7"), "\xE2\x81\xB7");
    EXPECT_EQ(Tavro::convertToSuperscript("8"), "\xE2\x81\xB8");
    EXPECT_EQ(Tavro::convertToSuperscript("9"), "\xE2\x81\xB9");
    EXPECT_EQ(Tavro::convertToSuperscript("+"), "\xE2\x81\xBA");
    EXPECT_EQ(Tavro::convertToSuperscript("-"), "\xE2\x81\xBB");
    EXPECT_EQ(Tavro::convertToSuperscript("="), "\xE2\x81\xBC");
    EXPECT_EQ(Tavro::convertToSuperscript("("), "\xE2\x81\xBD");
    EXPECT_EQ(Tavro::convertToSuperscript(")"), "\xE2\x81\xBE");
}

TEST(Superscript, ASequenceKeepsItsOrder)
{
    EXPECT_EQ(Tavro::convertToSuperscript("-(12)"),
        "\xE2\x81\xBB"
        "\xE2\x81\xBD"
        "\xC2\xB9"
        "\xC2\xB2"
        "\xE2\x81\xBE");
}

TEST(Superscript, AnyOtherCharacterIsDropped)
{
    EXPECT_EQ(Tavro::convertToSuperscript("x2"), "\xC2\xB2");
    EXPECT_EQ(Tavro::convertToSuperscript("m/s. \xC2\xB2"), "");
    EXPECT_EQ(Tavro::convertToSuperscript(""), "");
    EXPECT_EQ(Tavro::convertToSuperscript(std::string("1\0", 2)), "\xC2\xB9");
}
