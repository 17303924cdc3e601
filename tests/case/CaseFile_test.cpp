// SPDX-License-Identifier: Apache-2.0
#include "tests/case/CaseImages.h"
#include "tests/case/Comparison.h"
#include "tests/case/HexText.h"
#include "tests/support/Files.h"

#include <bit>
#include <cmath>

namespace {

using Testing::blank_case;
using Testing::bytes_of_hex;
using Testing::read_bytes;
using Testing::same_bytes;
using Testing::smallest_case;
using Testing::smallest_case_with;
using Testing::written_bytes;
using VRK::ControllerInput;

TEST(CaseFile, SmallestCaseReadsAndIsWrittenBack)
{
    ControllerInput input;
    ASSERT_TRUE(read_bytes(smallest_case(), input));
    EXPECT_TRUE(same_bytes(smallest_case(), written_bytes(input)));
}

TEST(CaseFile, NoRotorsAndNoBodiesStillHaveTheirCounts)
{
    // Without the eight bytes of the two counts everything behind them would shift.
    ControllerInput input = blank_case();
    input.m_grid.m_ucLevelMax = 0xAA;
    input.m_anBoundaryType[0] = 0x0B;
    EXPECT_EQ(written_bytes(input).substr(112, 10), bytes_of_hex("AA 00x4 00x4 0B"));
}

TEST(CaseFile, WithoutRestartTheRestartFileIsAbsent)
{
    // Restart 0, then grid only 1 directly behind it.
    const auto bytes = smallest_case_with(Testing::kAtRestart, 2, bytes_of_hex("00 01"));
    ControllerInput input;
    input.m_strRestartFile = "before";
    ASSERT_TRUE(read_bytes(bytes, input));
    EXPECT_FALSE(input.m_bRestart);
    EXPECT_TRUE(input.m_bGridOnly);
    EXPECT_EQ(input.m_strRestartFile, "before");
    EXPECT_TRUE(same_bytes(bytes, written_bytes(input)));
}

TEST(CaseFile, RestartWithAnEmptyFileIsJustItsLength)
{
    const auto bytes = smallest_case_with(Testing::kAtRestart, 2, bytes_of_hex("01 00x4 01"));
    ControllerInput input;
    ASSERT_TRUE(read_bytes(bytes, input));
    EXPECT_TRUE(input.m_bRestart);
    EXPECT_EQ(input.m_strRestartFile, "");
    EXPECT_TRUE(input.m_bGridOnly);
    EXPECT_TRUE(same_bytes(bytes, written_bytes(input)));
}

TEST(CaseFile, WithoutTrajectoryFlagTheLastFieldFollowsTheBoxLists)
{
    const auto bytes = smallest_case_with(
        Testing::kAtFlagMan, 5, bytes_of_hex("00 04 00x3 64 6F 6E 65")); // "done"
    ControllerInput input;
    input.m_strTrajectory = "before";
    ASSERT_TRUE(read_bytes(bytes, input));
    EXPECT_EQ(input.m_fpCompletionFile.Get(), "done");
    EXPECT_EQ(input.m_strTrajectory, "before");
    EXPECT_TRUE(same_bytes(bytes, written_bytes(input)));
}

TEST(CaseFile, TrajectoryFollowsAnyFlagButZero)
{
    const auto bytes
        = smallest_case_with(Testing::kAtFlagMan, 1, bytes_of_hex("80 02 00x7 68 69")); // "hi"
    ControllerInput input;
    ASSERT_TRUE(read_bytes(bytes, input));
    EXPECT_EQ(input.m_bFlagMan.byte(), 0x80);
    EXPECT_EQ(input.m_strTrajectory, "hi");
    EXPECT_TRUE(same_bytes(bytes, written_bytes(input)));
}

TEST(CaseFile, FlagBytesComeBackAsTheyWere)
{
    const auto bytes = smallest_case_with(Testing::kAtGridOnly, 3, bytes_of_hex("02 FF 80"));
    ControllerInput input;
    ASSERT_TRUE(read_bytes(bytes, input));
    EXPECT_TRUE(input.m_bGridOnly);
    EXPECT_TRUE(input.m_bRunBodyFitter);
    EXPECT_TRUE(input.m_bRunValidator);
    EXPECT_TRUE(same_bytes(bytes, written_bytes(input)));
}

TEST(CaseFile, NumbersOfABodyFlagAreKeptToo)
{
    const auto bytes = smallest_case_with(
        Testing::kAtBodies, 4, bytes_of_hex("01 00x3 05 00x3 07 06 00x3 00x4"));
    ControllerInput input;
    ASSERT_TRUE(read_bytes(bytes, input));
    ASSERT_EQ(input.m_vecBodies.size(), 1U);
    EXPECT_EQ(input.m_vecBodies[0].m_uintBodyId, 5U);
    EXPECT_EQ(input.m_vecBodies[0].m_bFlag.byte(), 7);
    EXPECT_EQ(input.m_vecBodies[0].m_uintLevel, 6U);
    EXPECT_TRUE(same_bytes(bytes, written_bytes(input)));
}

TEST(CaseFile, NegativeZeroAndSignallingNaNSurvive)
{
    // -0.0; a signalling NaN with payload 1; a quiet negative NaN with payload 0x123.
    const auto bytes = smallest_case_with(
        Testing::kAtDomainMin, 24, bytes_of_hex("00x7 80  01 00x5 F0 7F  23 01 00x4 F8 FF"));
    ControllerInput input;
    ASSERT_TRUE(read_bytes(bytes, input));
    EXPECT_TRUE(std::signbit(input.m_grid.m_dDomainMin[0]));
    EXPECT_EQ(std::bit_cast<std::uint64_t>(input.m_grid.m_dDomainMin[1]), 0x7FF0000000000001U);
    EXPECT_TRUE(same_bytes(bytes, written_bytes(input)));
}

TEST(CaseFile, SignallingNaNSurvivesInTables)
{
    // One layer: NaN, 1 step, 2 iterations, -0.0, NaN, 0, 0.
    const auto bytes = smallest_case_with(Testing::kAtLayers, 4,
        bytes_of_hex("01 00x3  01 00x5 F0 7F  01 00x3 02 00x3  00x7 80  02 00x5 F0 FF  00x16"));
    ControllerInput input;
    ASSERT_TRUE(read_bytes(bytes, input));
    EXPECT_TRUE(same_bytes(bytes, written_bytes(input)));
}

TEST(CaseFile, ShortTextIsCutAtItsZeroByte)
{
    const auto bytes
        = smallest_case_with(Testing::kAtCaseName, 4, bytes_of_hex("05 00x3 61 62 00 63 64"));
    ControllerInput input;
    ASSERT_TRUE(read_bytes(bytes, input));
    EXPECT_EQ(input.m_strCaseName, "ab");
    EXPECT_EQ(input.m_strModelDir, "");
}

TEST(CaseFile, EveryShortTextIsCutAtItsZeroByte)
{
    const auto text = bytes_of_hex("03 00x3 61 00 62");
    ControllerInput input;
    ASSERT_TRUE(read_bytes(smallest_case_with(Testing::kAtModelDir, 4, text), input));
    EXPECT_EQ(input.m_strModelDir, "a");
    ASSERT_TRUE(read_bytes(smallest_case_with(Testing::kAtRestart, 1, '\1' + text), input));
    EXPECT_EQ(input.m_strRestartFile, "a");
    // A rotor of 170 bytes: its name first, then 162 bytes and the count of airfoil tables, here
    // one at 0.0.
    const std::string rotor = text + std::string(162, '\0') + bytes_of_hex("01 00x3 00x8") + text;
    ASSERT_TRUE(read_bytes(
        smallest_case_with(Testing::kAtRotors, 4, bytes_of_hex("01 00x3") + rotor), input));
    ASSERT_EQ(input.m_vecRotors.size(), 1U);
    EXPECT_EQ(input.m_vecRotors[0].m_strName, "a");
    EXPECT_EQ(input.m_vecRotors[0].m_vecAftFile, (std::vector<std::string> { "a" }));
}

TEST(CaseFile, MomentTextIsCutAtItsZeroByteAndTheViscousInputIsNot)
{
    const auto text = bytes_of_hex("03 00x7 61 00 62");
    ControllerInput input;
    ASSERT_TRUE(read_bytes(smallest_case_with(Testing::kAtMomentGroups, 8, text), input));
    EXPECT_EQ(input.m_strMomentGroups, "a");
    ASSERT_TRUE(read_bytes(smallest_case_with(Testing::kAtViscText, 8, text), input));
    EXPECT_EQ(input.m_grid.m_strViscInput, std::string("a\0b", 3));
    ASSERT_TRUE(read_bytes(smallest_case_with(Testing::kAtFlagMan, 1, '\1' + text), input));
    EXPECT_EQ(input.m_strTrajectory, "a");
}

TEST(CaseFile, PathsAreCutAtTheirZeroByte)
{
    const auto text = bytes_of_hex("03 00x3 61 00 62");
    ControllerInput input;
    ASSERT_TRUE(read_bytes(smallest_case_with(Testing::kAtViscPath, 4, text), input));
    EXPECT_EQ(input.m_grid.m_fpViscInput.Get(), "a");
    ASSERT_TRUE(read_bytes(smallest_case_with(Testing::kAtCompletionPath, 4, text), input));
    EXPECT_EQ(input.m_fpCompletionFile.Get(), "a");
}

TEST(CaseFile, WrittenTextsKeepTheirZeroBytes)
{
    ControllerInput input = blank_case();
    input.m_strCaseName = std::string("a\0b", 3);
    EXPECT_TRUE(
        same_bytes(smallest_case_with(Testing::kAtCaseName, 4, bytes_of_hex("03 00x3 61 00 62")),
            written_bytes(input)));
}

TEST(CaseFile, ReadingAgainReplacesListsAndTexts)
{
    ControllerInput input = blank_case();
    input.m_strCaseName = "before";
    input.m_vecRotors.resize(2);
    input.m_vecBodies.resize(3);
    input.m_grid.m_vecPoints.resize(4);
    input.m_time.m_vecTLen = { 1.0 };
    ASSERT_TRUE(read_bytes(smallest_case(), input));
    EXPECT_TRUE(same_bytes(smallest_case(), written_bytes(input)));
}

TEST(CaseFile, BytesBehindTheLastFieldAreNotLookedAt)
{
    ControllerInput input;
    EXPECT_TRUE(read_bytes(smallest_case() + "anything", input));
    EXPECT_EQ(input.m_fpCompletionFile.Get(), "");
}

TEST(CaseFile, ColumnShorterThanTheFirstIsWrittenWithZeros)
{
    ControllerInput input = blank_case();
    input.m_time.m_vecTLen = { 1.0 };
    EXPECT_TRUE(same_bytes(
        smallest_case_with(Testing::kAtLayers, 4, bytes_of_hex("01 00x3 00x6 F0 3F 00x40")),
        written_bytes(input)));
}

TEST(CaseFile, SmallestCaseCutAtAnyByteIsRefused)
{
    for (std::size_t size = 0; size < smallest_case().size(); ++size) {
        ControllerInput input;
        EXPECT_FALSE(read_bytes(smallest_case().substr(0, size), input)) << "cut to " << size;
    }
}

TEST(CaseFile, WhatStandsBeforeTheCutIsKeptAndListsBehindItAreEmpty)
{
    ControllerInput input = blank_case();
    input.m_vecRotors.resize(2);
    input.m_strMomentGroups = "before";
    // Cut behind two points of three.
    std::string bytes = smallest_case_with(Testing::kAtPoints, 4, bytes_of_hex("03 00x3"));
    bytes.resize(Testing::kAtPoints + 4);
    bytes += bytes_of_hex("00x6 F0 3F 00x16 00x6 00 40 00x16");
    ASSERT_FALSE(read_bytes(bytes, input));
    ASSERT_EQ(input.m_grid.m_vecPoints.size(), 2U);
    EXPECT_EQ(input.m_grid.m_vecPoints[0][0], 1.0);
    EXPECT_EQ(input.m_grid.m_vecPoints[1][0], 2.0);
    EXPECT_TRUE(input.m_vecRotors.empty());
    EXPECT_EQ(input.m_strMomentGroups, "");
}

} // namespace
