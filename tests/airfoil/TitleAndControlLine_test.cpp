// SPDX-License-Identifier: Apache-2.0
#include "airfoil/AirfoilTable.h"

#include <gtest/gtest.h>

#include <sstream>
#include <stdexcept>

using Control = Tavro::AirfoilTable::TitleAndControlLine;

namespace {

const std::string kTitle = "A title of thirty characters, ";

bool parses(const std::string& counts) { return Control().parse(kTitle + counts); }

std::array<std::int32_t, 6> counts_of(const std::string& counts)
{
    Control control;
    EXPECT_TRUE(control.parse(kTitle + counts)) << counts;
    return control.m_counts;
}

std::size_t lines_of(const std::string& counts)
{
    Control control;
    EXPECT_TRUE(control.parse(kTitle + counts)) << counts;
    return control.dataLines();
}

using Counts = std::array<std::int32_t, 6>;

} // namespace

TEST(TitleAndControlLine, HasTheTitleInThirtyColumnsAndSixCountsInTwoEach)
{
    std::istringstream stream(kTitle + "112233445566 and more text\nnext\n");
    Control control;
    EXPECT_TRUE(control.readFromFile(stream));
    EXPECT_EQ(control.m_title, kTitle);
    EXPECT_EQ(control.m_line, kTitle + "112233445566 and more text");
    EXPECT_EQ(control.m_counts, (Counts { 11, 22, 33, 44, 55, 66 }));
    EXPECT_EQ(control.machCount(0), 11);
    EXPECT_EQ(control.angleCount(0), 22);
    EXPECT_EQ(control.machCount(1), 33);
    EXPECT_EQ(control.angleCount(1), 44);
    EXPECT_EQ(control.machCount(2), 55);
    EXPECT_EQ(control.angleCount(2), 66);
    EXPECT_THROW((void)control.machCount(3), std::out_of_range);
}

TEST(TitleAndControlLine, ACountMayStandOnEitherSideOfItsColumns)
{
    EXPECT_EQ(counts_of(" 99 099  0 1"), (Counts { 9, 9, 9, 9, 0, 1 }));
    EXPECT_EQ(counts_of("1 1 1 1 1 1 "), (Counts { 1, 1, 1, 1, 1, 1 }));
    EXPECT_EQ(counts_of("           7"), (Counts { 0, 0, 0, 0, 0, 7 }));
}

TEST(TitleAndControlLine, ALineBelow42ColumnsIsNone)
{
    EXPECT_FALSE(parses(" 1 1 1 1 1 "));
    EXPECT_TRUE(parses(" 1 1 1 1 1 1"));
    EXPECT_FALSE(Control().parse(""));
}

TEST(TitleAndControlLine, OnlyDigitsAndBlanksMayStandInTheCounts)
{
    EXPECT_FALSE(parses(" 1 1 1 1 1-1"));
    EXPECT_FALSE(parses(" 1 1 1 1 1.1"));
    EXPECT_FALSE(parses(" 1\t1 1 1 1 1"));
    EXPECT_FALSE(parses("x1 1 1 1 1 1"));
    EXPECT_TRUE(parses(" 1 1 1 1 1 1x")); // behind them anything may
}

TEST(TitleAndControlLine, OnlyBlanksAreNoCounts) { EXPECT_FALSE(parses("             ")); }

TEST(TitleAndControlLine, TheTitleIsKeptAlsoIfTheCountsAreBad)
{
    Control control;
    EXPECT_FALSE(control.parse(kTitle + " 1 1 1 1 1 x"));
    EXPECT_EQ(control.m_title, kTitle);
    EXPECT_EQ(control.m_counts, Counts {});
}

TEST(TitleAndControlLine, ACarriageReturnDoesNotFillAColumn)
{
    std::istringstream stream(kTitle + " 1 1 1 1 1 \r\n" + kTitle + " 1 1 1 1 1 1\r\n");
    Control control;
    EXPECT_FALSE(control.readFromFile(stream));
    EXPECT_TRUE(control.readFromFile(stream));
    EXPECT_EQ(control.m_line, kTitle + " 1 1 1 1 1 1");
}

TEST(TitleAndControlLine, ALastLineWithoutALineEndIsRead)
{
    std::istringstream stream(kTitle + " 1 1 1 1 1 1");
    EXPECT_TRUE(Control().readFromFile(stream));
}

TEST(TitleAndControlLine, AStreamAtItsEndOrNotGoodIsNotRead)
{
    std::istringstream stream("");
    EXPECT_FALSE(Control().readFromFile(stream));
    std::istringstream failed(kTitle + " 1 1 1 1 1 1\n");
    failed.setstate(std::ios::failbit);
    EXPECT_FALSE(Control().readFromFile(failed));
}

TEST(TitleAndControlLine, ATableHasAMachLineAndARowPerAngleForEveryNineMachNumbers)
{
    // ((M - 1) / 9 + 1) * (A + 1), in whole numbers
    EXPECT_EQ(lines_of(" 1 1 0 0 0 0"), 2U);
    EXPECT_EQ(lines_of(" 939 0 0 0 0"), 40U); // 1 * 40
    EXPECT_EQ(lines_of("1039 0 0 0 0"), 80U); // 2 * 40
    EXPECT_EQ(lines_of("1839 0 0 0 0"), 80U);
    EXPECT_EQ(lines_of("1939 0 0 0 0"), 120U); // 3 * 40
    EXPECT_EQ(lines_of("99 0 0 0 0 0"), 11U);
    EXPECT_EQ(lines_of("999999999999"), 3300U); // three times 11 * 100
}

TEST(TitleAndControlLine, ATableWithoutMachNumbersHasNoLines)
{
    EXPECT_EQ(lines_of(" 099 099 099"), 0U);
    EXPECT_EQ(lines_of(" 099 1 1 099"), 2U);
}

TEST(TitleAndControlLine, IsWrittenIn72ColumnsAndTheLabel)
{
    Control control;
    ASSERT_TRUE(control.parse("Short title                   1 2 3 4 5 66"));
    std::ostringstream stream;
    EXPECT_TRUE(control.writeToFile(stream, ""));
    EXPECT_TRUE(control.writeToFile(stream, "LABEL"));
    EXPECT_EQ(stream.str(),
        "Short title                    1 2 3 4 566                              \n"
        "Short title                    1 2 3 4 566                              LABEL\n");
}

TEST(TitleAndControlLine, ATitleTooShortIsFilledAndOneTooLongIsNotCut)
{
    Control control;
    control.m_title = "T";
    control.m_counts = { 1, 0, 0, 0, 0, 0 };
    std::ostringstream stream;
    EXPECT_TRUE(control.writeToFile(stream, "."));
    EXPECT_EQ(stream.str(),
        "T                              1 0 0 0 0 0                              .\n");
    control.m_title = std::string(31, 't');
    std::ostringstream longer;
    EXPECT_TRUE(control.writeToFile(longer, ""));
    EXPECT_EQ(longer.str().substr(0, 33), std::string(31, 't') + " 1");
}

TEST(TitleAndControlLine, AStreamThatIsNotGoodIsNotWritten)
{
    std::ostringstream stream;
    stream.setstate(std::ios::badbit);
    EXPECT_FALSE(Control().writeToFile(stream, ""));
}
