// SPDX-License-Identifier: Apache-2.0
#include "standins/cards/AdaptBoxes.h"

#include "tests/standins/cards/CardFiles.h"

#include <gtest/gtest.h>

namespace {

using Standins::AdaptBox;
using Standins::AdaptBoxes;
using Standins::read_adapt_boxes;
using Testing::changed;
using Testing::verdict;

constexpr const char* kFile = "#ADAPT BOXES\n"
                              "2\n"
                              "-1  -2  -3  1  2  3\n"
                              "0.5  0  0  1e+06  0.333333  1e-05\n"
                              "1\n"
                              "-1  -1  -1  -1  -1  -1\n";
constexpr const char* kExpectedBox
    = "expected six numbers of six significant digits, two blanks between them";

std::string verdict_with(const std::string& from, const std::string& to)
{
    return verdict(changed(kFile, from, to), read_adapt_boxes);
}

TEST(AdaptBoxes, ReadsBothLists)
{
    const AdaptBoxes boxes = Testing::value_of(kFile, read_adapt_boxes);
    ASSERT_EQ(boxes.m_vecFirst.size(), 2U);
    EXPECT_EQ(boxes.m_vecFirst[0], (AdaptBox { -1, -2, -3, 1, 2, 3 }));
    EXPECT_EQ(boxes.m_vecFirst[1], (AdaptBox { 0.5, 0, 0, 1e6, 0.333333, 1e-5 }));
    ASSERT_EQ(boxes.m_vecSecond.size(), 1U);
    EXPECT_EQ(boxes.m_vecSecond[0], (AdaptBox { -1, -1, -1, -1, -1, -1 }));
}

TEST(AdaptBoxes, NoLineMoreOrLessIsAccepted)
{
    EXPECT_EQ(Testing::wrongly_accepted(kFile, read_adapt_boxes), "");
}

TEST(AdaptBoxes, OtherFirstLineIsRefused)
{
    EXPECT_EQ(verdict_with("#ADAPT", "# ADAPT"),
        "card:1: found \"# ADAPT BOXES\", expected \"#ADAPT BOXES\"");
}

TEST(AdaptBoxes, EmptyListIsRefused)
{
    EXPECT_EQ(verdict_with("\n1\n", "\n0\n"),
        "card:5: found \"0\", expected a number of boxes, 1 or more");
}

TEST(AdaptBoxes, OtherCountIsRefused)
{
    EXPECT_EQ(verdict_with("\n2\n", "\n1\n"),
        "card:4: found \"0.5  0  0  1e+06  0.333333  1e-05\", expected a number of boxes, 1 or "
        "more");
    EXPECT_EQ(verdict_with("\n2\n", "\n3\n"), std::string("card:5: found \"1\", ") + kExpectedBox);
}

TEST(AdaptBoxes, BoxOfFiveNumbersIsRefused)
{
    EXPECT_EQ(verdict_with("-1  -2  -3  1  2  3", "-1  -2  -3  1  2"),
        std::string("card:3: found \"-1  -2  -3  1  2\", ") + kExpectedBox);
}

TEST(AdaptBoxes, OneBlankBetweenNumbersIsRefused)
{
    EXPECT_EQ(verdict_with("-1  -2", "-1 -2"),
        std::string("card:3: found \"-1 -2  -3  1  2  3\", ") + kExpectedBox);
}

TEST(AdaptBoxes, MoreThanSixDigitsAreRefused)
{
    EXPECT_EQ(verdict_with("0.333333", "0.3333333"),
        std::string("card:4: found \"0.5  0  0  1e+06  0.3333333  1e-05\", ") + kExpectedBox);
}

} // namespace
