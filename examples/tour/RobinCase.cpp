// SPDX-License-Identifier: Apache-2.0
#include "examples/tour/RobinCase.h"

#include "frontend/models/RobinBody.h"

#include <algorithm>

namespace Examples {

namespace {

constexpr double kInch = 0.0254; // metres
constexpr double kHalfLength = 39.35 * kInch;
constexpr double kRadius = 33.88 * kInch;
constexpr double kChord = 2.61 * kInch;
constexpr double kTipSpeed = 624 * 12 * kInch; // 624 ft/s
constexpr double kFlightSpeed = 0.15 * kTipSpeed;

VRK::BodyData body(std::uint32_t id, Facets facets)
{
    VRK::BodyData data;
    data.m_uintBodyId = id;
    data.m_uintLevel = 5;
    data.m_vecFacets = std::move(facets);
    return data;
}

VRK::RotorData rotor()
{
    VRK::RotorData data;
    data.m_strName = "Main rotor";
    data.m_bTipCorrection = true;
    data.m_uintBlades = 4;
    data.m_uintSourceLocations = 40;
    data.m_dRadius = kRadius;
    data.m_dHubRadius = 0.24;
    data.m_dHingeOffset = 0.06;
    data.m_dTipSpeed = kTipSpeed;
    data.m_dTipCorrectionRadius = 0.95;
    data.m_dPitchAngle = -3.0;
    data.m_dCollective = 10.3;
    data.m_dRequiredCT = 0.0064;
    data.m_adCenter[0] = 0.696 * kHalfLength;
    data.m_adCenter[2] = 0.322 * kHalfLength;
    data.m_bChordTable = true;
    data.m_vecChordR = { 0.24, 1.0 };
    data.m_vecChord = { kChord / kRadius, kChord / kRadius };
    data.m_bTwistTable = true;
    data.m_vecTwistR = { 0.0, 1.0 };
    data.m_vecTwist = { 0.0, -8.0 };
    data.m_uintAzimuth = 72;
    data.m_vecRefRadius = { 0.25, 0.5, 0.75, 1.0 };
    data.m_vecAftSchedule = { 1.0 };
    data.m_vecAftFile = { "naca0012.dat" };
    return data;
}

VRK::TimeData schedule()
{
    // Two revolutions of 72 steps: the first coarse, the second fine.
    constexpr double kRevolution = 2.0 * 3.14159265358979 * kRadius / kTipSpeed;
    VRK::TimeData time {};
    time.m_ucFcMode = 1;
    time.m_vecTLen = { kRevolution, kRevolution };
    time.m_vecNtCell = { 36, 72 };
    time.m_vecNIter = { 8, 12 };
    time.m_vecRlxu = time.m_vecRlxv = time.m_vecRlxw = { 0.5, 0.5 };
    time.m_vecRlxp = { 0.3, 0.3 };
    return time;
}

} // namespace

VRK::ControllerInput robin_case(const std::string& directory)
{
    VRK::ControllerInput input {};
    input.m_strCaseName = "robin";
    input.m_strModelDir = directory;
    for (int axis = 0; axis < 3; ++axis) {
        input.m_grid.m_dDomainMin[axis] = -10.0 * kHalfLength;
        input.m_grid.m_dDomainMax[axis] = 10.0 * kHalfLength;
    }
    input.m_grid.m_uintCellsX = input.m_grid.m_uintCellsY = input.m_grid.m_uintCellsZ = 20;
    input.m_vecBodies = { body(1, robin_fuselage(kHalfLength, 60, 48)),
        body(2, robin_pylon(kHalfLength, 24, 32)) };
    input.m_vecRotors = { rotor() };
    std::fill_n(input.m_anBoundaryType, 6, 1);
    for (auto& velocity : input.m_adBoundaryVelocity)
        velocity[0] = kFlightSpeed;
    input.m_dUinit = kFlightSpeed;
    input.m_dRho = 1.225;
    input.m_dTinf = 288.15;
    input.m_dRGASC = 287.05;
    input.m_dGAMSHR = 1.4;
    input.m_dMU = 1.789e-5;
    input.m_dPinf = 101325.0;
    input.m_time = schedule();
    input.m_uintNXIter = input.m_uintNYIter = input.m_uintNZIter = 2;
    input.m_uintNpIter = 30;
    input.m_uintLimiter = 1;
    input.m_bLBdyPrs = true;
    input.m_uintIterBdyPrs = 36;
    input.m_bLRotFAST = true;
    input.m_uintIterRotFAST = 36;
    input.m_uintIterFASTSln = 36;
    input.m_uintIterRst = 36;
    input.m_strMomentGroups = "1\n1 2\n";
    input.m_fpCompletionFile = directory + "/completion";
    return input;
}

} // namespace Examples
