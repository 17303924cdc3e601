// SPDX-License-Identifier: Apache-2.0
#include "airfoil/TableLines.h"
#include "tests/airfoil/Owners.h"
#include "tests/support/Isolated.h"
#include "tests/support/Locales.h"

#include <gtest/gtest.h>

#include <array>
#include <cmath>
#include <iostream>
#include <limits>

using Owners::Heard;
using Owners::Recorder;

namespace {

struct Field {
    double value = -99;
    bool present = false;
    int decimals = -99;
    bool leadingZero = false;
};

Field extract(const std::string& line, unsigned long long index, unsigned long long width,
    unsigned long long offset, const Tavro::BaseData& owner)
{
    std::array<double, 4> values {};
    std::array<bool, 4> present {};
    std::array<int, 4> decimals {};
    std::array<bool, 4> leadingZero {};
    Tavro::extractDouble(line, index, width, offset, values.data(), present.data(), decimals.data(),
        leadingZero.data(), owner);
    return { values.at(index), present.at(index), decimals.at(index), leadingZero.at(index) };
}

/// A whole line as one field.
Field whole(const std::string& line, const Tavro::BaseData& owner)
{
    return extract(line, 0, line.size() + 1, 0, owner);
}

void expect_missing(const Field& field)
{
    EXPECT_FALSE(field.present);
    EXPECT_EQ(field.value, 0.0);
    EXPECT_EQ(field.decimals, 2);
    EXPECT_TRUE(field.leadingZero);
}

} // namespace

TEST(ExtractDouble, FieldsStartAtWidthTimesIndexPlusOffset)
{
    const Recorder owner;
    const std::string line = "##1.252.375"; // offset 2, two fields of width 4 and what is left
    EXPECT_EQ(extract(line, 0, 4, 2, owner).value, 1.25);
    EXPECT_EQ(extract(line, 1, 4, 2, owner).value, 2.37);
    EXPECT_EQ(extract(line, 2, 4, 2, owner).value, 5.0);
    EXPECT_TRUE(owner.m_heard.empty()); // what is outside the field is never looked at
}

TEST(ExtractDouble, AFieldBehindTheEndOfTheLineIsMissing)
{
    const Recorder owner;
    expect_missing(extract("1.25", 1, 4, 0, owner));
    expect_missing(extract("1.25", 0, 4, 4, owner));
    expect_missing(extract("", 0, 7, 0, owner));
}

TEST(ExtractDouble, AFieldOfOnlyBlanksIsMissing)
{
    const Recorder owner;
    expect_missing(extract("       1.0", 0, 7, 0, owner));
    EXPECT_TRUE(owner.m_heard.empty());
}

TEST(ExtractDouble, AFieldOfNoColumnsIsMissing)
{
    const Recorder owner;
    expect_missing(extract("1.25", 0, 0, 0, owner));
}

TEST(ExtractDouble, ColumnsBeyondAllNumbersAreMissing)
{
    const Recorder owner;
    constexpr auto kMost = std::numeric_limits<unsigned long long>::max();
    expect_missing(extract("1.25", 3, kMost / 2, 0, owner)); // the product would wrap around
    expect_missing(extract("1.25", 0, 7, kMost, owner));
}

TEST(ExtractDouble, AShortLineGivesANarrowerField)
{
    const Recorder owner;
    const Field field = extract("      1.2", 1, 7, 0, owner); // ".2" was not cut off: columns 7, 8
    EXPECT_TRUE(field.present);
    EXPECT_EQ(field.value, 0.2);
}

TEST(ExtractDouble, WhiteSpaceAroundTheNumberIsRemoved)
{
    const Recorder owner;
    EXPECT_EQ(whole(" \t1.5\v\f\r", owner).value, 1.5);
    EXPECT_EQ(whole("  -3", owner).value, -3.0);
    EXPECT_TRUE(owner.m_heard.empty());
}

TEST(ExtractDouble, ATabIsThereAndReadsAsZero)
{
    const Recorder owner;
    const Field field = whole(" \t ", owner);
    EXPECT_TRUE(field.present);
    EXPECT_EQ(field.value, 0.0);
    EXPECT_EQ(field.decimals, 0);
    EXPECT_FALSE(field.leadingZero);
}

TEST(ExtractDouble, BadCharactersAreDropped)
{
    const Recorder owner;
    const Field field = whole("1.2a3", owner);
    EXPECT_EQ(field.value, 1.23);
    EXPECT_EQ(field.decimals, 2); // of the mended text
    EXPECT_EQ(owner.m_heard, Heard { "1.2a3>1.23" });
}

TEST(ExtractDouble, ATextWithoutAGoodCharacterBecomesZero)
{
    const Recorder owner;
    const Field field = whole(" abc ", owner);
    EXPECT_TRUE(field.present);
    EXPECT_EQ(field.value, 0.0);
    EXPECT_EQ(field.decimals, 1); // "0.0"
    EXPECT_TRUE(field.leadingZero);
    EXPECT_EQ(owner.m_heard, Heard { "abc>0.0" });
}

TEST(ExtractDouble, AnExponentIsNotPartOfANumber)
{
    const Recorder owner;
    EXPECT_EQ(whole("1.5E-3", owner).value, 1.5); // "1.5-3" up to the sign
    EXPECT_EQ(owner.m_heard, Heard { "1.5E-3>1.5-3" });
}

TEST(ExtractDouble, ABlankWithinANumberIsBad)
{
    const Recorder owner;
    EXPECT_EQ(whole("1 .5", owner).value, 1.5);
    EXPECT_EQ(owner.m_heard, Heard { "1 .5>1.5" });
}

TEST(ExtractDouble, AZeroByteIsBad)
{
    const Recorder owner;
    EXPECT_EQ(whole(std::string("1\0.5", 4), owner).value, 1.5);
    EXPECT_EQ(owner.m_heard.size(), 1U);
}

TEST(ExtractDouble, ARefusedRepairKeepsTheBadText)
{
    const Recorder owner(false);
    EXPECT_EQ(whole("1.2a3", owner).value, 1.2);
    EXPECT_EQ(whole("1.2a3", owner).decimals, 3); // "2a3"
    EXPECT_EQ(whole("abc", owner).value, 0.0);
    EXPECT_EQ(whole("1.5E-3", owner).value, 0.0015);
}

TEST(ExtractDouble, DecimalsAreTheCharactersBehindTheLastPoint)
{
    const Recorder owner;
    EXPECT_EQ(whole("5", owner).decimals, 0);
    EXPECT_EQ(whole("5.", owner).decimals, 0);
    EXPECT_EQ(whole("5.250", owner).decimals, 3);
    EXPECT_EQ(whole("1.2.345", owner).decimals, 3);
}

TEST(ExtractDouble, TheLeadingZeroIsSeen)
{
    const Recorder owner;
    for (const char* with :
        { "0.25", "-0.25", "+0.25", "0", "1.5", "-1.5", "1", "-1", "007", ".1e" })
        EXPECT_EQ(whole(with, owner).leadingZero, std::string(with) != ".1e") << with;
    for (const char* without : { ".25", "-.25", "+.25", "-.5", ".0", "-", "." })
        EXPECT_FALSE(whole(without, owner).leadingZero) << without;
}

TEST(ExtractDouble, TheLeadingPartThatIsANumberCounts)
{
    const Recorder owner;
    const std::vector<std::pair<std::string, double>> texts {
        { "-", 0 },
        { "+.", 0 },
        { "..5", 0 },
        { "--5", 0 },
        { "+-5", 0 },
        { "-+5", 0 },
        { "1-2", 1 },
        { "1+", 1 },
        { "1.2.3", 1.2 },
        { "+2.5", 2.5 },
        { "-.5", -0.5 },
        { "5.", 5 },
        { "00012", 12 },
    };
    for (const auto& [text, value] : texts) {
        EXPECT_EQ(whole(text, owner).value, value) << text;
        EXPECT_TRUE(whole(text, owner).present) << text;
    }
    EXPECT_TRUE(owner.m_heard.empty()); // all of these are good characters
    EXPECT_FALSE(std::signbit(whole("-", owner).value));
    EXPECT_TRUE(std::signbit(whole("-0.0", owner).value));
}

TEST(ExtractDouble, NumbersBeyondTheRangeAreInfiniteOrZero)
{
    const Recorder owner;
    EXPECT_EQ(whole(std::string(400, '9'), owner).value, std::numeric_limits<double>::infinity());
    EXPECT_EQ(
        whole("-" + std::string(400, '9'), owner).value, -std::numeric_limits<double>::infinity());
    EXPECT_EQ(whole("." + std::string(400, '0') + "1", owner).value, 0.0);
}

TEST(ExtractDouble, ACommaLocaleChangesNothing)
{
    const auto outcome = Testing::run_isolated([] {
        if (!Testing::use_comma_locale()) {
            std::cout << "skip";
            return;
        }
        const Recorder owner;
        std::cout << (whole("1.25", owner).value == 1.25) << whole("1.25", owner).decimals
                  << Tavro::formatDouble(1234.5, 2, 9, true, false);
    });
    if (outcome.out == "skip")
        GTEST_SKIP() << "no locale with a decimal comma can be made here";
    EXPECT_EQ(outcome.out, "12  1234.50");
}

TEST(ConversionWarning, TheDefaultSaysSoOnStandardOutputAndAgrees)
{
    const auto outcome = Testing::run_isolated([] {
        const Tavro::BaseData owner;
        const Field mended = whole("1.2a3", owner);
        const Field empty = whole("abc", owner);
        if (mended.value != 1.23 || empty.value != 0.0 || !empty.present)
            std::cout << "read otherwise";
    });
    EXPECT_EQ(outcome.out, "Changing '1.2a3' to '1.23'\nChanging 'abc' to '0.0'\n");
}
