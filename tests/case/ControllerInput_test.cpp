// SPDX-License-Identifier: Apache-2.0
#include "case/ControllerInput.h"

#include "tests/case/CaseImages.h"
#include "tests/case/Comparison.h"

#include <gtest/gtest.h>

#include <algorithm>
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
        // Volatile, or the compiler leaves it out: the memory is not looked at before the record
        // is.
        for (volatile unsigned char& byte : m_storage)
            byte = 0xFF;
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

TEST(ControllerInput, EveryMemberIsZeroBeforeRead)
{
    // The smallest case is 732 zeros: every number, flag, length and count of the file.
    const OnOldMemory memory;
    EXPECT_TRUE(
        Testing::same_bytes(std::string(732, '\0'), Testing::written_bytes(memory.input())));
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

/// A value of its own in each of the 41 members.
RotorData full_rotor()
{
    RotorData rotor;
    rotor.m_strName = "Main";
    rotor.m_bClockwise = Flag::from_byte(1);
    rotor.m_bTipCorrection = Flag::from_byte(2);
    rotor.m_bUnsteady = Flag::from_byte(3);
    rotor.m_bCyclicPitch = Flag::from_byte(4);
    rotor.m_bFlapping = Flag::from_byte(5);
    rotor.m_bFlapGeomCorrection = Flag::from_byte(6);
    rotor.m_bChordTable = Flag::from_byte(7);
    rotor.m_bDeflTable = Flag::from_byte(8);
    rotor.m_bInplaneTable = Flag::from_byte(9);
    rotor.m_bTwistTable = Flag::from_byte(10);
    rotor.m_uintBlades = 11;
    rotor.m_uintSourceLocations = 12;
    rotor.m_uintAzimuth = 13;
    rotor.m_dRadius = 14.5;
    rotor.m_dHubRadius = 15.5;
    rotor.m_dHingeOffset = 16.5;
    rotor.m_dTipSpeed = 17.5;
    rotor.m_dTipCorrectionRadius = 18.5;
    rotor.m_dReferenceTwist = 19.5;
    rotor.m_dPitchAngle = 20.5;
    rotor.m_dBankAngle = 21.5;
    rotor.m_dCone = 22.5;
    rotor.m_dCollective = 23.5;
    rotor.m_dRequiredCT = 24.5;
    rotor.m_adCenter[0] = 25.5;
    rotor.m_adCenter[1] = 26.5;
    rotor.m_adCenter[2] = 27.5;
    rotor.m_vecCyclicCos = { 28, 28.5 };
    rotor.m_vecCyclicSin = { 29, 29.5 };
    rotor.m_vecFlapCos = { 30, 30.5 };
    rotor.m_vecFlapSin = { 31, 31.5 };
    rotor.m_vecChordR = { 32, 32.5 };
    rotor.m_vecChord = { 33, 33.5 };
    rotor.m_vecDeflR = { 34, 34.5 };
    rotor.m_vecDefl = { 35, 35.5 };
    rotor.m_vecInplaneR = { 36, 36.5 };
    rotor.m_vecInplane = { 37, 37.5 };
    rotor.m_vecTwistR = { 38, 38.5 };
    rotor.m_vecTwist = { 39, 39.5 };
    rotor.m_vecRefRadius = { 40, 40.5 };
    rotor.m_vecAftSchedule = { 41, 41.5 };
    rotor.m_vecAftFile = { "a", "b" };
    return rotor;
}

TEST(RotorData, CopyHasEveryMember)
{
    const RotorData original = full_rotor();
    RotorData copy = original; // NOLINT(performance-unnecessary-copy-initialization): its subject
    EXPECT_EQ(copy.m_strName, "Main");
    EXPECT_EQ(copy.m_bClockwise.byte(), 1);
    EXPECT_EQ(copy.m_bTipCorrection.byte(), 2);
    EXPECT_EQ(copy.m_bUnsteady.byte(), 3);
    EXPECT_EQ(copy.m_bCyclicPitch.byte(), 4);
    EXPECT_EQ(copy.m_bFlapping.byte(), 5);
    EXPECT_EQ(copy.m_bFlapGeomCorrection.byte(), 6);
    EXPECT_EQ(copy.m_bChordTable.byte(), 7);
    EXPECT_EQ(copy.m_bDeflTable.byte(), 8);
    EXPECT_EQ(copy.m_bInplaneTable.byte(), 9);
    EXPECT_EQ(copy.m_bTwistTable.byte(), 10);
    EXPECT_EQ(copy.m_uintBlades, 11U);
    EXPECT_EQ(copy.m_uintSourceLocations, 12U);
    EXPECT_EQ(copy.m_uintAzimuth, 13U);
    EXPECT_EQ(copy.m_dRadius, 14.5);
    EXPECT_EQ(copy.m_dHubRadius, 15.5);
    EXPECT_EQ(copy.m_dHingeOffset, 16.5);
    EXPECT_EQ(copy.m_dTipSpeed, 17.5);
    EXPECT_EQ(copy.m_dTipCorrectionRadius, 18.5);
    EXPECT_EQ(copy.m_dReferenceTwist, 19.5);
    EXPECT_EQ(copy.m_dPitchAngle, 20.5);
    EXPECT_EQ(copy.m_dBankAngle, 21.5);
    EXPECT_EQ(copy.m_dCone, 22.5);
    EXPECT_EQ(copy.m_dCollective, 23.5);
    EXPECT_EQ(copy.m_dRequiredCT, 24.5);
    EXPECT_EQ(copy.m_adCenter[0], 25.5);
    EXPECT_EQ(copy.m_adCenter[1], 26.5);
    EXPECT_EQ(copy.m_adCenter[2], 27.5);
    EXPECT_EQ(copy.m_vecCyclicCos, (std::vector<double> { 28, 28.5 }));
    EXPECT_EQ(copy.m_vecCyclicSin, (std::vector<double> { 29, 29.5 }));
    EXPECT_EQ(copy.m_vecFlapCos, (std::vector<double> { 30, 30.5 }));
    EXPECT_EQ(copy.m_vecFlapSin, (std::vector<double> { 31, 31.5 }));
    EXPECT_EQ(copy.m_vecChordR, (std::vector<double> { 32, 32.5 }));
    EXPECT_EQ(copy.m_vecChord, (std::vector<double> { 33, 33.5 }));
    EXPECT_EQ(copy.m_vecDeflR, (std::vector<double> { 34, 34.5 }));
    EXPECT_EQ(copy.m_vecDefl, (std::vector<double> { 35, 35.5 }));
    EXPECT_EQ(copy.m_vecInplaneR, (std::vector<double> { 36, 36.5 }));
    EXPECT_EQ(copy.m_vecInplane, (std::vector<double> { 37, 37.5 }));
    EXPECT_EQ(copy.m_vecTwistR, (std::vector<double> { 38, 38.5 }));
    EXPECT_EQ(copy.m_vecTwist, (std::vector<double> { 39, 39.5 }));
    EXPECT_EQ(copy.m_vecRefRadius, (std::vector<double> { 40, 40.5 }));
    EXPECT_EQ(copy.m_vecAftSchedule, (std::vector<double> { 41, 41.5 }));
    EXPECT_EQ(copy.m_vecAftFile, (std::vector<std::string> { "a", "b" }));
}

} // namespace
