// SPDX-License-Identifier: Apache-2.0
#include "tests/case/CaseImages.h"
#include "tests/case/Comparison.h"
#include "tests/case/FormatPage.h"
#include "tests/case/HexText.h"
#include "tests/support/Files.h"

namespace {

using Testing::bytes_of_hex;
using Testing::FormatPage;
using Testing::unquoted;

using Doubles = std::vector<double>;

std::string example_of(const FormatPage::Row& row) { return bytes_of_hex(unquoted(row.at(4))); }

std::string element_example(const FormatPage& page, const std::string& heading)
{
    std::string bytes;
    for (const auto& row : page.table(heading))
        bytes += example_of(row);
    return bytes;
}

/// The column Example of the page, one row after the other, elements behind their counts.
std::string page_example()
{
    const FormatPage page("case-file.md");
    std::string bytes;
    for (const auto& row : page.table("Case")) {
        bytes += example_of(row);
        if (row[0] == "17")
            bytes += element_example(page, "Box element");
        if (row[0] == "24")
            bytes += element_example(page, "Body element");
        if (row[0] == "25")
            bytes += element_example(page, "Rotor element");
    }
    return bytes;
}

VRK::ControllerInput example_case()
{
    VRK::ControllerInput input;
    EXPECT_TRUE(Testing::read_bytes(page_example(), input));
    return input;
}

/// Bytes that a size of the page stands for: "24", or "3 x 8"; 0 if it varies.
std::size_t stated_size(const std::string& cell)
{
    if (cell.find_first_not_of("0123456789 x") != std::string::npos)
        return 0;
    const auto times = cell.find(" x ");
    const std::size_t first = std::stoul(cell);
    return times == std::string::npos ? first : first * std::stoul(cell.substr(times + 3));
}

TEST(CaseFilePage, NumbersTheFieldsAndStatesTheirSizes)
{
    const FormatPage page("case-file.md");
    EXPECT_EQ(page.table("Case").size(), 78U);
    EXPECT_EQ(page.table("Rotor element").size(), 34U);
    for (const char* heading : { "Case", "Box element", "Body element", "Rotor element" }) {
        std::size_t number = 0;
        for (const auto& row : page.table(heading)) {
            ASSERT_EQ(row.size(), 5U) << heading << " row " << number + 1;
            EXPECT_EQ(row[0], std::to_string(++number)) << heading;
            EXPECT_FALSE(row[3].empty()) << row[1];
            if (const auto size = stated_size(row[2]); size != 0) {
                EXPECT_EQ(example_of(row).size(), size) << row[1];
            }
        }
    }
}

TEST(CaseFilePage, NamesMembersOfTheRecord)
{
    const std::string headers = Testing::read_file(Testing::source_path("case/ControllerInput.h"))
        + Testing::read_file(Testing::source_path("case/GridData.h"))
        + Testing::read_file(Testing::source_path("case/TimeData.h"))
        + Testing::read_file(Testing::source_path("case/AdaptiveData.h"))
        + Testing::read_file(Testing::source_path("case/RotorData.h"));
    const FormatPage page("case-file.md");
    std::size_t names = 0;
    for (const char* heading : { "Case", "Box element", "Body element", "Rotor element" }) {
        for (const auto& row : page.table(heading)) {
            std::string rest = row[1];
            for (auto at = rest.find("m_"); at != std::string::npos; at = rest.find("m_")) {
                rest.erase(0, at);
                const std::string name = rest.substr(0, rest.find_first_of("`."));
                rest.erase(0, name.size());
                EXPECT_NE(headers.find(' ' + name), std::string::npos) << name;
                ++names;
            }
        }
    }
    EXPECT_GT(names, 160U);
}

TEST(CaseFilePage, ExampleIsWrittenBackAsItStands)
{
    EXPECT_TRUE(Testing::same_bytes(page_example(), Testing::written_bytes(example_case())));
}

TEST(CaseFilePage, ExampleFillsTheFrontOfTheRecord)
{
    const auto input = example_case();
    EXPECT_EQ(input.m_uintGUILinkID, 17U);
    EXPECT_EQ(input.m_strCaseName, "demo");
    EXPECT_EQ(input.m_strModelDir, "model");
    EXPECT_EQ(input.m_bRestart.byte(), 2);
    EXPECT_EQ(input.m_strRestartFile, "old.Rst");
    EXPECT_EQ(input.m_bGridOnly.byte(), 0);
    EXPECT_EQ(input.m_bRunBodyFitter.byte(), 1);
    EXPECT_EQ(input.m_bRunValidator.byte(), 0);
}

TEST(CaseFilePage, ExampleFillsTheGrid)
{
    const auto input = example_case();
    const VRK::GridData& grid = input.m_grid;
    for (int axis = 0; axis < 3; ++axis) {
        EXPECT_EQ(grid.m_dDomainMin[axis], -10.0 * (axis + 1));
        EXPECT_EQ(grid.m_dDomainMax[axis], 10.0 * (axis + 1));
    }
    EXPECT_EQ(grid.m_uintCellsX, 2U);
    EXPECT_EQ(grid.m_uintCellsY, 4U);
    EXPECT_EQ(grid.m_uintCellsZ, 6U);
    EXPECT_TRUE(grid.m_bHybrid);
    EXPECT_FALSE(grid.m_bPrisms);
    EXPECT_EQ(grid.m_fpViscInput.Get(), "visc.inp");
    EXPECT_EQ(grid.m_strViscInput, std::string("a\0b", 3));
    ASSERT_EQ(grid.m_vecPoints.size(), 1U);
    EXPECT_EQ(grid.m_vecPoints[0][0], 7.0);
    EXPECT_EQ(grid.m_vecPoints[0][1], 8.0);
    EXPECT_EQ(grid.m_vecPoints[0][2], 9.0);
    ASSERT_EQ(grid.m_vecRefBoxesA.size(), 1U);
    const double box[6] = { -1, -2, -3, 1, 2, 3 };
    for (int k = 0; k < 6; ++k)
        EXPECT_EQ(grid.m_vecRefBoxesA[0].m_adBox[k], box[k]);
    EXPECT_EQ(grid.m_vecRefBoxesA[0].m_uintLevel, 7U);
    EXPECT_EQ(grid.m_vecRefBoxesA[0].m_uintTag, 9U);
    EXPECT_TRUE(grid.m_vecRefBoxesB.empty());
    EXPECT_TRUE(grid.m_vecRefBoxesC.empty());
    EXPECT_FALSE(grid.m_bApproxWettedSurface);
    EXPECT_EQ(grid.m_uintWettedSurfaceArg, 33U);
    EXPECT_EQ(grid.m_ucLevelMin, 5);
    EXPECT_EQ(grid.m_ucLevelMax, 11);
}

TEST(CaseFilePage, ExampleFillsTheBody)
{
    const auto input = example_case();
    ASSERT_EQ(input.m_vecBodies.size(), 1U);
    const VRK::BodyData& body = input.m_vecBodies[0];
    EXPECT_EQ(body.m_uintBodyId, 31U);
    EXPECT_TRUE(body.m_bFlag);
    EXPECT_EQ(body.m_uintLevel, 8U);
    ASSERT_EQ(body.m_vecFacets.size(), 1U);
    const double corners[3][3] = { { 0, 0, 0 }, { 1, 0, 0 }, { 0, 2, 0 } };
    for (std::size_t v = 0; v < 3; ++v) {
        for (std::size_t axis = 0; axis < 3; ++axis)
            EXPECT_EQ(body.m_vecFacets[0][v][axis], corners[v][axis]);
    }
}

TEST(CaseFilePage, ExampleFillsTheRotor)
{
    const auto input = example_case();
    ASSERT_EQ(input.m_vecRotors.size(), 1U);
    const VRK::RotorData& rotor = input.m_vecRotors[0];
    EXPECT_EQ(rotor.m_strName, "Main");
    for (int axis = 0; axis < 3; ++axis)
        EXPECT_EQ(rotor.m_adCenter[axis], axis + 1.0);
    EXPECT_EQ(rotor.m_dRadius, 10.0);
    EXPECT_TRUE(rotor.m_bUnsteady);
    EXPECT_FALSE(rotor.m_bClockwise);
    EXPECT_TRUE(rotor.m_bTipCorrection);
    EXPECT_EQ(rotor.m_uintBlades, 4U);
    EXPECT_EQ(rotor.m_uintSourceLocations, 50U);
    EXPECT_EQ(rotor.m_dHubRadius, 0.25);
    EXPECT_EQ(rotor.m_dHingeOffset, 0.5);
    EXPECT_EQ(rotor.m_dTipSpeed, 700.0);
    EXPECT_EQ(rotor.m_dTipCorrectionRadius, 0.75);
    EXPECT_EQ(rotor.m_dReferenceTwist, -8.0);
    EXPECT_EQ(rotor.m_dPitchAngle, 5.0);
    EXPECT_EQ(rotor.m_dBankAngle, -5.0);
    EXPECT_EQ(rotor.m_dCone, 3.0);
    EXPECT_EQ(rotor.m_dCollective, 12.0);
    EXPECT_EQ(rotor.m_dRequiredCT, 0.0625);
    EXPECT_TRUE(rotor.m_bCyclicPitch);
    EXPECT_EQ(rotor.m_vecCyclicCos, (Doubles { 1, 2 }));
    EXPECT_EQ(rotor.m_vecCyclicSin, (Doubles { -1, -2 }));
    EXPECT_FALSE(rotor.m_bFlapping);
    EXPECT_TRUE(rotor.m_bFlapGeomCorrection);
    EXPECT_EQ(rotor.m_vecFlapCos, (Doubles { 3 }));
    EXPECT_EQ(rotor.m_vecFlapSin, (Doubles { -3 }));
    EXPECT_TRUE(rotor.m_bChordTable);
    EXPECT_EQ(rotor.m_vecChordR, (Doubles { 0.5 }));
    EXPECT_EQ(rotor.m_vecChord, (Doubles { 0.125 }));
    EXPECT_FALSE(rotor.m_bDeflTable);
    EXPECT_EQ(rotor.m_vecDeflR, (Doubles { 0.25 })) << "a table keeps its rows while it is off";
    EXPECT_EQ(rotor.m_vecDefl, (Doubles { 4 }));
    EXPECT_TRUE(rotor.m_bInplaneTable);
    EXPECT_EQ(rotor.m_vecInplaneR, (Doubles { 0.75 }));
    EXPECT_EQ(rotor.m_vecInplane, (Doubles { 6 }));
    EXPECT_FALSE(rotor.m_bTwistTable);
    EXPECT_EQ(rotor.m_vecTwistR, (Doubles { 1 }));
    EXPECT_EQ(rotor.m_vecTwist, (Doubles { 16 }));
    EXPECT_EQ(rotor.m_uintAzimuth, 72U);
    EXPECT_EQ(rotor.m_vecRefRadius, (Doubles { 0.25, 0.75 }));
    EXPECT_EQ(rotor.m_vecAftSchedule, (Doubles { 0.5 }));
    EXPECT_EQ(rotor.m_vecAftFile, (std::vector<std::string> { "a.aft" }));
}

TEST(CaseFilePage, ExampleFillsBoundariesFlowAndTrim)
{
    const auto input = example_case();
    const std::int32_t types[6] = { 0, 1, 2, -1, 1, 0 };
    for (int face = 0; face < 6; ++face) {
        EXPECT_EQ(input.m_anBoundaryType[face], types[face]);
        EXPECT_EQ(input.m_adBoundaryPressure[face], 101.0 + face);
        for (int k = 0; k < 3; ++k)
            EXPECT_EQ(input.m_adBoundaryVelocity[face][k], 3.0 * face + k + 1.0);
    }
    EXPECT_EQ(input.m_dUinit, 21.0);
    EXPECT_EQ(input.m_dVinit, 22.0);
    EXPECT_EQ(input.m_dWinit, 23.0);
    EXPECT_EQ(input.m_dRho, 31.0);
    EXPECT_EQ(input.m_dTinf, 32.0);
    EXPECT_EQ(input.m_dRGASC, 33.0);
    EXPECT_EQ(input.m_dGAMSHR, 34.0);
    EXPECT_EQ(input.m_dMU, 35.0);
    EXPECT_EQ(input.m_dPinf, 36.0);
    EXPECT_TRUE(input.m_bTrim);
    EXPECT_EQ(input.m_uintTrimPeriod, 41U);
    EXPECT_EQ(input.m_uintTrimStart, 42U);
    EXPECT_EQ(input.m_uintTrimEnd, 43U);
    EXPECT_EQ(input.m_dTrimMaxCollectiveChange, 44.0);
    EXPECT_EQ(input.m_dTrimTolerance, 45.0);
}

TEST(CaseFilePage, ExampleFillsTimeAndIterations)
{
    const auto input = example_case();
    EXPECT_EQ(input.m_time.m_ucFcMode, 2);
    EXPECT_EQ(input.m_time.m_vecTLen, (Doubles { 0.5 }));
    EXPECT_EQ(input.m_time.m_vecNtCell, (std::vector<std::uint32_t> { 100 }));
    EXPECT_EQ(input.m_time.m_vecNIter, (std::vector<std::uint32_t> { 3 }));
    EXPECT_EQ(input.m_time.m_vecRlxu, (Doubles { 0.25 }));
    EXPECT_EQ(input.m_time.m_vecRlxv, (Doubles { 0.75 }));
    EXPECT_EQ(input.m_time.m_vecRlxw, (Doubles { 0.125 }));
    EXPECT_EQ(input.m_time.m_vecRlxp, (Doubles { 0.375 }));
    EXPECT_EQ(input.m_uintNXIter, 51U);
    EXPECT_EQ(input.m_uintNYIter, 52U);
    EXPECT_EQ(input.m_uintNZIter, 53U);
    EXPECT_EQ(input.m_uintNpIter, 54U);
    EXPECT_EQ(input.m_uintNppIter, 55U);
    EXPECT_EQ(input.m_uintLimiter, 56U);
    EXPECT_TRUE(input.m_bLHAWT);
    EXPECT_EQ(input.m_shtParallelMode, -2);
    EXPECT_EQ(input.m_nThreads, -3);
}

TEST(CaseFilePage, ExampleFillsTheOutputRequests)
{
    const auto input = example_case();
    EXPECT_EQ(input.m_bLBdyPrs.byte(), 1);
    EXPECT_EQ(input.m_bBdyPrsType2.byte(), 0);
    EXPECT_EQ(input.m_bLSaveHstBdyPrs.byte(), 3);
    EXPECT_EQ(input.m_bLBdyPrsTec.byte(), 4);
    EXPECT_EQ(input.m_uintIterBdyPrs, 61U);
    EXPECT_TRUE(input.m_bLtimeavg);
    EXPECT_EQ(input.m_uintItbeg, 62U);
    EXPECT_EQ(input.m_uintItend, 63U);
    EXPECT_EQ(input.m_uintIterFM, 64U);
    EXPECT_EQ(input.m_dXMnt, 65.0);
    EXPECT_EQ(input.m_dYMnt, 66.0);
    EXPECT_EQ(input.m_dZMnt, 67.0);
    EXPECT_FALSE(input.m_bLRotFAST);
    EXPECT_TRUE(input.m_bLSaveHstRotFAST);
    EXPECT_EQ(input.m_uintIterRotFAST, 68U);
    EXPECT_TRUE(input.m_bLSaveHstFASTSln);
    EXPECT_EQ(input.m_uintIterFASTSln, 69U);
    EXPECT_TRUE(input.m_bLSaveHstRst);
    EXPECT_EQ(input.m_uintIterRst, 70U);
    EXPECT_EQ(input.m_strMomentGroups, "mom");
}

TEST(CaseFilePage, ExampleFillsTurbulenceAndTheCarriedFields)
{
    const auto input = example_case();
    EXPECT_TRUE(input.m_bFlagTurb);
    EXPECT_EQ(input.m_nTurbStart, -71);
    EXPECT_EQ(input.m_nNtTurb, -72);
    EXPECT_TRUE(input.m_bTLimit);
    EXPECT_EQ(input.m_nFlagKE, -73);
    EXPECT_EQ(input.m_dLs, 74.0);
    EXPECT_EQ(input.m_dTurbInt, 75.0);
    EXPECT_EQ(input.m_dRelTK, 76.0);
    EXPECT_EQ(input.m_dRelTE, 77.0);
    EXPECT_EQ(input.m_ucTAlpha, 78);
    EXPECT_EQ(input.m_bCarried0.byte(), 0);
    EXPECT_EQ(input.m_bCarried1.byte(), 5);
    EXPECT_EQ(input.m_uintCarried0, 81U);
    EXPECT_EQ(input.m_uintCarried1, 82U);
    EXPECT_EQ(input.m_dCarried0, 83.0);
    EXPECT_EQ(input.m_bCarried2.byte(), 6);
    EXPECT_EQ(input.m_dCarried1, 84.0);
    EXPECT_EQ(input.m_dCarried2, 85.0);
    EXPECT_EQ(input.m_dCarried3, 86.0);
    EXPECT_EQ(input.m_dCarried4, 87.0);
    EXPECT_EQ(input.m_dCarried5, 88.0);
}

TEST(CaseFilePage, ExampleFillsAdaptationTrajectoryAndCompletion)
{
    const auto input = example_case();
    const VRK::AdaptiveData& adapt = input.m_adapt;
    EXPECT_TRUE(adapt.m_bAdaptive);
    EXPECT_EQ(adapt.m_uintPeriod, 91U);
    EXPECT_EQ(adapt.m_nMaxLvl, -92);
    EXPECT_EQ(adapt.m_dRFactor, 93.0);
    EXPECT_EQ(adapt.m_dBuffer, 94.0);
    EXPECT_EQ(adapt.m_nMethod, -95);
    EXPECT_EQ(adapt.m_uintStart, 96U);
    EXPECT_TRUE(adapt.m_bUseEnd);
    EXPECT_EQ(adapt.m_uintEnd, 97U);
    EXPECT_EQ(adapt.m_dKFilter, 98.0);
    EXPECT_EQ(adapt.m_dLExp, 99.0);
    EXPECT_EQ(adapt.m_dMaxPerc, 100.0);
    EXPECT_EQ(adapt.m_dCDead, 101.0);
    ASSERT_EQ(adapt.m_vecAdaptBoxes.size(), 1U);
    ASSERT_EQ(adapt.m_vecSecondAdaptBoxes.size(), 1U);
    for (std::size_t axis = 0; axis < 3; ++axis) {
        const double k = static_cast<double>(axis);
        EXPECT_EQ(adapt.m_vecAdaptBoxes[0].m_vMin[axis], 1.0 + k);
        EXPECT_EQ(adapt.m_vecAdaptBoxes[0].m_vMax[axis], 4.0 + k);
        EXPECT_EQ(adapt.m_vecSecondAdaptBoxes[0].m_vMin[axis], -6.0 + k);
        EXPECT_EQ(adapt.m_vecSecondAdaptBoxes[0].m_vMax[axis], -3.0 + k);
    }
    EXPECT_TRUE(input.m_bFlagMan);
    EXPECT_EQ(input.m_strTrajectory, "fly");
    EXPECT_EQ(input.m_fpCompletionFile.Get(), "done.txt");
}

TEST(CaseFilePage, ExampleCutAtAnyByteIsRefused)
{
    const std::string whole = page_example();
    for (std::size_t size = 0; size < whole.size(); ++size) {
        VRK::ControllerInput input;
        EXPECT_FALSE(Testing::read_bytes(whole.substr(0, size), input)) << "cut to " << size;
    }
}

} // namespace
