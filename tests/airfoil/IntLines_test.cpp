// SPDX-License-Identifier: Apache-2.0
#include "airfoil/TableLines.h"
#include "tests/airfoil/Owners.h"
#include "tests/support/Isolated.h"

#include <gtest/gtest.h>

#include <iostream>
#include <limits>
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

} // namespace

TEST(IntX14Line, HasFourteenFieldsOfFiveFromColumnZero)
{
    const std::string text
        = "    1    2    3    4    5    6    7    8    9   10   11   12   13   14";
    const auto line = read<Tavro::IntX14Line>(text + "   99");
    for (std::size_t i = 0; i < 14; ++i)
        EXPECT_EQ(line.m_values.at(i), static_cast<int>(i + 1));
    EXPECT_EQ(line.dataCount(), 14);
    EXPECT_EQ(written(line), text + "\n");
}

TEST(IntX20Line, HasTwentyFieldsOfTwoFromColumnZero)
{
    const std::string text = " 1 2 3 4 5 6 7 8 91011121314151617181920";
    const auto line = read<Tavro::IntX20Line>(text + "99");
    for (std::size_t i = 0; i < 20; ++i)
        EXPECT_EQ(line.m_values.at(i), static_cast<int>(i + 1));
    EXPECT_EQ(line.dataCount(), 20);
    EXPECT_EQ(written(line), text + "\n");
}

TEST(IntLine, MissingFieldsAreZeroAndWriteAsBlanks)
{
    const auto line = read<Tavro::IntX14Line>("    7       -12");
    EXPECT_EQ(line.dataCount(), 2);
    EXPECT_FALSE(line.m_present[1]);
    EXPECT_EQ(line.m_values[1], 0);
    EXPECT_FALSE(line.m_present[3]);
    EXPECT_EQ(written(line), "    7       -12" + std::string(55, ' ') + "\n");
}

TEST(IntLine, ALeftJustifiedNumberGoesBackToTheRight)
{
    const auto line = read<Tavro::IntX14Line>("7         -12");
    EXPECT_EQ(line.m_values[0], 7);
    EXPECT_FALSE(line.m_present[1]);
    EXPECT_EQ(line.m_values[1], 0);
    EXPECT_EQ(line.m_values[2], -12);
    EXPECT_EQ(written(line), "    7       -12" + std::string(55, ' ') + "\n");
}

TEST(IntLine, BadCharactersAreMended)
{
    const Recorder owner;
    const auto line = read<Tavro::IntX14Line>("  1a2  abc  1.5", owner);
    EXPECT_EQ(owner.m_heard, (Heard { "1a2>12", "abc>0", "1.5>15" }));
    EXPECT_EQ(line.m_values[0], 12);
    EXPECT_EQ(line.m_values[1], 0);
    EXPECT_TRUE(line.m_present[1]);
    EXPECT_EQ(line.m_values[2], 15);
}

TEST(IntLine, ARefusedRepairKeepsTheBadText)
{
    const Recorder owner(false);
    const auto line = read<Tavro::IntX14Line>("  1a2  abc", owner);
    EXPECT_EQ(line.m_values[0], 1);
    EXPECT_EQ(line.m_values[1], 0);
}

TEST(IntLine, TheDefaultOwnerSaysWhatItChanges)
{
    const auto outcome
        = Testing::run_isolated([] { (void)read<Tavro::IntX20Line>("x1 y", Tavro::BaseData()); });
    EXPECT_EQ(outcome.out, "Changing 'x1' to '1'\nChanging 'y' to '0'\n");
}

TEST(IntLine, TheLeadingPartThatIsANumberCounts)
{
    const auto line = read<Tavro::IntX14Line>("  1-2  +-5    - +007  --3");
    EXPECT_EQ(line.m_values[0], 1);
    EXPECT_EQ(line.m_values[1], 0);
    EXPECT_EQ(line.m_values[2], 0);
    EXPECT_EQ(line.m_values[3], 7);
    EXPECT_EQ(line.m_values[4], 0);
    EXPECT_EQ(line.dataCount(), 5);
}

TEST(IntLine, ALabelStandsTwoBlanksBehindTheFields)
{
    const auto line = read<Tavro::IntX20Line>(" 1");
    EXPECT_EQ(written(line, "C"), " 1" + std::string(38, ' ') + "  C\n");
}

TEST(IntLine, ANumberTooLongPushesTheOthers)
{
    auto line = read<Tavro::IntX20Line>(" 1 2");
    line.m_values[0] = std::numeric_limits<std::int32_t>::min();
    EXPECT_EQ(written(line), "-2147483648 2" + std::string(36, ' ') + "\n");
}

TEST(IntLine, CarriageReturnAndTrailingWhiteSpaceAreRemoved)
{
    EXPECT_EQ(read<Tavro::IntX14Line>("    7  \t\r\n").m_line, "    7");
}

TEST(IntLine, BehindTheLastLineNothingIsRead)
{
    std::istringstream stream("    7\n");
    Tavro::IntX14Line line;
    EXPECT_TRUE(line.readFromFile(stream, Recorder()));
    EXPECT_FALSE(line.readFromFile(stream, Recorder()));
    EXPECT_EQ(line.dataCount(), 0);
    EXPECT_FALSE(line.readFromFile(stream, Recorder())); // the stream is not good now
}

TEST(IntLine, AStreamThatIsNotGoodIsNotWritten)
{
    std::ostringstream stream;
    stream.setstate(std::ios::badbit);
    EXPECT_FALSE(Tavro::IntX14Line().writeToFile(stream, ""));
}
