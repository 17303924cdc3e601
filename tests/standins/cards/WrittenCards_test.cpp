// SPDX-License-Identifier: Apache-2.0
// Our writers and the stand-ins' readers know the formats apart from one another; here they meet.
#include "case/AdaptiveInput.h"
#include "case/GridGenInput.h"
#include "case/SlvrMain.h"
#include "case/SlvrRot.h"
#include "case/TimeGrid.h"
#include "standins/cards/AdapterCard.h"
#include "standins/cards/BoundaryFile.h"
#include "standins/cards/RotorCard.h"
#include "standins/cards/SolverCard.h"
#include "standins/cards/TimeSchedule.h"
#include "standins/cards/TreegenFile.h"
#include "tests/case/CaseImages.h"
#include "tests/case/Golden.h"
#include "tests/standins/cards/CardFiles.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <sstream>

namespace {

using Standins::read_adapted_treegen;
using Standins::read_adapter_card;
using Standins::read_boundary_file;
using Standins::read_rotor_card;
using Standins::read_solver_card;
using Standins::read_time_schedule;
using Standins::read_treegen;
using Testing::blank_case;
using Testing::formatted;
using Testing::value_of;
using Testing::verdict;
using VRK::ControllerInput;

using Facet = Tavro::Facet<double, 3, 3>;

std::string solver_card(const ControllerInput& input)
{
    return formatted([&](std::ostream& card) { format_slvr_main(card, input); });
}

std::string rotor_card(const ControllerInput& input)
{
    return formatted([&](std::ostream& card) { format_slvr_rot(card, input); });
}

std::string treegen(const ControllerInput& input, std::span<const VRK::WettedTriangle> wetted = {})
{
    return formatted([&](std::ostream& file) { format_grid_gen_input(file, input, wetted); });
}

/// Numbers at the borders of the forms in which they are written.
constexpr double kNumbers[] = { 0.0, -0.0, 1.0, -1.0, 0.5, 1.0 / 3.0, -2.0 / 3.0, 123456.0,
    1234567.0, 999999.5, 9999995.0, 1e-4, 9.99999e-5, 1e-5, 1e5, 1e6, 1e22, 0.1, 5e-7, 4.9e-7,
    1e300, -1e300, std::numeric_limits<double>::max(), std::numeric_limits<double>::lowest(),
    std::numeric_limits<double>::min(), std::numeric_limits<double>::denorm_min() };

/// All numbers the same, all flags the same.
ControllerInput solver_case(bool flags, double number)
{
    ControllerInput input = blank_case();
    input.m_strCaseName = "hover of the 3rd";
    for (double* value : { &input.m_dUinit, &input.m_dVinit, &input.m_dWinit, &input.m_dRho,
             &input.m_dTinf, &input.m_dRGASC, &input.m_dGAMSHR, &input.m_dMU, &input.m_dPinf,
             &input.m_dXMnt, &input.m_dYMnt, &input.m_dZMnt, &input.m_dLs, &input.m_dTurbInt,
             &input.m_dRelTK, &input.m_dRelTE })
        *value = number;
    for (VRK::Flag* flag :
        { &input.m_bFlagTurb, &input.m_bTLimit, &input.m_bLBdyPrs, &input.m_bLBdyPrsTec,
            &input.m_bLSaveHstBdyPrs, &input.m_bBdyPrsType2, &input.m_bLtimeavg, &input.m_bLRotFAST,
            &input.m_bLSaveHstRotFAST, &input.m_bLSaveHstFASTSln, &input.m_bRestart,
            &input.m_bLSaveHstRst, &input.m_bFlagMan })
        *flag = flags;
    return input;
}

TEST(WrittenSolverCard, IsAcceptedWithAnyNumber)
{
    for (const double number : kNumbers) {
        const ControllerInput input = solver_case(false, number);
        EXPECT_EQ(verdict(solver_card(input), read_solver_card), "accepted") << number;
    }
}

TEST(WrittenSolverCard, IsAcceptedWithEveryFlagAlone)
{
    VRK::Flag ControllerInput::*const flags[] = { &ControllerInput::m_bFlagTurb,
        &ControllerInput::m_bTLimit, &ControllerInput::m_bLBdyPrs, &ControllerInput::m_bLBdyPrsTec,
        &ControllerInput::m_bLSaveHstBdyPrs, &ControllerInput::m_bBdyPrsType2,
        &ControllerInput::m_bLtimeavg, &ControllerInput::m_bLRotFAST,
        &ControllerInput::m_bLSaveHstRotFAST, &ControllerInput::m_bLSaveHstFASTSln,
        &ControllerInput::m_bRestart, &ControllerInput::m_bLSaveHstRst,
        &ControllerInput::m_bFlagMan };
    for (const auto flag : flags) {
        for (const bool others : { false, true }) {
            ControllerInput input = solver_case(others, 1.5);
            input.*flag = !others;
            EXPECT_EQ(verdict(solver_card(input), read_solver_card), "accepted");
        }
    }
}

TEST(WrittenSolverCard, IsAcceptedWithEveryMode)
{
    for (const std::uint8_t mode : std::vector<std::uint8_t> { 0, 1, 2, 3, 255 }) {
        ControllerInput input = blank_case();
        input.m_time.m_ucFcMode = mode;
        input.m_ucTAlpha = mode;
        EXPECT_EQ(verdict(solver_card(input), read_solver_card), "accepted");
    }
}

TEST(WrittenSolverCard, GivesBackWhatTheCaseHas)
{
    ControllerInput input = solver_case(true, 0.125);
    input.m_strRestartFile = "/runs/hover//Restarts/hover.Rst";
    input.m_uintIterFASTSln = 4294967295;
    input.m_uintIterBdyPrs = 3;
    input.m_uintIterRst = 7;
    input.m_nTurbStart = -5;
    input.m_time.m_vecTLen = { 1 };
    input.m_time.m_vecRlxu = { 0.5 };
    input.m_time.m_vecRlxv = { 0.75 };
    input.m_time.m_vecRlxw = { 0.25 };
    input.m_time.m_vecRlxp = { 0.375 };
    const Standins::SolverCard card = value_of(solver_card(input), read_solver_card);
    EXPECT_EQ(card.m_strCaseName, "hover of the 3rd");
    EXPECT_EQ(card.m_strRestartFile, "/runs/hover//Restarts/hover.Rst");
    EXPECT_EQ(card.m_uintIterFASTSln, 4294967295U);
    EXPECT_EQ(card.m_uintIterBdyPrs, 3U);
    EXPECT_EQ(card.m_uintIterRst, 7U);
    EXPECT_EQ(card.m_nTurbStart, -5);
    EXPECT_EQ(card.m_dRlxVelMx, 0.75);
    EXPECT_EQ(card.m_dRlxpMx, 0.375);
    EXPECT_EQ(card.m_nBdyPrsType, 2);
    EXPECT_EQ(card.m_adMomentPoint, (std::array<double, 3> { 0.125, 0.125, 0.125 }));
    EXPECT_EQ(card.m_strTrajectoryFile, "hover of the 3rd.SlvrTraj");
}

VRK::TimeData three_layers()
{
    VRK::TimeData time;
    time.m_vecTLen = { 0.5, 2, 1.0 / 3.0 };
    time.m_vecNtCell = { 100, 50, 7 };
    time.m_vecNIter = { 3, 4, 4294967295 };
    time.m_vecRlxu = { 0.1, 1.23456789e-5, 1e300 };
    time.m_vecRlxv = { 0.2, 1e7, -0.0 };
    time.m_vecRlxw = { 0.3, 1, 5e-324 };
    time.m_vecRlxp = { 0.4, 0.7, 2.0 / 3.0 };
    return time;
}

std::string schedule_to(const VRK::TimeData& time, std::uint32_t target)
{
    return formatted([&](std::ostream& card) { format_time_grid(card, time, target); });
}

TEST(WrittenTimeGrid, IsAcceptedWhole)
{
    const Standins::TimeSchedule schedule
        = value_of(formatted([](std::ostream& card) { format_time_grid(card, three_layers()); }),
            read_time_schedule);
    EXPECT_EQ(schedule.steps(), 157U);
    EXPECT_FALSE(schedule.m_bScientific);
}

// Every target: within each layer, at its end, at 0, and beyond the last step, 157.
TEST(WrittenTimeGrid, IsAcceptedCutAtAnyStep)
{
    for (std::uint32_t target = 0; target <= 160; ++target) {
        const Standins::TimeSchedule schedule
            = value_of(schedule_to(three_layers(), target), read_time_schedule);
        EXPECT_EQ(schedule.steps(), std::min(target, 157U));
        EXPECT_TRUE(schedule.m_bScientific);
    }
}

TEST(WrittenTimeGrid, CutLayerWithoutStepsIsAccepted)
{
    VRK::TimeData time = three_layers();
    time.m_vecNtCell[0] = 0;
    EXPECT_EQ(value_of(schedule_to(time, 10), read_time_schedule).steps(), 10U);
    time.m_vecTLen[0] = 0;
    EXPECT_EQ(value_of(schedule_to(time, 10), read_time_schedule).steps(), 10U);
}

TEST(WrittenTimeGrid, IsAcceptedWithoutLayers)
{
    EXPECT_EQ(verdict(schedule_to({}, 10), read_time_schedule), "accepted");
    EXPECT_EQ(verdict(formatted([](std::ostream& card) { format_time_grid(card, {}); }),
                  read_time_schedule),
        "accepted");
}

/// All tables of `rows` rows, but for those of the airfoils; all numbers and all flags the same.
VRK::RotorData rotor(std::size_t rows, std::size_t airfoils, bool flags, double number)
{
    VRK::RotorData data;
    data.m_strName = "Rotor's '" + std::to_string(rows) + "'";
    for (VRK::Flag* flag : { &data.m_bClockwise, &data.m_bTipCorrection, &data.m_bUnsteady,
             &data.m_bCyclicPitch, &data.m_bFlapping, &data.m_bFlapGeomCorrection,
             &data.m_bChordTable, &data.m_bDeflTable, &data.m_bInplaneTable, &data.m_bTwistTable })
        *flag = flags;
    for (double* value : { &data.m_dRadius, &data.m_dHubRadius, &data.m_dHingeOffset,
             &data.m_dTipSpeed, &data.m_dTipCorrectionRadius, &data.m_dReferenceTwist,
             &data.m_dPitchAngle, &data.m_dBankAngle, &data.m_dCone, &data.m_dCollective,
             &data.m_dRequiredCT, &data.m_adCenter[0], &data.m_adCenter[1], &data.m_adCenter[2] })
        *value = number;
    for (std::vector<double>* column : { &data.m_vecCyclicCos, &data.m_vecCyclicSin,
             &data.m_vecFlapCos, &data.m_vecFlapSin, &data.m_vecChordR, &data.m_vecChord,
             &data.m_vecDeflR, &data.m_vecDefl, &data.m_vecInplaneR, &data.m_vecInplane,
             &data.m_vecTwistR, &data.m_vecTwist, &data.m_vecRefRadius })
        column->assign(rows, number);
    data.m_vecAftSchedule.assign(airfoils, number);
    data.m_vecAftFile.assign(airfoils, "it's a 'table'.aft");
    return data;
}

TEST(WrittenRotorCard, IsAcceptedWithAnyNumberInEveryTable)
{
    for (const double number : kNumbers) {
        ControllerInput input = blank_case();
        input.m_vecRotors = { rotor(2, 1, true, number) };
        input.m_dTrimTolerance = number;
        input.m_dTrimMaxCollectiveChange = number;
        EXPECT_EQ(verdict(rotor_card(input), read_rotor_card), "accepted") << number;
    }
}

TEST(WrittenRotorCard, SeveralRotorsAreAcceptedWithAndWithoutRows)
{
    for (const std::size_t airfoils : std::vector<std::size_t> { 0, 1, 12 }) {
        ControllerInput input = blank_case();
        input.m_bLHAWT = airfoils == 0;
        input.m_bTrim = airfoils == 1;
        input.m_vecRotors = { rotor(0, 0, true, 0.5), rotor(101, airfoils, false, -12.25),
            rotor(10, 0, true, 1e6), rotor(1, airfoils, false, 3) };
        const Standins::RotorCard card = value_of(rotor_card(input), read_rotor_card);
        ASSERT_EQ(card.m_vecRotors.size(), 4U);
        EXPECT_EQ(card.m_bLHAWT, airfoils == 0);
        EXPECT_EQ(card.m_bTrim, airfoils == 1);
        EXPECT_TRUE(card.m_vecRotors[0].m_bFlapGeomCorrection);
        EXPECT_FALSE(card.m_vecRotors[0].m_bSteady);
        EXPECT_EQ(card.m_vecRotors[1].m_strName, "Rotor's '101'");
        EXPECT_EQ(card.m_vecRotors[1].m_cyclic.m_vecCos, std::vector<double>(101, -12.25));
        EXPECT_EQ(card.m_vecRotors[2].m_inplane.m_vecSecond, std::vector<double>(10, 1e6));
        EXPECT_EQ(card.m_vecRotors[3].m_vecAirfoils.size(), airfoils);
        EXPECT_EQ(card.m_vecRotors[3].m_adCenter, (std::array<double, 3> { 3, 3, 3 }));
    }
}

TEST(WrittenRotorCard, FlapCorrectionWithoutFlappingIsAccepted)
{
    ControllerInput input = blank_case();
    input.m_vecRotors = { rotor(1, 1, true, 1) };
    input.m_vecRotors[0].m_bFlapping = false;
    EXPECT_FALSE(
        value_of(rotor_card(input), read_rotor_card).m_vecRotors.at(0).m_bFlapGeomCorrection);
}

TEST(WrittenRotorCard, IsAcceptedWithoutRotors)
{
    EXPECT_EQ(verdict(rotor_card(blank_case()), read_rotor_card), "accepted");
}

/// Three bodies, one of them without facets, boxes in all lists, two points.
ControllerInput grid_case()
{
    ControllerInput input = blank_case();
    VRK::GridData& grid = input.m_grid;
    for (int axis = 0; axis < 3; ++axis) {
        grid.m_dDomainMin[axis] = -4.0;
        grid.m_dDomainMax[axis] = 4.0;
    }
    grid.m_uintCellsX = grid.m_uintCellsY = grid.m_uintCellsZ = 2;
    grid.m_vecPoints = { { 1, 2, 3 }, { -1, -2, -3 } };
    grid.m_vecRefBoxesA = { { { 0, 0, 0, 1, 1, 1 }, 1, 11 }, { {}, 2, 12 } };
    grid.m_vecRefBoxesB = { { {}, 3, 13 } };
    grid.m_vecRefBoxesC = { { {}, 4, 4294967295 } };
    const Facet facet { { { 0, 0, 0 }, { 1, 0, 0 }, { 0, 1, 0 } } };
    input.m_vecBodies = { { 1, true, 5, { facet, facet } }, { 2, true, 6, {} },
        { 3, VRK::Flag::from_byte(7), 7, { facet } } };
    return input;
}

const std::vector<VRK::WettedTriangle> kWetted(3, { 9, {} });

TEST(WrittenTreegen, IsAcceptedWithEveryKindOfEntity)
{
    const Standins::TreegenFile file = value_of(treegen(grid_case(), kWetted), read_treegen);
    EXPECT_EQ(file.m_vecPoints.size(), 2U);
    ASSERT_EQ(file.m_vecBoxes.size(), 4U);
    EXPECT_EQ(file.m_vecBoxes[3].m_uintTag, 4294967295U);
    ASSERT_EQ(file.m_vecFacets.size(), 3U);
    EXPECT_EQ(file.m_vecFacets[2].m_uintBodyId, 3U);
    EXPECT_EQ(file.m_vecFacets[2].m_ucFlag, 7);
    ASSERT_EQ(file.m_vecWetted.size(), 3U);
    EXPECT_EQ(file.m_vecWetted[0].m_uintLevel, 9U);
}

TEST(WrittenTreegen, IsAcceptedWithADomainAlone)
{
    ControllerInput input = grid_case();
    input.m_vecBodies.clear();
    input.m_grid.m_vecPoints.clear();
    input.m_grid.m_vecRefBoxesA.clear();
    input.m_grid.m_vecRefBoxesB.clear();
    input.m_grid.m_vecRefBoxesC.clear();
    EXPECT_EQ(verdict(treegen(input), read_treegen), "accepted");
}

std::string adapted(const std::string& old, const std::string& labelText)
{
    std::istringstream oldStream(old);
    std::istringstream labels(labelText);
    std::stringstream result;
    EXPECT_TRUE(adapt_grid_gen_input(oldStream, labels, result));
    return result.str();
}

TEST(WrittenTreegen, IsAcceptedAdaptedOnceAndAgain)
{
    const std::string once
        = adapted(treegen(grid_case(), kWetted), "4 4 0 0 0 4 4 4\n0 2 2 4 0 2 1 0 0 0 0 0 0\n");
    const Standins::TreegenFile file = value_of(once, read_adapted_treegen);
    EXPECT_EQ(file.m_vecBoxes.size(), 2U);
    EXPECT_EQ(file.m_vecFacets.size(), 3U);
    EXPECT_EQ(file.m_vecWetted.size(), 3U);
    // Without labels only the background's box is left.
    const Standins::TreegenFile again = value_of(adapted(once, ""), read_adapted_treegen);
    EXPECT_EQ(again.m_vecBoxes.size(), 1U);
    EXPECT_EQ(again.m_vecFacets.size(), 3U);
}

TEST(WrittenBoundaryFile, IsAcceptedWithEveryTypeOnEveryFace)
{
    for (const double number : kNumbers) {
        for (std::int32_t shift = -1; shift <= 2; ++shift) {
            ControllerInput input = blank_case();
            for (int face = 0; face < 6; ++face) {
                input.m_anBoundaryType[face] = (face + shift) % 3;
                input.m_adBoundaryPressure[face] = number;
                for (double& component : input.m_adBoundaryVelocity[face])
                    component = number;
            }
            EXPECT_EQ(verdict(formatted([&](std::ostream& card) { format_bnd_cnd(card, input); }),
                          read_boundary_file),
                "accepted");
        }
    }
}

TEST(WrittenAdapterCard, IsAcceptedWithAnyNumberAndStage)
{
    for (const double number : kNumbers) {
        for (const int stage : { 1, 2 }) {
            VRK::AdaptiveData adapt;
            adapt.m_nMethod = -3;
            adapt.m_nMaxLvl = 2147483647;
            for (double* value : { &adapt.m_dRFactor, &adapt.m_dBuffer, &adapt.m_dKFilter,
                     &adapt.m_dLExp, &adapt.m_dMaxPerc, &adapt.m_dCDead })
                *value = number;
            const std::string card = formatted([&](std::ostream& stream) {
                format_adaptive(stream, adapt, stage, 1, 4000000000);
            });
            const Standins::AdapterCard read = value_of(card, read_adapter_card);
            EXPECT_EQ(read.m_nStage, stage);
            EXPECT_EQ(read.m_uintTimestep, 4000000000U);
            EXPECT_EQ(read.m_nMaxLvl, 2147483647);
        }
    }
}

} // namespace
