// SPDX-License-Identifier: Apache-2.0
#include "standins/cards/SolverCard.h"

#include "tests/case/Golden.h"
#include "tests/standins/cards/CardFiles.h"

#include <gtest/gtest.h>

#include <limits>

namespace {

using Standins::read_solver_card;
using Standins::SolverCard;
using Testing::changed;
using Testing::golden;
using Testing::value_of;
using Testing::verdict;

std::string typical() { return golden("typical.SlvrMain"); }

/// What is said of the typical card with `from` made `to`.
std::string verdict_with(const std::string& from, const std::string& to)
{
    return verdict(changed(typical(), from, to), read_solver_card);
}

TEST(SolverCard, ReadsWhatASolverNeeds)
{
    const SolverCard card = value_of(typical(), read_solver_card);
    EXPECT_EQ(card.m_strCaseName, "hover");
    EXPECT_EQ(card.m_adVelocity, (std::array<double, 3> { 10, -0.5, 0 }));
    EXPECT_EQ(card.m_dFc, 1.0);
    EXPECT_EQ(card.m_uintLimiter, 2U);
    EXPECT_FALSE(card.m_bFlagTurb);
    EXPECT_TRUE(card.m_bTLimit);
    EXPECT_EQ(card.m_dTAlpha, 1.0);
    EXPECT_EQ(card.m_dMU, 3.737e-7);
    EXPECT_EQ(card.m_dRlxVelMx, 0.75);
    EXPECT_EQ(card.m_dRlxpMx, 0.3);
    EXPECT_EQ(card.m_uintNpIter, 20U);
    EXPECT_TRUE(card.m_bLBdyPrs);
    EXPECT_EQ(card.m_nBdyPrsType, 1);
    EXPECT_EQ(card.m_uintIterBdyPrs, 100U);
    EXPECT_EQ(card.m_uintIterFM, 10U);
    EXPECT_EQ(card.m_adMomentPoint, (std::array<double, 3> { 1.5, 0, -2.25 }));
    EXPECT_TRUE(card.m_bLRotFAST);
    EXPECT_EQ(card.m_uintIterRotFAST, 50U);
    EXPECT_TRUE(card.m_bLSaveHstFASTSln);
    EXPECT_EQ(card.m_uintIterFASTSln, 500U);
    EXPECT_FALSE(card.m_bRestart);
    EXPECT_FALSE(card.m_bLSaveHstRst);
    EXPECT_EQ(card.m_uintIterRst, 1000U);
    EXPECT_EQ(card.m_strRestartFile, ""); // one blank in the card
    EXPECT_EQ(card.m_strRestartOut, "./hover");
    EXPECT_EQ(card.m_strSolutionFile, "./hover");
    EXPECT_EQ(card.m_strTimeGridFile, "./hover.Tgrid");
    EXPECT_FALSE(card.m_bTrajectory);
    EXPECT_EQ(card.m_strTrajectoryFile, "");
}

TEST(SolverCard, ReadsTheOtherWayOfEveryFlag)
{
    const SolverCard card = value_of(golden("everything.SlvrMain"), read_solver_card);
    EXPECT_EQ(card.m_strCaseName, "it's");
    EXPECT_EQ(card.m_dFc, 0.5);
    EXPECT_EQ(card.m_uintLimiter, 4294967295U);
    EXPECT_TRUE(card.m_bFlagTurb);
    EXPECT_EQ(card.m_nTurbStart, std::numeric_limits<std::int32_t>::min());
    EXPECT_EQ(card.m_dTAlpha, 0.5);
    EXPECT_TRUE(card.m_bLBdyPrsTec);
    EXPECT_TRUE(card.m_bLSaveHstBdyPrs);
    EXPECT_EQ(card.m_nBdyPrsType, 2);
    EXPECT_TRUE(card.m_bLtimeavg);
    EXPECT_EQ(card.m_uintItbeg, 8U);
    EXPECT_EQ(card.m_uintItend, 9U);
    EXPECT_TRUE(card.m_bLSaveHstRotFAST);
    EXPECT_TRUE(card.m_bRestart);
    EXPECT_TRUE(card.m_bRestartTurb);
    EXPECT_TRUE(card.m_bLSaveHstRst);
    EXPECT_EQ(card.m_strRestartFile, "Restarts/old.Rst");
    EXPECT_TRUE(card.m_bTrajectory);
    EXPECT_EQ(card.m_strTrajectoryFile, "it's.SlvrTraj");
}

TEST(SolverCard, WithoutLayersTheLargestRelaxationIsTheLowestNumber)
{
    const SolverCard card = value_of(golden("empty.SlvrMain"), read_solver_card);
    EXPECT_EQ(card.m_dRlxVelMx, -1.79769e+308);
    EXPECT_EQ(card.m_dRlxpMx, -1.79769e+308);
    EXPECT_EQ(card.m_dFc, 0.0);
}

// 97 lines, of which 15 are empty and 3 the frame, leave 79 keys.
TEST(SolverCard, EveryKeyIsInTheMapAsItStands)
{
    const SolverCard card = value_of(typical(), read_solver_card);
    EXPECT_EQ(card.m_mapValues.size(), 79U);
    EXPECT_EQ(card.m_mapValues.at("zo_rough"), "0.82021e-3");
    EXPECT_EQ(card.m_mapValues.at("fc"), "1.0d+00");
    EXPECT_EQ(card.m_mapValues.at("RSTRTinp"), " ");
    EXPECT_EQ(card.m_mapValues.at("GeomBCFl"), "./GeomBC.dat");
    EXPECT_EQ(card.m_mapValues.at("TrajInpFile"), "");
}

TEST(SolverCard, NoLineMoreOrLessIsAccepted)
{
    EXPECT_EQ(Testing::wrongly_accepted(typical(), read_solver_card), "");
}

TEST(SolverCard, MissingFileCannotBeOpened)
{
    try {
        (void)read_solver_card("/nowhere/hover.SlvrMain");
        FAIL() << "accepted";
    } catch (const Standins::Malformed& fault) {
        EXPECT_STREQ(fault.what(), "/nowhere/hover.SlvrMain: cannot be opened");
    }
}

TEST(SolverCard, DirectoryCannotBeRead)
{
    const Testing::TemporaryDirectory directory;
    try {
        (void)read_solver_card(directory.path());
        FAIL() << "accepted";
    } catch (const Standins::Malformed& fault) {
        // Some systems open a directory as a file, and some do not.
        const std::string words = fault.what();
        EXPECT_TRUE(words == directory.path() + ": cannot be read"
            || words == directory.path() + ": cannot be opened")
            << words;
    }
}

TEST(SolverCard, EmptyFileIsRefusedAtItsFirstLine)
{
    EXPECT_EQ(verdict("", read_solver_card), "card:1: found the end of the file, expected \"#\"");
}

TEST(SolverCard, UnknownKeyIsRefused)
{
    EXPECT_EQ(verdict_with("Vinit", "vinit"),
        "card:4: found \"      vinit = -0.500000\", expected \"      Vinit = \" and a number with "
        "six digits behind the point");
}

TEST(SolverCard, KeyWithoutItsPaddingIsRefused)
{
    EXPECT_EQ(verdict_with("fc      = ", "fc = "),
        "card:8: found \"      fc = 1.0d+00\", expected \"      fc      = \" and 1.0d+00 or "
        "0.5d+00 or 0.0d+00");
}

TEST(SolverCard, KeysInTheWrongOrderAreRefused)
{
    const std::string two = "      turbstart = 0\n      ntturb    = 1\n";
    EXPECT_EQ(verdict_with(two, "      ntturb    = 1\n      turbstart = 0\n"),
        "card:14: found \"      ntturb    = 1\", expected \"      turbstart = \" and a signed "
        "number");
}

TEST(SolverCard, MissingKeyIsRefused)
{
    EXPECT_EQ(verdict_with("      iterFM = 10\n", ""),
        "card:60: found \"      xMnt = 1.5\", expected \"      iterFM = \" and an unsigned number");
}

TEST(SolverCard, MissingEmptyLineIsRefused)
{
    EXPECT_EQ(verdict_with("\n\n      LSteady", "\n      LSteady"),
        "card:6: found \"      LSteady = .FALSE.\", expected an empty line");
}

TEST(SolverCard, OtherWordForALogicalValueIsRefused)
{
    const std::string expected = ", expected \"      tlimit    = \" and .TRUE. or .FALSE.";
    EXPECT_EQ(verdict_with("tlimit    = .TRUE.", "tlimit    = .true."),
        "card:16: found \"      tlimit    = .true.\"" + expected);
    EXPECT_EQ(verdict_with("tlimit    = .TRUE.", "tlimit    = T"),
        "card:16: found \"      tlimit    = T\"" + expected);
}

TEST(SolverCard, NumberInAnotherFormIsRefused)
{
    // Fixed: six digits behind the point, no less.
    EXPECT_EQ(verdict_with("10.000000", "10"),
        "card:3: found \"      Uinit = 10\", expected \"      Uinit = \" and a number with six "
        "digits behind the point");
    // General: no zero at the end, no seventh digit, no comma, no rest, nothing that is not finite.
    for (const char* word : { "0.0100", "0.01000001", "0,01", "0.01x", "+0.01", ".01", "1e6",
             "1E+06", "nan", "inf", "-inf", "", " 0.01", "0.01d0", "1e+999" }) {
        EXPECT_EQ(verdict_with("ls        = 0.01", std::string("ls        = ") + word),
            std::string("card:18: found \"      ls        = ") + word
                + "\", expected \"      ls        = \" and a number of six significant digits");
    }
}

TEST(SolverCard, CountInAnotherFormIsRefused)
{
    for (const char* word : { "-1", "+2", "02", "2.0", "4294967296", "", "two" }) {
        EXPECT_EQ(verdict_with("limiter = 2", std::string("limiter = ") + word),
            std::string("card:11: found \"      limiter = ") + word
                + "\", expected \"      limiter = \" and an unsigned number");
    }
}

TEST(SolverCard, SignedNumberBeyondItsRangeIsRefused)
{
    EXPECT_EQ(verdict_with("turbstart = 0", "turbstart = 2147483648"),
        "card:14: found \"      turbstart = 2147483648\", expected \"      turbstart = \" and a "
        "signed number");
}

TEST(SolverCard, OtherValueOfAConstantIsRefused)
{
    EXPECT_EQ(verdict_with("0.82021e-3", "8.2021e-4"),
        "card:32: found \"      zo_rough  = 8.2021e-4\", expected \"      zo_rough  = \" and "
        "0.82021e-3");
}

TEST(SolverCard, SecondAlphaOtherThanTheFirstIsRefused)
{
    EXPECT_EQ(verdict_with("talpate   = 1.0d0", "talpate   = 0.5d0"),
        "card:21: found \"      talpate   = 0.5d0\", expected \"      talpate   = \" and 1.0d0");
}

TEST(SolverCard, TurbulenceOfARestartWithoutARestartIsRefused)
{
    EXPECT_EQ(verdict_with("LDatTurb  = .FALSE.", "LDatTurb  = .TRUE."),
        "card:77: found \"      LDatTurb  = .TRUE.\", expected \"      LDatTurb  = \" and .FALSE.");
}

TEST(SolverCard, NoBlankForNoRestartFileIsRefused)
{
    EXPECT_EQ(verdict_with("RSTRTinp    = ' '", "RSTRTinp    = ''"),
        "card:81: found \"      RSTRTinp    = ''\", expected a file, or one blank, between the "
        "quotes");
}

TEST(SolverCard, TextWithoutItsQuotesIsRefused)
{
    EXPECT_EQ(verdict_with("RSTRTinp    = ' '", "RSTRTinp    = '"),
        "card:81: found \"      RSTRTinp    = '\", expected \"      RSTRTinp    = \" and a text "
        "between single quotes");
    EXPECT_EQ(verdict_with("RSTRTinp    = ' '", "RSTRTinp    = a.Rst"),
        "card:81: found \"      RSTRTinp    = a.Rst\", expected \"      RSTRTinp    = \" and a "
        "text between single quotes");
}

TEST(SolverCard, TwoCaseNamesInOneCardAreRefused)
{
    EXPECT_EQ(verdict_with("RstFileOut  = './hover'", "RstFileOut  = './hoover'"),
        "card:84: found \"      RstFileOut  = './hoover'\", expected \"      RstFileOut  = \" and "
        "'./hover'");
    EXPECT_EQ(verdict_with("./hover.Tgrid", "hover.Tgrid"),
        "card:88: found \"      TmRxFl   = 'hover.Tgrid'\", expected \"      TmRxFl   = \" and "
        "'./hover.Tgrid'");
}

TEST(SolverCard, OutputOutsideTheWorkingDirectoryIsRefused)
{
    EXPECT_EQ(verdict_with("FastPrsfile = './hover'", "FastPrsfile = 'hover'"),
        "card:83: found \"      FastPrsfile = 'hover'\", expected \"./\" and the case name between "
        "the quotes");
}

TEST(SolverCard, TrajectoryFileStandsOnlyWithItsFlag)
{
    EXPECT_EQ(verdict_with("TrajInpFile      = ''", "TrajInpFile      = 'hover.SlvrTraj'"),
        "card:95: found \"      TrajInpFile      = 'hover.SlvrTraj'\", expected \"      "
        "TrajInpFile      = \" and ''");
    EXPECT_EQ(verdict_with("flagMan          = .FALSE.", "flagMan          = .TRUE."),
        "card:95: found \"      TrajInpFile      = ''\", expected \"      TrajInpFile      = \" "
        "and 'hover.SlvrTraj'");
}

TEST(SolverCard, AnythingBehindTheEndIsRefused)
{
    EXPECT_EQ(verdict(typical() + " $END\n", read_solver_card),
        "card:98: found \" $END\", expected the end of the file");
    EXPECT_EQ(verdict(typical() + "\n", read_solver_card),
        "card:98: found an empty line, expected the end of the file");
}

TEST(SolverCard, LastLineWithoutALineFeedIsRefused)
{
    const std::string card = typical();
    EXPECT_EQ(verdict(card.substr(0, card.size() - 1), read_solver_card),
        "card:97: found \" $END\" without a line feed, expected \" $END\"");
}

TEST(SolverCard, CarriageReturnIsRefused)
{
    EXPECT_EQ(verdict_with("#\n", "#\r\n"), "card:1: found \"#?\", expected \"#\"");
}

TEST(SolverCard, LongLineIsShownByItsFront)
{
    EXPECT_EQ(verdict(std::string(101, 'x') + "\n", read_solver_card),
        "card:1: found \"" + std::string(100, 'x') + "...\", expected \"#\"");
}

TEST(MomentTable, IsReadAsItStands)
{
    EXPECT_EQ(value_of("", Standins::read_moment_table), "");
    EXPECT_EQ(value_of("1 2\r\nno end", Standins::read_moment_table), "1 2\r\nno end");
}

TEST(MomentTable, ZeroByteIsRefused)
{
    EXPECT_EQ(verdict(std::string("1\n2\0", 4), Standins::read_moment_table),
        "card:2: found a zero byte, expected text");
}

TEST(Trajectory, IsReadAsItStands)
{
    EXPECT_EQ(value_of("0 1 2\n", Standins::read_trajectory), "0 1 2\n");
    EXPECT_EQ(verdict(std::string(1, '\0'), Standins::read_trajectory),
        "card:1: found a zero byte, expected text");
}

} // namespace
