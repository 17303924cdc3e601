// SPDX-License-Identifier: Apache-2.0
#include "case/SlvrMain.h"

#include "tests/case/CaseImages.h"
#include "tests/case/Golden.h"

#include <gtest/gtest.h>

#include <map>

namespace {

using Testing::blank_case;
using Testing::line_of;
using VRK::ControllerInput;

std::string card_of(const ControllerInput& input)
{
    return Testing::formatted([&](std::ostream& card) { format_slvr_main(card, input); });
}

/// The lines of a card that differ from those of the blank case, by their number.
std::map<int, std::string> changed_lines(const ControllerInput& input)
{
    const std::string blank = card_of(blank_case());
    const std::string card = card_of(input);
    std::map<int, std::string> changed;
    for (int number = 1; number <= 98; ++number) { // one more than there are
        if (line_of(card, number) != line_of(blank, number))
            changed[number] = line_of(card, number);
    }
    return changed;
}

struct OneFlag {
    const char* m_name;
    VRK::Flag ControllerInput::*m_flag;
    int m_line;
    const char* m_text;
};

class SlvrMainFlag : public testing::TestWithParam<OneFlag> { };

TEST_P(SlvrMainFlag, AloneChangesItsOwnLineAlone)
{
    ControllerInput input = blank_case();
    input.*GetParam().m_flag = true;
    EXPECT_EQ(changed_lines(input),
        (std::map<int, std::string> { { GetParam().m_line, GetParam().m_text } }));
}

INSTANTIATE_TEST_SUITE_P(SlvrMain, SlvrMainFlag,
    testing::Values(
        OneFlag { "FlagTurb", &ControllerInput::m_bFlagTurb, 13, "      flagTurb  = .TRUE." },
        OneFlag { "TLimit", &ControllerInput::m_bTLimit, 16, "      tlimit    = .TRUE." },
        OneFlag { "LBdyPrs", &ControllerInput::m_bLBdyPrs, 54, "      LBdyPrs  = .TRUE." },
        OneFlag { "LBdyPrsTec", &ControllerInput::m_bLBdyPrsTec, 55, "      LBdyPrsTec = .TRUE." },
        OneFlag { "LSaveHstBdyPrs", &ControllerInput::m_bLSaveHstBdyPrs, 57,
            "      LSaveHstBdyPrs = .TRUE." },
        OneFlag { "BdyPrsType2", &ControllerInput::m_bBdyPrsType2, 58, "      BdyPrsType = 2" },
        OneFlag { "Ltimeavg", &ControllerInput::m_bLtimeavg, 64, "      Ltimeavg = .TRUE." },
        OneFlag { "LRotFAST", &ControllerInput::m_bLRotFAST, 68, "      LRotFAST = .TRUE." },
        OneFlag { "LSaveHstRotFAST", &ControllerInput::m_bLSaveHstRotFAST, 70,
            "      LSaveHstRotFAST = .TRUE." },
        OneFlag { "LSaveHstFASTSln", &ControllerInput::m_bLSaveHstFASTSln, 73,
            "      LSaveHstFASTSln = .TRUE." },
        OneFlag { "Restart", &ControllerInput::m_bRestart, 76, "      LDATPRV   = .TRUE." },
        OneFlag {
            "LSaveHstRst", &ControllerInput::m_bLSaveHstRst, 79, "      LSaveHstRst = .TRUE." }),
    [](const auto& tested) { return tested.param.m_name; });

TEST(SlvrMainFlags, TrajectoryAloneChangesItsFlagAndItsFile)
{
    ControllerInput input = blank_case();
    input.m_bFlagMan = true;
    EXPECT_EQ(changed_lines(input),
        (std::map<int, std::string> { { 94, "      flagMan          = .TRUE." },
            { 95, "      TrajInpFile      = '.SlvrTraj'" } }));
}

TEST(SlvrMainFlags, OfOtherCardsAndStepsChangeNothing)
{
    for (const auto flag : { &ControllerInput::m_bGridOnly, &ControllerInput::m_bRunBodyFitter,
             &ControllerInput::m_bRunValidator, &ControllerInput::m_bTrim,
             &ControllerInput::m_bLHAWT, &ControllerInput::m_bCarried0,
             &ControllerInput::m_bCarried1, &ControllerInput::m_bCarried2 }) {
        ControllerInput input = blank_case();
        input.*flag = true;
        EXPECT_TRUE(changed_lines(input).empty());
    }
}

struct OneWord {
    const char* m_name;
    std::uint32_t ControllerInput::*m_word;
    int m_line;
    const char* m_text;
};

class SlvrMainWord : public testing::TestWithParam<OneWord> { };

TEST_P(SlvrMainWord, AboveTheSignedRangeIsWrittenUnsignedInItsOwnLine)
{
    ControllerInput input = blank_case();
    input.*GetParam().m_word = 2147483648;
    EXPECT_EQ(changed_lines(input),
        (std::map<int, std::string> { { GetParam().m_line, GetParam().m_text } }));
}

INSTANTIATE_TEST_SUITE_P(SlvrMain, SlvrMainWord,
    testing::Values(
        OneWord { "Limiter", &ControllerInput::m_uintLimiter, 11, "      limiter = 2147483648" },
        OneWord { "NXIter", &ControllerInput::m_uintNXIter, 48, "      NXIter   = 2147483648" },
        OneWord { "NYIter", &ControllerInput::m_uintNYIter, 49, "      NYIter   = 2147483648" },
        OneWord { "NZIter", &ControllerInput::m_uintNZIter, 50, "      NZIter   = 2147483648" },
        OneWord { "NpIter", &ControllerInput::m_uintNpIter, 51, "      NpIter   = 2147483648" },
        OneWord { "NppIter", &ControllerInput::m_uintNppIter, 52, "      NppIter  = 2147483648" },
        OneWord {
            "IterBdyPrs", &ControllerInput::m_uintIterBdyPrs, 59, "      iterBdyPrs = 2147483648" },
        OneWord { "IterFM", &ControllerInput::m_uintIterFM, 60, "      iterFM = 2147483648" },
        OneWord { "Itbeg", &ControllerInput::m_uintItbeg, 65, "      itbeg = 2147483648" },
        OneWord { "Itend", &ControllerInput::m_uintItend, 66, "      itend = 2147483648" },
        OneWord { "IterRotFAST", &ControllerInput::m_uintIterRotFAST, 71,
            "      iterRotFAST = 2147483648" },
        OneWord { "IterFASTSln", &ControllerInput::m_uintIterFASTSln, 74,
            "      iterFASTSln = 2147483648" },
        OneWord { "IterRst", &ControllerInput::m_uintIterRst, 80, "      iterRst = 2147483648" }),
    [](const auto& tested) { return tested.param.m_name; });

/// Lines 45 and 46 of a case with two layers of these factors.
std::string maxima(
    std::vector<double> u, std::vector<double> v, std::vector<double> w, std::vector<double> p)
{
    ControllerInput input = blank_case();
    input.m_time.m_vecTLen = { 1, 1 };
    input.m_time.m_vecNtCell = { 1, 1 };
    input.m_time.m_vecNIter = { 1, 1 };
    input.m_time.m_vecRlxu = std::move(u);
    input.m_time.m_vecRlxv = std::move(v);
    input.m_time.m_vecRlxw = std::move(w);
    input.m_time.m_vecRlxp = std::move(p);
    const std::string card = card_of(input);
    return line_of(card, 45) + '\n' + line_of(card, 46);
}

TEST(SlvrMainMaxima, AreTakenOverBothLayersAndAllThreeVelocities)
{
    EXPECT_EQ(maxima({ 0.9, 0.1 }, { 0.2, 0.3 }, { 0.4, 0.5 }, { 0.6, 0.7 }),
        "      RlxVelMx = 0.9\n      RlxpMx   = 0.7");
    EXPECT_EQ(maxima({ 0.1, 0.9 }, { 0.2, 0.3 }, { 0.4, 0.5 }, { 0.7, 0.6 }),
        "      RlxVelMx = 0.9\n      RlxpMx   = 0.7");
    EXPECT_EQ(maxima({ 0.1, 0.2 }, { 0.9, 0.3 }, { 0.4, 0.5 }, { 2, 3 }),
        "      RlxVelMx = 0.9\n      RlxpMx   = 3");
    EXPECT_EQ(maxima({ 0.1, 0.2 }, { 0.3, 0.4 }, { 0.5, 0.9 }, { 3, 2 }),
        "      RlxVelMx = 0.9\n      RlxpMx   = 3");
}

TEST(SlvrMainMaxima, OfNegativeFactorsAreNegative)
{
    EXPECT_EQ(maxima({ -4, -3 }, { -0.5, -5 }, { -6, -7 }, { -9, -8 }),
        "      RlxVelMx = -0.5\n      RlxpMx   = -8");
}

} // namespace
