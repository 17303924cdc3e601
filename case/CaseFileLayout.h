// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "case/ControllerInput.h"

/// The case file, stated once for all who walk it: the reader and the writer pass by the same
/// fields in the same order, so they cannot differ.
///
/// A walker has these operations:
///   values(v...)        numbers, flags and arrays of numbers, one directly after the other
///   short_text(t)       4-byte length and bytes
///   long_text(t)        8-byte length and bytes, cut at the first zero byte when read
///   whole_long_text(t)  the same, zero bytes kept
///   path(p)             a short text
///   block(v)            4-byte count and elements that lie in memory as they do in the file
///   list(v, f)          4-byte count and elements, each walked by `f`
///   table(c...)         4-byte count and rows, each an entry of every column; its texts are short
///   choice(flag)        the flag; whether what depends on it follows
namespace VRK::CaseFile {

template <typename Walker, typename Rotor>
void walk_rotor(Walker& file, Rotor& rotor)
{
    file.short_text(rotor.m_strName);
    file.values(rotor.m_adCenter);
    file.values(rotor.m_dRadius);
    file.values(rotor.m_bUnsteady, rotor.m_bClockwise, rotor.m_bTipCorrection);
    file.values(rotor.m_uintBlades, rotor.m_uintSourceLocations);
    file.values(rotor.m_dHubRadius, rotor.m_dHingeOffset, rotor.m_dTipSpeed,
        rotor.m_dTipCorrectionRadius, rotor.m_dReferenceTwist, rotor.m_dPitchAngle,
        rotor.m_dBankAngle, rotor.m_dCone, rotor.m_dCollective, rotor.m_dRequiredCT);
    file.values(rotor.m_bCyclicPitch);
    file.table(rotor.m_vecCyclicCos, rotor.m_vecCyclicSin);
    file.values(rotor.m_bFlapping, rotor.m_bFlapGeomCorrection);
    file.table(rotor.m_vecFlapCos, rotor.m_vecFlapSin);
    file.values(rotor.m_bChordTable);
    file.table(rotor.m_vecChordR, rotor.m_vecChord);
    file.values(rotor.m_bDeflTable);
    file.table(rotor.m_vecDeflR, rotor.m_vecDefl);
    file.values(rotor.m_bInplaneTable);
    file.table(rotor.m_vecInplaneR, rotor.m_vecInplane);
    file.values(rotor.m_bTwistTable);
    file.table(rotor.m_vecTwistR, rotor.m_vecTwist);
    file.values(rotor.m_uintAzimuth);
    file.block(rotor.m_vecRefRadius);
    file.table(rotor.m_vecAftSchedule, rotor.m_vecAftFile);
}

template <typename Walker, typename Grid>
void walk_grid(Walker& file, Grid& grid)
{
    file.values(grid.m_dDomainMin, grid.m_dDomainMax);
    file.values(grid.m_uintCellsX, grid.m_uintCellsY, grid.m_uintCellsZ);
    file.values(grid.m_bHybrid);
    file.values(grid.m_bPrisms);
    file.path(grid.m_fpViscInput);
    file.whole_long_text(grid.m_strViscInput);
    file.block(grid.m_vecPoints);
    file.block(grid.m_vecRefBoxesA);
    file.block(grid.m_vecRefBoxesB);
    file.block(grid.m_vecRefBoxesC);
    file.values(grid.m_bApproxWettedSurface);
    file.values(grid.m_uintWettedSurfaceArg);
    file.values(grid.m_ucLevelMin);
    file.values(grid.m_ucLevelMax);
}

template <typename Walker, typename Time>
void walk_time(Walker& file, Time& time)
{
    file.values(time.m_ucFcMode);
    file.table(time.m_vecTLen, time.m_vecNtCell, time.m_vecNIter, time.m_vecRlxu, time.m_vecRlxv,
        time.m_vecRlxw, time.m_vecRlxp);
}

template <typename Walker, typename Adaptive>
void walk_adaptive(Walker& file, Adaptive& adapt)
{
    file.values(adapt.m_bAdaptive);
    file.values(adapt.m_uintPeriod);
    file.values(adapt.m_nMaxLvl);
    file.values(adapt.m_dRFactor, adapt.m_dBuffer);
    file.values(adapt.m_nMethod);
    file.values(adapt.m_uintStart);
    file.values(adapt.m_bUseEnd);
    file.values(adapt.m_uintEnd);
    file.values(adapt.m_dKFilter, adapt.m_dLExp, adapt.m_dMaxPerc, adapt.m_dCDead);
    file.block(adapt.m_vecAdaptBoxes);
    file.block(adapt.m_vecSecondAdaptBoxes);
}

/// All fields but the last one, the completion path, whose limit each side meets in its own way.
template <typename Walker, typename Input>
void walk_case(Walker& file, Input& input)
{
    file.values(input.m_uintGUILinkID);
    file.short_text(input.m_strCaseName);
    file.short_text(input.m_strModelDir);
    if (file.choice(input.m_bRestart))
        file.short_text(input.m_strRestartFile);
    file.values(input.m_bGridOnly);
    file.values(input.m_bRunBodyFitter);
    file.values(input.m_bRunValidator);
    walk_grid(file, input.m_grid);
    file.list(input.m_vecBodies, [&file](auto& body) {
        file.values(body.m_uintBodyId, body.m_bFlag, body.m_uintLevel);
        file.block(body.m_vecFacets);
    });
    file.list(input.m_vecRotors, [&file](auto& rotor) { walk_rotor(file, rotor); });
    file.values(input.m_anBoundaryType);
    file.values(input.m_adBoundaryPressure);
    file.values(input.m_adBoundaryVelocity);
    file.values(input.m_dUinit, input.m_dVinit, input.m_dWinit);
    file.values(
        input.m_dRho, input.m_dTinf, input.m_dRGASC, input.m_dGAMSHR, input.m_dMU, input.m_dPinf);
    file.values(input.m_bTrim);
    file.values(input.m_uintTrimPeriod, input.m_uintTrimStart, input.m_uintTrimEnd);
    file.values(input.m_dTrimMaxCollectiveChange, input.m_dTrimTolerance);
    walk_time(file, input.m_time);
    file.values(input.m_uintNXIter, input.m_uintNYIter, input.m_uintNZIter, input.m_uintNpIter,
        input.m_uintNppIter);
    file.values(input.m_uintLimiter);
    file.values(input.m_bLHAWT);
    file.values(input.m_shtParallelMode);
    file.values(input.m_nThreads);
    file.values(
        input.m_bLBdyPrs, input.m_bBdyPrsType2, input.m_bLSaveHstBdyPrs, input.m_bLBdyPrsTec);
    file.values(input.m_uintIterBdyPrs);
    // The averaging fields stand before iterFM, unlike in the record.
    file.values(input.m_bLtimeavg);
    file.values(input.m_uintItbeg, input.m_uintItend);
    file.values(input.m_uintIterFM);
    file.values(input.m_dXMnt, input.m_dYMnt, input.m_dZMnt);
    file.values(input.m_bLRotFAST, input.m_bLSaveHstRotFAST);
    file.values(input.m_uintIterRotFAST);
    file.values(input.m_bLSaveHstFASTSln);
    file.values(input.m_uintIterFASTSln);
    file.values(input.m_bLSaveHstRst);
    file.values(input.m_uintIterRst);
    file.long_text(input.m_strMomentGroups);
    file.values(input.m_bFlagTurb);
    file.values(input.m_nTurbStart, input.m_nNtTurb);
    file.values(input.m_bTLimit);
    file.values(input.m_nFlagKE);
    file.values(input.m_dLs, input.m_dTurbInt, input.m_dRelTK, input.m_dRelTE);
    file.values(input.m_ucTAlpha);
    file.values(input.m_bCarried0, input.m_bCarried1);
    file.values(input.m_uintCarried0, input.m_uintCarried1);
    file.values(input.m_dCarried0);
    file.values(input.m_bCarried2);
    file.values(input.m_dCarried1, input.m_dCarried2, input.m_dCarried3, input.m_dCarried4,
        input.m_dCarried5);
    walk_adaptive(file, input.m_adapt);
    if (file.choice(input.m_bFlagMan))
        file.long_text(input.m_strTrajectory);
}

} // namespace VRK::CaseFile
