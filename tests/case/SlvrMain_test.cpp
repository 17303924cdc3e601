// SPDX-License-Identifier: Apache-2.0
#include "case/SlvrMain.h"

#include "tests/case/CaseImages.h"
#include "tests/case/Comparison.h"
#include "tests/case/Golden.h"
#include "tests/case/SolverInput.h"
#include "tests/case/UsedStream.h"

#include <algorithm>

namespace {

using Testing::blank_case;
using Testing::golden;
using Testing::line_of;
using Testing::same_bytes;
using VRK::ControllerInput;

std::string card_of(const ControllerInput& input)
{
    return Testing::formatted([&](std::ostream& card) { format_slvr_main(card, input); });
}

ControllerInput typical_case()
{
    ControllerInput input = blank_case();
    input.m_strCaseName = "hover";
    input.m_dUinit = 10;
    input.m_dVinit = -0.5;
    input.m_time.m_ucFcMode = 1;
    input.m_uintLimiter = 2;
    input.m_nNtTurb = 1;
    input.m_bTLimit = true;
    input.m_nFlagKE = 1;
    input.m_dLs = 0.01;
    input.m_dTurbInt = 0.05;
    input.m_ucTAlpha = 1;
    input.m_dRelTK = 0.5;
    input.m_dRelTE = 0.25;
    input.m_dRho = 0.002378;
    input.m_dTinf = 518.67;
    input.m_dRGASC = 1716.49;
    input.m_dGAMSHR = 1.4;
    input.m_dMU = 3.737e-7;
    input.m_dPinf = 2116.22;
    // Velocity: the largest of u, v, w over both layers is v of the second; pressure: the first.
    input.m_time.m_vecTLen = { 1, 2 };
    input.m_time.m_vecNtCell = { 10, 20 };
    input.m_time.m_vecNIter = { 1, 1 };
    input.m_time.m_vecRlxu = { 0.5, 0.6 };
    input.m_time.m_vecRlxv = { 0.4, 0.75 };
    input.m_time.m_vecRlxw = { 0.3, 0.2 };
    input.m_time.m_vecRlxp = { 0.3, 0.25 };
    input.m_uintNXIter = 4;
    input.m_uintNYIter = 5;
    input.m_uintNZIter = 6;
    input.m_uintNpIter = 20;
    input.m_uintNppIter = 2;
    input.m_bLBdyPrs = true;
    input.m_uintIterBdyPrs = 100;
    input.m_uintIterFM = 10;
    input.m_dXMnt = 1.5;
    input.m_dZMnt = -2.25;
    input.m_uintItbeg = 1;
    input.m_uintItend = 2;
    input.m_bLRotFAST = true;
    input.m_uintIterRotFAST = 50;
    input.m_bLSaveHstFASTSln = true;
    input.m_uintIterFASTSln = 500;
    input.m_uintIterRst = 1000;
    return input;
}

ControllerInput everything_case()
{
    ControllerInput input = blank_case();
    input.m_strCaseName = "it's";
    input.m_dUinit = 1;
    input.m_dVinit = 1234567.125;
    input.m_dWinit = -0.0;
    input.m_time.m_ucFcMode = 2;
    input.m_uintLimiter = 4294967295;
    input.m_bFlagTurb = true;
    input.m_nTurbStart = -2147483647 - 1;
    input.m_nNtTurb = 2147483647;
    input.m_bTLimit = true;
    input.m_nFlagKE = -1;
    input.m_dLs = 1;
    input.m_dTurbInt = 1e6;
    input.m_ucTAlpha = 2;
    input.m_dRelTK = 1e-5;
    input.m_dRelTE = 123456.7;
    input.m_dRho = 1;
    input.m_dTinf = 1e5;
    input.m_dRGASC = 1e6;
    input.m_dGAMSHR = 1e-4;
    input.m_dMU = -0.0;
    input.m_dPinf = 1234567.0;
    input.m_time.m_vecTLen = { 1 };
    input.m_time.m_vecNtCell = { 1 };
    input.m_time.m_vecNIter = { 1 };
    input.m_time.m_vecRlxu = { 0.7 };
    input.m_time.m_vecRlxv = { 0.8 };
    input.m_time.m_vecRlxw = { 0.9 };
    input.m_time.m_vecRlxp = { 0.6 };
    input.m_uintNXIter = 1;
    input.m_uintNYIter = 2;
    input.m_uintNZIter = 3;
    input.m_uintNpIter = 4;
    input.m_uintNppIter = 5;
    input.m_bLBdyPrs = true;
    input.m_bLBdyPrsTec = true;
    input.m_bLSaveHstBdyPrs = true;
    input.m_bBdyPrsType2 = true;
    input.m_uintIterBdyPrs = 6;
    input.m_uintIterFM = 7;
    input.m_dXMnt = 0.1;
    input.m_dYMnt = 0.2;
    input.m_dZMnt = 0.3;
    input.m_bLtimeavg = true;
    input.m_uintItbeg = 8;
    input.m_uintItend = 9;
    input.m_bLRotFAST = true;
    input.m_bLSaveHstRotFAST = true;
    input.m_uintIterRotFAST = 10;
    input.m_bLSaveHstFASTSln = true;
    input.m_uintIterFASTSln = 11;
    input.m_bRestart = true;
    input.m_bLSaveHstRst = true;
    input.m_uintIterRst = 12;
    input.m_strRestartFile = "Restarts/old.Rst";
    input.m_bFlagMan = true;
    return input;
}

TEST(SlvrMain, CaseOfZerosWritesTheCard)
{
    EXPECT_TRUE(same_bytes(golden("empty.SlvrMain"), card_of(blank_case())));
}

TEST(SlvrMain, TypicalCaseWritesTheCard)
{
    EXPECT_TRUE(same_bytes(golden("typical.SlvrMain"), card_of(typical_case())));
}

TEST(SlvrMain, CaseWithEverythingOnWritesTheCard)
{
    EXPECT_TRUE(same_bytes(golden("everything.SlvrMain"), card_of(everything_case())));
}

TEST(SlvrMain, CardIsTheSameOnAUsedStream)
{
    EXPECT_TRUE(same_bytes(golden("everything.SlvrMain"),
        Testing::formatted_on_used_stream(
            [](std::ostream& card) { format_slvr_main(card, everything_case()); })));
}

TEST(SlvrMain, CardIsTheSameUnderACommaLocale)
{
    const auto written = Testing::formatted_under_comma_locale(
        [](std::ostream& card) { format_slvr_main(card, everything_case()); });
    if (!written)
        GTEST_SKIP() << "no locale with a decimal comma can be made here";
    EXPECT_TRUE(same_bytes(golden("everything.SlvrMain"), *written));
}

TEST(SlvrMain, EmptyRestartFileIsOneBlankBetweenTheQuotes)
{
    EXPECT_EQ(line_of(card_of(blank_case()), 81), "      RSTRTinp    = ' '");
}

TEST(SlvrMain, TurbulenceIsNotRestartedWithoutRestart)
{
    ControllerInput input = blank_case();
    input.m_bFlagTurb = true;
    EXPECT_EQ(line_of(card_of(input), 77), "      LDatTurb  = .FALSE.");
    input.m_bRestart = true;
    EXPECT_EQ(line_of(card_of(input), 77), "      LDatTurb  = .TRUE.");
    input.m_bFlagTurb = false;
    EXPECT_EQ(line_of(card_of(input), 77), "      LDatTurb  = .FALSE.");
}

TEST(SlvrMain, OnlyAlphaOneSelectsOne)
{
    ControllerInput input = blank_case();
    input.m_ucTAlpha = 2;
    EXPECT_EQ(line_of(card_of(input), 20), "      talpatk   = 0.5d0");
    EXPECT_EQ(line_of(card_of(input), 21), "      talpate   = 0.5d0");
}

TEST(SlvrMain, UnknownSchemeIsExplicit)
{
    ControllerInput input = blank_case();
    EXPECT_EQ(line_of(card_of(input), 8), "      fc      = 0.0d+00");
    input.m_time.m_ucFcMode = 3;
    EXPECT_EQ(line_of(card_of(input), 8), "      fc      = 0.0d+00");
}

TEST(SlvrMain, VelocitiesAreFixedAndConstantsGeneral)
{
    ControllerInput input = blank_case();
    input.m_dUinit = 1;
    input.m_dRho = 1;
    EXPECT_EQ(line_of(card_of(input), 3), "      Uinit = 1.000000");
    EXPECT_EQ(line_of(card_of(input), 37), "      rho   = 1");
}

TEST(SlvrMain, WithoutLayersTheMaximaAreTheLowestDouble)
{
    EXPECT_EQ(line_of(card_of(blank_case()), 45), "      RlxVelMx = -1.79769e+308");
    EXPECT_EQ(line_of(card_of(blank_case()), 46), "      RlxpMx   = -1.79769e+308");
}

TEST(SlvrMain, WithoutTrajectoryItsFileIsUntouchedAndItsNameEmpty)
{
    const Testing::SolverInput directory;
    Testing::write_file(directory.path("hover.SlvrTraj"), "old");
    ControllerInput input = typical_case();
    input.m_strTrajectory = "new";
    write_slvr_main(input);
    EXPECT_EQ(line_of(directory.bytes("hover.SlvrMain"), 95), "      TrajInpFile      = ''");
    EXPECT_EQ(directory.bytes("hover.SlvrTraj"), "old");
}

TEST(SlvrMain, WritesTheThreeFilesReplacingWhatWasThere)
{
    const Testing::SolverInput directory;
    Testing::write_file(directory.path("it's.SlvrMain"), std::string(10000, 'x'));
    Testing::write_file(directory.path("it's_moment_table.dat"), "a longer old table");
    Testing::write_file(directory.path("it's.SlvrTraj"), "a longer old trajectory");
    ControllerInput input = everything_case();
    input.m_strMomentGroups = "1 2\r\n";
    input.m_strTrajectory = "t x";
    write_slvr_main(input);
    EXPECT_TRUE(same_bytes(golden("everything.SlvrMain"), directory.bytes("it's.SlvrMain")));
    EXPECT_EQ(directory.bytes("it's_moment_table.dat"), "1 2\r\n");
    EXPECT_EQ(directory.bytes("it's.SlvrTraj"), "t x");
}

TEST(SlvrMain, EmptyMomentTableIsWrittenToo)
{
    const Testing::SolverInput directory;
    Testing::write_file(directory.path("hover_moment_table.dat"), "old");
    write_slvr_main(typical_case());
    EXPECT_EQ(directory.bytes("hover_moment_table.dat"), "");
}

TEST(SlvrMain, CardThatCannotBeOpenedIsPassedOver)
{
    const Testing::SolverInput directory;
    Testing::make_directory(directory.path("it's.SlvrMain"));
    ControllerInput input = everything_case();
    input.m_strTrajectory = "fly";
    write_slvr_main(input);
    EXPECT_EQ(directory.bytes("it's.SlvrTraj"), "fly");
}

TEST(VerbatimTexts, AreWrittenAsTheyStand)
{
    const Testing::SolverInput directory;
    ControllerInput input = blank_case();
    input.m_strMomentGroups = std::string("a\0b\n", 4);
    input.m_strTrajectory = "no line end";
    write_moment_groups(input, directory.path("m"));
    write_slvr_traj(input, directory.path("t"));
    EXPECT_EQ(directory.bytes("m"), std::string("a\0b\n", 4));
    EXPECT_EQ(directory.bytes("t"), "no line end");
}

TEST(SolverCardPage, LinesAreThoseOfTheCard)
{
    const Testing::FormatPage page("solver-card.md");
    const auto rows = page.table("Lines");
    ASSERT_EQ(rows.size(), 97U);
    for (const auto& input : { blank_case(), typical_case(), everything_case() }) {
        const std::string card = card_of(input);
        EXPECT_EQ(std::count(card.begin(), card.end(), '\n'), 97);
        for (std::size_t i = 0; i < rows.size(); ++i) {
            const std::string line = line_of(card, static_cast<int>(i) + 1);
            const std::string text = Testing::unquoted(rows[i].at(1));
            EXPECT_EQ(rows[i][0], std::to_string(i + 1));
            EXPECT_TRUE(line.starts_with(text)) << line;
            if (rows[i].at(2).empty() || text.empty()) {
                EXPECT_EQ(line, text);
            }
        }
    }
}

TEST(SolverCardPage, ExampleIsTheCardOfTheTypicalCase)
{
    const Testing::FormatPage page("solver-card.md");
    EXPECT_TRUE(same_bytes(page.example("Example"), card_of(typical_case())));
}

} // namespace
