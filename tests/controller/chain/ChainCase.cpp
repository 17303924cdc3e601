// SPDX-License-Identifier: Apache-2.0
#include "tests/controller/chain/ChainCase.h"

namespace Testing {

VRK::RotorData chain_rotor()
{
    VRK::RotorData rotor;
    rotor.m_strName = "main";
    rotor.m_uintBlades = 2;
    rotor.m_uintSourceLocations = 10;
    rotor.m_uintAzimuth = 36;
    rotor.m_dRadius = 1.5;
    rotor.m_vecChordR = { 0.1, 1.0 };
    rotor.m_vecChord = { 0.2, 0.1 };
    rotor.m_vecCyclicCos = { 1.0 };
    rotor.m_vecCyclicSin = { 2.0 };
    rotor.m_vecRefRadius = { 0.75 };
    rotor.m_vecAftSchedule = { 0.5 };
    rotor.m_vecAftFile = { "naca.aft" };
    return rotor;
}

VRK::BodyData chain_body()
{
    using Vertex = Tavro::Vector<double, 3>;
    VRK::BodyData body;
    body.m_uintBodyId = 3;
    body.m_uintLevel = 4;
    body.m_vecFacets.push_back({ Vertex { 0, 0, 0 }, Vertex { 1, 0, 0 }, Vertex { 0, 1, 0 } });
    return body;
}

void add_layer(VRK::TimeData& time, std::uint32_t steps)
{
    time.m_vecTLen.push_back(0.125 * steps);
    time.m_vecNtCell.push_back(steps);
    time.m_vecNIter.push_back(5);
    time.m_vecRlxu.push_back(0.5);
    time.m_vecRlxv.push_back(0.5);
    time.m_vecRlxw.push_back(0.5);
    time.m_vecRlxp.push_back(0.25);
}

VRK::ControllerInput chain_case()
{
    VRK::ControllerInput input;
    input.m_strCaseName = "hover";
    for (int axis = 0; axis < 3; ++axis) {
        input.m_grid.m_dDomainMin[axis] = -2.0;
        input.m_grid.m_dDomainMax[axis] = 2.0;
    }
    input.m_grid.m_uintCellsX = 8;
    input.m_grid.m_uintCellsY = 8;
    input.m_grid.m_uintCellsZ = 4;
    input.m_grid.m_vecRefBoxesA = { { { -1, -1, -1, 1, 1, 1 }, 2, 7 } };
    input.m_bRunBodyFitter = true;
    input.m_bRunValidator = true;
    input.m_vecBodies = { chain_body() };
    input.m_vecRotors = { chain_rotor() };
    input.m_anBoundaryType[0] = 1;
    input.m_anBoundaryType[1] = 2;
    input.m_time.m_ucFcMode = 1;
    add_layer(input.m_time, 12);
    add_layer(input.m_time, 8);
    input.m_nThreads = 2;
    input.m_adapt.m_uintPeriod = 10;
    input.m_adapt.m_nMaxLvl = 6;
    input.m_bLBdyPrs = true;
    input.m_bLSaveHstBdyPrs = true;
    input.m_uintIterBdyPrs = 5;
    input.m_uintIterFM = 10;
    input.m_bLRotFAST = true;
    input.m_bLSaveHstRotFAST = true;
    input.m_uintIterRotFAST = 10;
    input.m_bLSaveHstFASTSln = true;
    input.m_uintIterFASTSln = 5;
    input.m_bLSaveHstRst = true;
    input.m_uintIterRst = 8;
    return input;
}

} // namespace Testing
