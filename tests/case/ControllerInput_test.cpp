// SPDX-License-Identifier: Apache-2.0
#include "case/ControllerInput.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <functional>
#include <iterator>
#include <memory>
#include <new>
#include <type_traits>

namespace {

using VRK::AdaptiveData;
using VRK::BodyData;
using VRK::ControllerInput;
using VRK::Flag;
using VRK::GridData;
using VRK::RefBoxData;
using VRK::RotorData;
using VRK::TimeData;

// Types stand as the file has them; a few whose width or sign is easily mistaken.
static_assert(std::is_same_v<decltype(ControllerInput::m_uintGUILinkID), std::uint32_t>);
static_assert(std::is_same_v<decltype(ControllerInput::m_anBoundaryType), std::int32_t[6]>);
static_assert(std::is_same_v<decltype(ControllerInput::m_adBoundaryPressure), double[6]>);
static_assert(std::is_same_v<decltype(ControllerInput::m_adBoundaryVelocity), double[6][3]>);
static_assert(std::is_same_v<decltype(ControllerInput::m_shtParallelMode), std::int16_t>);
static_assert(std::is_same_v<decltype(ControllerInput::m_nThreads), std::int32_t>);
static_assert(std::is_same_v<decltype(ControllerInput::m_nTurbStart), std::int32_t>);
static_assert(std::is_same_v<decltype(ControllerInput::m_nFlagKE), std::int32_t>);
static_assert(std::is_same_v<decltype(ControllerInput::m_ucTAlpha), std::uint8_t>);
static_assert(std::is_same_v<decltype(ControllerInput::m_fpCompletionFile), Tavro::FilePath>);
static_assert(std::is_same_v<decltype(ControllerInput::m_vecBodies), std::vector<BodyData>>);
static_assert(std::is_same_v<decltype(ControllerInput::m_vecRotors), std::vector<RotorData>>);
static_assert(std::is_same_v<decltype(GridData::m_ucLevelMin), std::uint8_t>);
static_assert(
    std::is_same_v<decltype(GridData::m_vecPoints), std::vector<Tavro::Vector<double, 3>>>);
static_assert(std::is_same_v<decltype(TimeData::m_ucFcMode), std::uint8_t>);
static_assert(std::is_same_v<decltype(TimeData::m_vecNtCell), std::vector<std::uint32_t>>);
static_assert(std::is_same_v<decltype(AdaptiveData::m_nMaxLvl), std::int32_t>);
static_assert(std::is_same_v<decltype(AdaptiveData::m_nMethod), std::int32_t>);
static_assert(
    std::is_same_v<decltype(BodyData::m_vecFacets), std::vector<Tavro::Facet<double, 3, 3>>>);
static_assert(std::is_same_v<decltype(RotorData::m_vecAftFile), std::vector<std::string>>);
static_assert(!std::is_polymorphic_v<ControllerInput>);

/// A record made in memory that was full of ones before.
class OnOldMemory {
public:
    OnOldMemory()
    {
        std::memset(m_storage, 0xFF, sizeof m_storage);
        m_input = new (m_storage) ControllerInput;
    }
    ~OnOldMemory() { std::destroy_at(m_input); }
    OnOldMemory(const OnOldMemory&) = delete;
    OnOldMemory& operator=(const OnOldMemory&) = delete;
    [[nodiscard]] const ControllerInput& input() const { return *m_input; }

private:
    alignas(ControllerInput) unsigned char m_storage[sizeof(ControllerInput)];
    ControllerInput* m_input;
};

TEST(ControllerInput, ConstructorZeroesTheLinkTheVelocitiesAndTheMomentPoint)
{
    const OnOldMemory memory;
    const ControllerInput& input = memory.input();
    EXPECT_EQ(input.m_uintGUILinkID, 0U);
    for (const auto& face : input.m_adBoundaryVelocity) {
        for (const double component : face)
            EXPECT_EQ(component, 0.0);
    }
    EXPECT_EQ(input.m_dUinit, 0.0);
    EXPECT_EQ(input.m_dVinit, 0.0);
    EXPECT_EQ(input.m_dWinit, 0.0);
    EXPECT_EQ(input.m_dXMnt, 0.0);
    EXPECT_EQ(input.m_dYMnt, 0.0);
    EXPECT_EQ(input.m_dZMnt, 0.0);
    for (int axis = 0; axis < 3; ++axis) {
        EXPECT_EQ(input.m_grid.m_dDomainMin[axis], 0.0);
        EXPECT_EQ(input.m_grid.m_dDomainMax[axis], 0.0);
    }
}

TEST(ControllerInput, TextsListsAndPathsStartEmpty)
{
    const OnOldMemory memory;
    const ControllerInput& input = memory.input();
    for (const std::string* text :
        { &input.m_strCaseName, &input.m_strModelDir, &input.m_strRestartFile,
            &input.m_strMomentGroups, &input.m_strTrajectory, &input.m_grid.m_strViscInput })
        EXPECT_EQ(*text, "");
    EXPECT_TRUE(input.m_vecBodies.empty());
    EXPECT_TRUE(input.m_vecRotors.empty());
    EXPECT_TRUE(input.m_grid.m_vecPoints.empty());
    EXPECT_TRUE(input.m_time.m_vecTLen.empty());
    EXPECT_TRUE(input.m_adapt.m_vecAdaptBoxes.empty());
    EXPECT_FALSE(input.m_fpCompletionFile.Initialized());
    EXPECT_FALSE(input.m_grid.m_fpViscInput.Initialized());
}

template <typename... Member>
bool in_order(const Member&... member)
{
    const void* const order[] = { &member... };
    return std::is_sorted(std::begin(order), std::end(order), std::less<>());
}

TEST(ControllerInput, MembersAreDeclaredInTheOrderOfTheRecord)
{
    const ControllerInput i;
    EXPECT_TRUE(in_order(i.m_uintGUILinkID, i.m_strCaseName, i.m_strModelDir, i.m_bGridOnly,
        i.m_bRunBodyFitter, i.m_bRunValidator, i.m_bRestart, i.m_strRestartFile, i.m_grid,
        i.m_vecBodies, i.m_vecRotors, i.m_anBoundaryType, i.m_adBoundaryPressure,
        i.m_adBoundaryVelocity, i.m_dUinit, i.m_dVinit, i.m_dWinit, i.m_dRho, i.m_dTinf, i.m_dRGASC,
        i.m_dGAMSHR, i.m_dMU, i.m_dPinf, i.m_bTrim, i.m_uintTrimPeriod, i.m_uintTrimStart,
        i.m_uintTrimEnd, i.m_dTrimMaxCollectiveChange, i.m_dTrimTolerance, i.m_time, i.m_uintNXIter,
        i.m_uintNYIter, i.m_uintNZIter, i.m_uintNpIter, i.m_uintNppIter, i.m_uintLimiter,
        i.m_bLHAWT, i.m_shtParallelMode, i.m_nThreads, i.m_bLBdyPrs, i.m_bBdyPrsType2,
        i.m_bLSaveHstBdyPrs, i.m_bLBdyPrsTec, i.m_uintIterBdyPrs, i.m_uintIterFM, i.m_dXMnt,
        i.m_dYMnt, i.m_dZMnt, i.m_bLtimeavg, i.m_uintItbeg, i.m_uintItend, i.m_bLRotFAST,
        i.m_bLSaveHstRotFAST, i.m_uintIterRotFAST, i.m_bLSaveHstFASTSln, i.m_uintIterFASTSln,
        i.m_bLSaveHstRst, i.m_uintIterRst, i.m_strMomentGroups, i.m_bFlagTurb, i.m_nTurbStart,
        i.m_nNtTurb, i.m_bTLimit, i.m_nFlagKE, i.m_dLs, i.m_dTurbInt, i.m_dRelTK, i.m_dRelTE,
        i.m_ucTAlpha, i.m_bCarried0, i.m_bCarried1, i.m_uintCarried0, i.m_uintCarried1,
        i.m_dCarried0, i.m_bCarried2, i.m_dCarried1, i.m_dCarried2, i.m_dCarried3, i.m_dCarried4,
        i.m_dCarried5, i.m_adapt, i.m_fpCompletionFile, i.m_bFlagMan, i.m_strTrajectory));
    const GridData& g = i.m_grid;
    EXPECT_TRUE(in_order(g.m_dDomainMin, g.m_dDomainMax, g.m_uintCellsX, g.m_uintCellsY,
        g.m_uintCellsZ, g.m_vecPoints, g.m_vecRefBoxesA, g.m_vecRefBoxesB, g.m_vecRefBoxesC,
        g.m_bApproxWettedSurface, g.m_uintWettedSurfaceArg, g.m_ucLevelMin, g.m_ucLevelMax,
        g.m_bHybrid, g.m_bPrisms, g.m_fpViscInput, g.m_strViscInput));
    const TimeData& t = i.m_time;
    EXPECT_TRUE(in_order(t.m_ucFcMode, t.m_vecTLen, t.m_vecNtCell, t.m_vecNIter, t.m_vecRlxu,
        t.m_vecRlxv, t.m_vecRlxw, t.m_vecRlxp));
    const AdaptiveData& a = i.m_adapt;
    EXPECT_TRUE(in_order(a.m_bAdaptive, a.m_uintPeriod, a.m_nMaxLvl, a.m_dRFactor, a.m_dBuffer,
        a.m_nMethod, a.m_uintStart, a.m_bUseEnd, a.m_uintEnd, a.m_dKFilter, a.m_dLExp, a.m_dMaxPerc,
        a.m_dCDead, a.m_vecAdaptBoxes, a.m_vecSecondAdaptBoxes));
    const RotorData r;
    EXPECT_TRUE(in_order(r.m_strName, r.m_bClockwise, r.m_bTipCorrection, r.m_uintBlades,
        r.m_uintSourceLocations, r.m_dRadius, r.m_dHubRadius, r.m_dHingeOffset, r.m_dTipSpeed,
        r.m_dTipCorrectionRadius, r.m_dReferenceTwist, r.m_dPitchAngle, r.m_dBankAngle, r.m_dCone,
        r.m_dCollective, r.m_dRequiredCT, r.m_bUnsteady, r.m_adCenter, r.m_bCyclicPitch,
        r.m_vecCyclicCos, r.m_vecCyclicSin, r.m_bFlapping, r.m_bFlapGeomCorrection, r.m_vecFlapCos,
        r.m_vecFlapSin, r.m_bChordTable, r.m_vecChordR, r.m_vecChord, r.m_bDeflTable, r.m_vecDeflR,
        r.m_vecDefl, r.m_bInplaneTable, r.m_vecInplaneR, r.m_vecInplane, r.m_bTwistTable,
        r.m_vecTwistR, r.m_vecTwist, r.m_uintAzimuth, r.m_vecRefRadius, r.m_vecAftSchedule,
        r.m_vecAftFile));
}

TEST(RotorData, NewElementIsAllZeroWithEmptyTextsAndTables)
{
    std::vector<RotorData> rotors(1);
    EXPECT_EQ(rotors[0].m_strName, "");
    EXPECT_FALSE(rotors[0].m_bUnsteady);
    EXPECT_EQ(rotors[0].m_uintBlades, 0U);
    EXPECT_EQ(rotors[0].m_dRequiredCT, 0.0);
    EXPECT_EQ(rotors[0].m_adCenter[2], 0.0);
    EXPECT_TRUE(rotors[0].m_vecAftFile.empty());
}

TEST(RotorData, CopyHasEveryMember)
{
    RotorData rotor;
    rotor.m_strName = "Main";
    rotor.m_bTwistTable = Flag::from_byte(3);
    rotor.m_adCenter[1] = -0.5;
    rotor.m_vecTwist = { 1.0, 2.0 };
    rotor.m_vecAftFile = { "a", "b" };
    const RotorData copy = rotor;
    EXPECT_EQ(copy.m_strName, "Main");
    EXPECT_EQ(copy.m_bTwistTable.byte(), 3);
    EXPECT_EQ(copy.m_adCenter[1], -0.5);
    EXPECT_EQ(copy.m_vecTwist, (std::vector<double> { 1.0, 2.0 }));
    EXPECT_EQ(copy.m_vecAftFile, (std::vector<std::string> { "a", "b" }));
}

} // namespace
