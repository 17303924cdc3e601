// SPDX-License-Identifier: Apache-2.0
#include "case/SlvrRot.h"

#include "tests/case/CaseImages.h"
#include "tests/case/Comparison.h"
#include "tests/case/Golden.h"
#include "tests/case/SolverInput.h"
#include "tests/case/UsedStream.h"

namespace {

using Testing::blank_case;
using Testing::golden;
using Testing::same_bytes;
using VRK::ControllerInput;
using VRK::RotorData;

std::string card_of(const ControllerInput& input)
{
    return Testing::formatted([&](std::ostream& card) { format_slvr_rot(card, input); });
}

/// `rows` numbers from `first` on, each one more than the one before.
std::vector<double> count_up(std::size_t rows, double first)
{
    std::vector<double> column;
    for (std::size_t i = 0; i < rows; ++i)
        column.push_back(first + static_cast<double>(i));
    return column;
}

RotorData typical_rotor()
{
    RotorData rotor;
    rotor.m_strName = "Main";
    rotor.m_bUnsteady = true;
    rotor.m_bClockwise = true;
    rotor.m_bFlapping = true;
    rotor.m_bFlapGeomCorrection = true;
    rotor.m_bCyclicPitch = true;
    rotor.m_uintBlades = 4;
    rotor.m_uintSourceLocations = 50;
    rotor.m_uintAzimuth = 72;
    rotor.m_dRadius = 26.83;
    rotor.m_dHubRadius = 0.2;
    rotor.m_dHingeOffset = 0.05;
    rotor.m_dTipSpeed = 725;
    rotor.m_dTipCorrectionRadius = 0.97;
    rotor.m_dReferenceTwist = -18;
    rotor.m_dPitchAngle = 5;
    rotor.m_dBankAngle = -2.5;
    rotor.m_dCone = 2.75;
    rotor.m_dCollective = 10.25;
    rotor.m_dRequiredCT = 0.0065;
    rotor.m_vecCyclicCos = { 1.5 };
    rotor.m_vecCyclicSin = { -2.25 };
    rotor.m_vecFlapCos = { 0.125 };
    rotor.m_vecFlapSin = { 3 };
    rotor.m_bChordTable = true;
    rotor.m_vecChordR = { 0.2, 1 };
    rotor.m_vecChord = { 0.065, 0.065 };
    rotor.m_bTwistTable = true;
    rotor.m_vecTwistR = { 0.2, 1 };
    rotor.m_vecTwist = { 0, -14.4 };
    rotor.m_vecRefRadius = { 0.25, 0.75 };
    rotor.m_vecAftSchedule = { 0.2, 0.95 };
    rotor.m_vecAftFile = { "naca0012.aft", "tip.aft" };
    rotor.m_adCenter[0] = 1.5;
    rotor.m_adCenter[2] = -3.25;
    return rotor;
}

/// Tables of ten and more rows, tables with rows whose flags are off, no airfoil tables.
RotorData long_rotor()
{
    RotorData rotor;
    rotor.m_strName = "it's 'main'";
    rotor.m_bFlapGeomCorrection = true;
    rotor.m_bTipCorrection = true;
    rotor.m_uintBlades = 3;
    rotor.m_uintSourceLocations = 1;
    rotor.m_uintAzimuth = 2;
    rotor.m_dRadius = 1;
    rotor.m_dHubRadius = 2;
    rotor.m_dHingeOffset = 3;
    rotor.m_dTipSpeed = 4;
    rotor.m_dTipCorrectionRadius = 5;
    rotor.m_dReferenceTwist = 6;
    rotor.m_dPitchAngle = 7;
    rotor.m_dBankAngle = 8;
    rotor.m_dCone = 9;
    rotor.m_dCollective = 10;
    rotor.m_dRequiredCT = 1e-5;
    rotor.m_vecCyclicCos = count_up(11, 1);
    rotor.m_vecCyclicSin = count_up(11, 21.5);
    rotor.m_vecFlapCos = count_up(10, -5);
    rotor.m_vecFlapSin = count_up(10, 15.25);
    rotor.m_vecChordR = count_up(10, 1);
    rotor.m_vecChord = count_up(10, 31.5);
    rotor.m_bDeflTable = true;
    rotor.m_vecDeflR = { 2 };
    rotor.m_vecDefl = { 41.5 };
    rotor.m_vecTwistR = count_up(2, 3);
    rotor.m_vecTwist = count_up(2, 51.5);
    rotor.m_bInplaneTable = true;
    rotor.m_vecInplaneR = count_up(11, 4);
    rotor.m_vecInplane = count_up(11, 61.5);
    rotor.m_vecRefRadius = count_up(12, 1);
    rotor.m_adCenter[0] = 100.5;
    rotor.m_adCenter[1] = -0.25;
    rotor.m_adCenter[2] = 1e6;
    return rotor;
}

/// Flags on without rows, values wider than their field, ten airfoil tables.
RotorData wide_rotor()
{
    RotorData rotor;
    rotor.m_strName = "Tail";
    rotor.m_bUnsteady = true;
    rotor.m_bClockwise = true;
    rotor.m_bFlapping = true;
    rotor.m_bCyclicPitch = true;
    rotor.m_uintBlades = 4294967295;
    rotor.m_uintSourceLocations = 7;
    rotor.m_uintAzimuth = 8;
    rotor.m_dRadius = 0.5;
    rotor.m_dHubRadius = -0.5;
    rotor.m_dHingeOffset = 1234567.89;
    rotor.m_dTipSpeed = 0;
    rotor.m_dTipCorrectionRadius = -0.0;
    rotor.m_dReferenceTwist = 1e-6;
    rotor.m_dPitchAngle = 99.999999;
    rotor.m_dBankAngle = 1.0 / 3.0;
    rotor.m_dCone = 2.0 / 3.0;
    rotor.m_dCollective = 12345678;
    rotor.m_dRequiredCT = 1234567;
    rotor.m_vecFlapCos = { 123456.75 };
    rotor.m_vecFlapSin = { -1 };
    rotor.m_bChordTable = true;
    rotor.m_bTwistTable = true;
    rotor.m_vecInplaneR = { 12345.5 };
    rotor.m_vecInplane = { -6 };
    rotor.m_vecAftSchedule = { 0.1, 0.2, 0.3, 0.4, 0.5, 0.6, 0.7, 0.8, 0.9, 1 };
    rotor.m_vecAftFile = { "t1.aft", "t2.aft", "t3.aft", "t4.aft", "t5.aft", "t6.aft", "t7.aft",
        "t8.aft", "t9.aft", "t10.aft" };
    rotor.m_adCenter[0] = 1e-4;
    rotor.m_adCenter[1] = 2;
    rotor.m_adCenter[2] = 3;
    return rotor;
}

TEST(SlvrRot, WithoutRotorsTheApplicationTheCountAndTheTrimRemain)
{
    EXPECT_TRUE(same_bytes(golden("empty.SlvrRot"), card_of(blank_case())));
}

ControllerInput typical_case()
{
    ControllerInput input = blank_case();
    input.m_vecRotors = { typical_rotor() };
    input.m_bTrim = true;
    input.m_uintTrimPeriod = 200;
    input.m_uintTrimStart = 1000;
    input.m_uintTrimEnd = 5000;
    input.m_dTrimMaxCollectiveChange = 0.5;
    input.m_dTrimTolerance = 1e-4;
    return input;
}

TEST(SlvrRot, OneRotorWritesTheCard)
{
    EXPECT_TRUE(same_bytes(golden("typical.SlvrRot"), card_of(typical_case())));
}

ControllerInput everything_case()
{
    ControllerInput input = blank_case();
    input.m_bLHAWT = true;
    input.m_vecRotors = { long_rotor(), wide_rotor() };
    input.m_bTrim = true;
    input.m_uintTrimPeriod = 4294967295;
    input.m_uintTrimStart = 1;
    input.m_uintTrimEnd = 2;
    input.m_dTrimMaxCollectiveChange = 123456.7;
    input.m_dTrimTolerance = 1e6;
    return input;
}

TEST(SlvrRot, TwoRotorsWithLongTablesWriteTheCard)
{
    // Also: the second rotor's airfoil rows leave the fixed form behind for both centres.
    EXPECT_TRUE(same_bytes(golden("everything.SlvrRot"), card_of(everything_case())));
}

TEST(SlvrRot, CardIsTheSameOnAUsedStream)
{
    EXPECT_TRUE(same_bytes(golden("everything.SlvrRot"),
        Testing::formatted_on_used_stream(
            [](std::ostream& card) { format_slvr_rot(card, everything_case()); })));
}

TEST(SlvrRot, CardIsTheSameUnderACommaLocale)
{
    const auto written = Testing::formatted_under_comma_locale(
        [](std::ostream& card) { format_slvr_rot(card, everything_case()); });
    if (!written)
        GTEST_SKIP() << "no locale with a decimal comma can be made here";
    EXPECT_TRUE(same_bytes(golden("everything.SlvrRot"), *written));
}

TEST(SlvrRot, WithoutAirfoilRowsTheCentreIsInGeneralForm)
{
    // All tables are empty too: their heads and counts of 0 remain.
    ControllerInput input = blank_case();
    input.m_vecRotors.resize(1);
    input.m_vecRotors[0].m_adCenter[0] = 1e6;
    input.m_vecRotors[0].m_adCenter[1] = -0.5;
    input.m_vecRotors[0].m_adCenter[2] = 1.0 / 3.0;
    EXPECT_TRUE(same_bytes(golden("bare-rotor.SlvrRot"), card_of(input)));
}

TEST(SlvrRot, FlapCorrectionWithoutFlappingIsOff)
{
    ControllerInput input = blank_case();
    input.m_vecRotors.resize(1);
    input.m_vecRotors[0].m_bFlapGeomCorrection = true;
    const std::string card = card_of(input);
    EXPECT_NE(card.find("# Flapping?\n.FALSE.\n# Flap Geometry Correction?\n.FALSE.\n"),
        std::string::npos);
}

TEST(SlvrRot, TenthRowTouchesItsHarmonicValue)
{
    ControllerInput input = blank_case();
    input.m_vecRotors = { long_rotor() };
    EXPECT_NE(card_of(input).find("\n1010.000000          30.500000\n"), std::string::npos);
}

TEST(SlvrRot, NameIsNotEscaped)
{
    ControllerInput input = blank_case();
    input.m_vecRotors = { long_rotor() };
    EXPECT_NE(card_of(input).find("# Rotor Name\n'it's 'main''\n"), std::string::npos);
}

TEST(SlvrRot, WritesItsFileReplacingWhatWasThere)
{
    const Testing::SolverInput directory;
    Testing::write_file(directory.path("tail.SlvrRot"), std::string(10000, 'x'));
    ControllerInput input = blank_case();
    input.m_strCaseName = "tail";
    write_slvr_rot(input);
    EXPECT_TRUE(same_bytes(golden("empty.SlvrRot"), directory.bytes("tail.SlvrRot")));
}

TEST(RotorCardPage, LinesAreTheCommentLinesOfTheCardInOrder)
{
    std::vector<std::string> stated;
    for (const auto& row : Testing::FormatPage("rotor-card.md").table("Lines")) {
        std::string text = Testing::unquoted(row.at(1));
        if (const auto n = text.find("<n>"); n != std::string::npos)
            text.replace(n, 3, "1");
        stated.push_back(text);
    }
    std::vector<std::string> written;
    std::istringstream card(card_of(typical_case()));
    for (std::string line; std::getline(card, line);) {
        if (line.starts_with("#"))
            written.push_back(line);
    }
    EXPECT_EQ(stated, written);
}

TEST(RotorCardPage, ExampleIsTheCardOfTheTypicalCase)
{
    const Testing::FormatPage page("rotor-card.md");
    EXPECT_TRUE(same_bytes(page.example("Example"), card_of(typical_case())));
}

} // namespace
