// SPDX-License-Identifier: Apache-2.0
#include "airfoil/TableLines.h"
#include "tests/airfoil/Owners.h"

#include <gtest/gtest.h>

#include <limits>
#include <sstream>

using Owners::Recorder;
using Tavro::CoefDataX10Line;
using Tavro::CoefDataX7Line;

namespace {

// An angle of -4 and ten values 1 to 10: nine behind the angle, one on a line of its own.
constexpr const char* kElevenValues
    = "  -4.00     1.     2.     3.     4.     5.     6.     7.     8.     9.\n"
      "           10.\n";

template <typename Row>
bool read(Row& row, const std::string& text, int count, unsigned long long& lineNumber)
{
    std::istringstream stream(text);
    return row.readFromFile(stream, count, lineNumber, Recorder());
}

template <typename Row>
std::string written(const Row& row, const std::string& label, int& cardNumber)
{
    std::ostringstream stream;
    EXPECT_TRUE(row.writeToFile(stream, label, cardNumber));
    return stream.str();
}

/// Stops taking bytes behind the first `room`.
class SmallBuffer : public std::stringbuf {
public:
    explicit SmallBuffer(std::streamsize room)
        : m_room(room)
    {
    }

protected:
    std::streamsize xsputn(const char* text, std::streamsize size) override
    {
        const std::streamsize taken = std::min(size, m_room);
        m_room -= taken;
        return std::stringbuf::xsputn(text, taken);
    }

private:
    std::streamsize m_room;
};

} // namespace

TEST(CoefDataX10Line, ARowOfTenValuesIsOneLine)
{
    CoefDataX10Line row;
    unsigned long long lineNumber = 7;
    EXPECT_TRUE(read(row, kElevenValues, 10, lineNumber));
    EXPECT_EQ(lineNumber, 8U);
    EXPECT_TRUE(row.m_continuation.empty());
    EXPECT_EQ(row.dataCount(), 10);
}

TEST(CoefDataX10Line, TheEleventhValueIsOnAContinuationLine)
{
    CoefDataX10Line row;
    unsigned long long lineNumber = 7;
    EXPECT_TRUE(read(row, kElevenValues, 11, lineNumber));
    EXPECT_EQ(lineNumber, 9U);
    ASSERT_EQ(row.m_continuation.size(), 1U);
    EXPECT_EQ(row.m_continuation[0].m_values[0], 10.0);
    EXPECT_EQ(row.dataCount(), 11);
}

TEST(CoefDataX10Line, ContinuationLinesHoldNineValuesEach)
{
    for (const auto& [count, lines] : std::vector<std::pair<int, std::size_t>> {
             { 2, 0 }, { 10, 0 }, { 11, 1 }, { 19, 1 }, { 20, 2 }, { 100, 10 } }) {
        CoefDataX10Line row;
        unsigned long long lineNumber = 0;
        EXPECT_EQ(read(row, "1.", count, lineNumber), lines == 0) << count;
        EXPECT_EQ(row.m_continuation.size(), lines) << count;
        EXPECT_EQ(lineNumber, lines + 1) << count; // counted, though they are not there
    }
}

TEST(CoefDataX10Line, CountsBelowTwoNeedNoContinuation)
{
    for (const int count : { 1, 0, -100, std::numeric_limits<int>::min() }) {
        CoefDataX10Line row;
        unsigned long long lineNumber = 0;
        EXPECT_TRUE(read(row, "1.", count, lineNumber));
        EXPECT_EQ(lineNumber, 1U);
    }
}

TEST(CoefDataX10Line, WithoutItsKeyTheRowIsNotReadAndItsLinesAreCounted)
{
    CoefDataX10Line row;
    unsigned long long lineNumber = 0;
    std::istringstream stream("            1.     2.\n       next\n");
    EXPECT_FALSE(row.readFromFile(stream, 20, lineNumber, Recorder()));
    EXPECT_EQ(lineNumber, 3U);
    EXPECT_EQ(row.dataCount(), 2);
    EXPECT_EQ(row.first(), "unknown");
    std::string next;
    std::getline(stream, next);
    EXPECT_EQ(next, "       next"); // left for the next row
}

TEST(CoefDataX10Line, AMissingContinuationLineIsAFailure)
{
    CoefDataX10Line row;
    unsigned long long lineNumber = 0;
    EXPECT_FALSE(read(row, "     1.     2.\n", 11, lineNumber));
    EXPECT_EQ(lineNumber, 2U);
    EXPECT_EQ(row.first(), "1");
}

TEST(CoefDataX10Line, ReadAgainItHasNothingOfTheFormerRow)
{
    CoefDataX10Line row;
    unsigned long long lineNumber = 0;
    EXPECT_TRUE(read(row, kElevenValues, 11, lineNumber));
    EXPECT_FALSE(read(row, "     1.\n", 11, lineNumber));
    EXPECT_EQ(row.dataCount(), 1);
}

TEST(CoefDataX10Line, TheKeyIsPrintedAsANumber)
{
    CoefDataX10Line row;
    EXPECT_EQ(row.first(), "unknown");
    unsigned long long lineNumber = 0;
    EXPECT_TRUE(read(row, "-180.00", 2, lineNumber));
    EXPECT_EQ(row.first(), "-180");
    EXPECT_TRUE(read(row, "   2.50", 2, lineNumber));
    EXPECT_EQ(row.first(), "2.5");
}

TEST(CoefDataX10Line, WithoutALabelNoNumberIsWrittenButCounted)
{
    CoefDataX10Line row;
    unsigned long long lineNumber = 0;
    EXPECT_TRUE(read(row, kElevenValues, 11, lineNumber));
    int cardNumber = 5;
    EXPECT_EQ(written(row, "", cardNumber),
        "  -4.00     1.     2.     3.     4.     5.     6.     7.     8.     9.\n"
        "           10.                                                        \n");
    EXPECT_EQ(cardNumber, 7);
}

TEST(CoefDataX10Line, ALabelIsFollowedByTheRunningNumber)
{
    CoefDataX10Line row;
    unsigned long long lineNumber = 0;
    EXPECT_TRUE(read(row, kElevenValues, 11, lineNumber));
    int cardNumber = 35;
    EXPECT_EQ(written(row, "CL", cardNumber),
        "  -4.00     1.     2.     3.     4.     5.     6.     7.     8.     9.  CLZ\n"
        "           10.                                                          CL1[\n");
    EXPECT_EQ(cardNumber, 37);
}

TEST(CoefDataX10Line, TheNumberGoesOnAfterAFailure)
{
    CoefDataX10Line row;
    unsigned long long lineNumber = 0;
    EXPECT_TRUE(read(row, kElevenValues, 11, lineNumber));
    SmallBuffer buffer(80); // one line of 70 columns, and part of another
    std::ostream stream(&buffer);
    int cardNumber = 0;
    EXPECT_FALSE(row.writeToFile(stream, "", cardNumber));
    EXPECT_EQ(cardNumber, 2);
    EXPECT_FALSE(row.writeToFile(stream, "", cardNumber)); // the stream is not good any more
    EXPECT_EQ(cardNumber, 4);
}

TEST(CoefDataX10Line, TheNumberMayRunOver)
{
    const CoefDataX10Line row;
    int cardNumber = std::numeric_limits<int>::max();
    EXPECT_EQ(written(row, "", cardNumber), std::string(70, ' ') + "\n");
    EXPECT_EQ(cardNumber, std::numeric_limits<int>::min());
}

TEST(CoefDataX7Line, ContinuationLinesHoldSixValuesFromColumnTen)
{
    const std::string text
        = "     -4.00        1.        2.        3.        4.        5.        6.\n"
          "                  7.\n";
    CoefDataX7Line row;
    unsigned long long lineNumber = 0;
    EXPECT_TRUE(read(row, text, 8, lineNumber));
    EXPECT_EQ(lineNumber, 2U);
    EXPECT_EQ(row.dataCount(), 8);
    EXPECT_EQ(row.first(), "-4");
    ASSERT_EQ(row.m_continuation.size(), 1U);
    EXPECT_EQ(row.m_continuation[0].m_values[0], 7.0);
    int cardNumber = 9;
    EXPECT_EQ(written(row, "X", cardNumber),
        "     -4.00        1.        2.        3.        4.        5.        6.  X9\n"
        "                  7.                                                    XA\n");
}

TEST(CoefDataX7Line, TheNumberOfContinuationLinesFollowsTheCount)
{
    for (const auto& [count, lines] :
        std::vector<std::pair<int, std::size_t>> { { 7, 0 }, { 8, 1 }, { 13, 1 }, { 14, 2 } }) {
        CoefDataX7Line row;
        unsigned long long lineNumber = 0;
        (void)read(row, "1.", count, lineNumber); // the missing lines make it false
        EXPECT_EQ(row.m_continuation.size(), lines) << count;
    }
}
