// SPDX-License-Identifier: Apache-2.0
#include "airfoil/TableLines.h"
#include "tests/airfoil/Owners.h"

#include <gtest/gtest.h>

#include <sstream>

using Owners::Heard;
using Owners::Recorder;

namespace {

template <typename Line>
Line read(const std::string& text, const Tavro::BaseData& owner = Recorder())
{
    std::istringstream stream(text);
    Line line;
    EXPECT_TRUE(line.readFromFile(stream, owner));
    return line;
}

template <typename Line>
std::string written(const Line& line, const std::string& label = "")
{
    std::ostringstream stream;
    EXPECT_TRUE(line.writeToFile(stream, label));
    return stream.str();
}

template <typename Line>
std::string through(const std::string& text)
{
    return written(read<Line>(text));
}

/// Field i holds i + 1 in its last column, so that a shifted cut would show.
template <typename Line>
void expect_fields(const std::string& text)
{
    const Line line = read<Line>(text);
    for (std::size_t i = 0; i < Line::kFields; ++i) {
        EXPECT_TRUE(line.m_present.at(i)) << i;
        EXPECT_EQ(line.m_values.at(i), static_cast<double>(i + 1)) << i;
        EXPECT_EQ(line.m_decimals.at(i), 0) << i;
    }
    EXPECT_EQ(line.dataCount(), static_cast<int>(Line::kFields));
}

} // namespace

TEST(DoubleX6Line, HasSixFieldsOfTenFromColumnTen)
{
    const std::string line
        = "##########         1         2         3         4         5         6";
    expect_fields<Tavro::DoubleX6Line>(line + "        99");
    EXPECT_EQ(through<Tavro::DoubleX6Line>(line),
        "                  1.        2.        3.        4.        5.        6.\n");
}

TEST(DoubleX6NoSpaceLine, HasSixFieldsOfTenFromColumnZero)
{
    const std::string line = "         1         2         3         4         5         6";
    expect_fields<Tavro::DoubleX6NoSpaceLine>(line + "        99");
    EXPECT_EQ(through<Tavro::DoubleX6NoSpaceLine>(line),
        "        1.        2.        3.        4.        5.        6.\n");
}

TEST(DoubleX7Line, HasSevenFieldsOfTenFromColumnZero)
{
    const std::string line
        = "         1         2         3         4         5         6         7";
    expect_fields<Tavro::DoubleX7Line>(line + "        99");
    EXPECT_EQ(through<Tavro::DoubleX7Line>(line),
        "        1.        2.        3.        4.        5.        6.        7.\n");
}

TEST(DoubleX9Line, HasNineFieldsOfSevenFromColumnSeven)
{
    const std::string line
        = "#######      1      2      3      4      5      6      7      8      9";
    expect_fields<Tavro::DoubleX9Line>(line + "     99");
    EXPECT_EQ(through<Tavro::DoubleX9Line>(line),
        "            1.     2.     3.     4.     5.     6.     7.     8.     9.\n");
}

TEST(DoubleX10Line, HasTenFieldsOfSevenFromColumnZero)
{
    const std::string line
        = "      1      2      3      4      5      6      7      8      9     10";
    expect_fields<Tavro::DoubleX10Line>(line + "     99");
    EXPECT_EQ(through<Tavro::DoubleX10Line>(line),
        "     1.     2.     3.     4.     5.     6.     7.     8.     9.    10.\n");
}

TEST(DoubleLine, ANewLineHasOnlyMissingFields)
{
    const Tavro::DoubleX6NoSpaceLine line;
    EXPECT_EQ(line.dataCount(), 0);
    for (std::size_t i = 0; i < 6; ++i) {
        EXPECT_EQ(line.m_values.at(i), 0.0);
        EXPECT_EQ(line.m_decimals.at(i), 2);
        EXPECT_TRUE(line.m_leadingZero.at(i));
    }
    EXPECT_EQ(written(line), std::string(60, ' ') + "\n");
}

TEST(DoubleLine, AShortLineKeepsWhatItHasAndTheRestIsBlank)
{
    const auto line = read<Tavro::DoubleX10Line>("   1.50  -2.25    3.");
    EXPECT_EQ(line.dataCount(), 3);
    EXPECT_EQ(line.m_values[2], 3.0);
    EXPECT_FALSE(line.m_present[3]);
    EXPECT_EQ(written(line), "   1.50  -2.25     3." + std::string(49, ' ') + "\n");
}

TEST(DoubleLine, ABlankFieldInTheMiddleIsNotCounted)
{
    const auto line = read<Tavro::DoubleX10Line>("   1.50          3.00");
    EXPECT_EQ(line.dataCount(), 2);
    EXPECT_FALSE(line.m_present[1]);
    EXPECT_EQ(written(line), "   1.50          3.00" + std::string(49, ' ') + "\n");
}

TEST(DoubleLine, DecimalsAndLeadingZeroGoBackAsTheyCame)
{
    const std::string text = "    .25   0.25    -.5   -0.5  .1230     0.   100.  -7.25";
    EXPECT_EQ(through<Tavro::DoubleX10Line>(text), text + std::string(14, ' ') + "\n");
}

TEST(DoubleLine, CarriageReturnAndTrailingWhiteSpaceAreRemoved)
{
    const auto line = read<Tavro::DoubleX9Line>("          1.50 \t  \r\n");
    EXPECT_EQ(line.m_line, "          1.50");
    EXPECT_EQ(line.dataCount(), 1);
}

TEST(DoubleLine, ALineOfNothingIsReadAndHasNoValues)
{
    EXPECT_EQ(read<Tavro::DoubleX9Line>("\n").dataCount(), 0);
    EXPECT_EQ(read<Tavro::DoubleX9Line>("\r\n").dataCount(), 0);
}

TEST(DoubleLine, ALastLineWithoutALineEndIsRead)
{
    std::istringstream stream("   1.50");
    Tavro::DoubleX10Line line;
    EXPECT_TRUE(line.readFromFile(stream, Recorder()));
    EXPECT_TRUE(stream.eof());
    EXPECT_EQ(line.m_values[0], 1.5);
}

TEST(DoubleLine, BehindTheLastLineNothingIsRead)
{
    std::istringstream stream("   1.50\n");
    Tavro::DoubleX10Line line;
    EXPECT_TRUE(line.readFromFile(stream, Recorder()));
    EXPECT_FALSE(line.readFromFile(stream, Recorder()));
    EXPECT_EQ(line.dataCount(), 0); // the former line has not stayed
}

TEST(DoubleLine, AStreamThatIsNotGoodIsNotTouched)
{
    std::istringstream in("   1.50\n");
    in.setstate(std::ios::eofbit);
    Tavro::DoubleX10Line line;
    EXPECT_FALSE(line.readFromFile(in, Recorder()));
    std::ostringstream out;
    out.setstate(std::ios::failbit);
    EXPECT_FALSE(line.writeToFile(out, ""));
    EXPECT_EQ(out.str(), "");
}

TEST(DoubleLine, BadFieldsAreMendedAndTheLineIsRead)
{
    const Recorder owner;
    const auto line = read<Tavro::DoubleX10Line>("  1.2a3    abc   O.50\n", owner);
    EXPECT_EQ(owner.m_heard, (Heard { "1.2a3>1.23", "abc>0.0", "O.50>.50" }));
    EXPECT_EQ(line.dataCount(), 3);
    EXPECT_EQ(written(line), "   1.23    0.0    .50" + std::string(49, ' ') + "\n");
}

TEST(DoubleLine, ALabelStandsTwoBlanksBehindTheFields)
{
    const auto line = read<Tavro::DoubleX6NoSpaceLine>("       1.5");
    EXPECT_EQ(written(line, "CARD"), "       1.5" + std::string(50, ' ') + "  CARD\n");
}

TEST(DoubleLine, ANumberTooLongPushesTheOthers)
{
    auto line = read<Tavro::DoubleX10Line>("   0.50   1.00");
    line.m_values[0] = -0.1234567;
    line.m_decimals[0] = 7;
    EXPECT_EQ(written(line), "-.1234567   1.00" + std::string(56, ' ') + "\n");
}

TEST(DoubleLine, WritingLeavesFixedNotationAndABlankFill)
{
    std::ostringstream stream;
    stream.fill('#');
    EXPECT_TRUE(Tavro::DoubleX10Line().writeToFile(stream, ""));
    EXPECT_EQ(stream.fill(), ' ');
    EXPECT_EQ(stream.flags() & std::ios::floatfield, std::ios::fixed);
}

TEST(DoubleLine, TheStreamsWidthAndLocaleDoNotShow)
{
    std::ostringstream stream;
    stream.width(200);
    stream.fill('#');
    EXPECT_TRUE(read<Tavro::DoubleX6NoSpaceLine>("   1234.50").writeToFile(stream, ""));
    EXPECT_EQ(stream.str(), "   1234.50" + std::string(50, ' ') + "\n");
}
