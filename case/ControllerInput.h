// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "case/AdaptiveData.h"
#include "case/Flag.h"
#include "case/GridData.h"
#include "case/RotorData.h"
#include "case/TimeData.h"
#include "tavrobase/FilePath.h"

#include <cstdint>
#include <string>
#include <vector>

namespace VRK {

/// The whole description of one case, as the front end saved it. It owns all it holds.
///
/// A case has no defaults: the record has meaning only after a successful `Read`, and all of it is
/// zero or empty before. Texts in double quotes are keys of the solver card.
struct ControllerInput {
    /// Fills the record from a case file. Bytes behind the last field are not looked at. Memory
    /// stays in proportion to the file whatever its counts say. A restart file or a trajectory that
    /// the file has not is left as it was. False if the file cannot be opened; the record is then
    /// untouched. False if it ends early, or has a path that collapses to nothing or a completion
    /// path above 1000 bytes. The record then holds what stood before the fault. Behind it lists,
    /// texts and paths are empty, while the restart file, the trajectory and that faulty path stay
    /// as they were, and so do numbers and flags, but for a number that was cut in the middle.
    [[nodiscard]] bool Read(const Tavro::FilePath& file);
    /// Writes the file that `Read` reads, replacing what was there. True if all of it was handed to
    /// the system; a disk that is full is seen. With a completion path above 1000 bytes the file
    /// lacks its last field, and the result is false.
    [[nodiscard]] bool Write(const Tavro::FilePath& file) const;

    std::uint32_t m_uintGUILinkID = 0; ///< link on which the front end waits
    std::string m_strCaseName; ///< stem of every card and result file
    std::string m_strModelDir; ///< model directory
    Flag m_bGridOnly {}; ///< stop after the grid
    Flag m_bRunBodyFitter {};
    Flag m_bRunValidator {};
    Flag m_bRestart {}; ///< "LDATPRV"
    std::string m_strRestartFile; ///< "RSTRTinp"
    GridData m_grid;
    std::vector<BodyData> m_vecBodies;
    std::vector<RotorData> m_vecRotors; ///< in card order
    // Outer faces in the order X-min, X-max, Y-min, Y-max, Z-min, Z-max.
    std::int32_t m_anBoundaryType[6] {}; ///< 0: pressure, 1: velocity, else no data
    double m_adBoundaryPressure[6] {};
    double m_adBoundaryVelocity[6][3] {}; ///< u, v, w
    double m_dUinit = 0.0; ///< "Uinit"; initial velocity
    double m_dVinit = 0.0; ///< "Vinit"
    double m_dWinit = 0.0; ///< "Winit"
    double m_dRho {}; ///< "rho"
    double m_dTinf {}; ///< "Tinf"
    double m_dRGASC {}; ///< "RGASC"
    double m_dGAMSHR {}; ///< "GAMSHR"
    double m_dMU {}; ///< "MU"
    double m_dPinf {}; ///< "Pinf"
    Flag m_bTrim {};
    std::uint32_t m_uintTrimPeriod {}; ///< iterations between trims
    std::uint32_t m_uintTrimStart {};
    std::uint32_t m_uintTrimEnd {};
    double m_dTrimMaxCollectiveChange {};
    double m_dTrimTolerance {};
    TimeData m_time;
    std::uint32_t m_uintNXIter {}; ///< "NXIter"; inner iterations
    std::uint32_t m_uintNYIter {}; ///< "NYIter"
    std::uint32_t m_uintNZIter {}; ///< "NZIter"
    std::uint32_t m_uintNpIter {}; ///< "NpIter"
    std::uint32_t m_uintNppIter {}; ///< "NppIter"
    std::uint32_t m_uintLimiter {}; ///< "limiter"
    Flag m_bLHAWT {}; ///< wind turbine, else propeller
    std::int16_t m_shtParallelMode {}; ///< 1: threaded step programs
    std::int32_t m_nThreads {}; ///< their threads
    Flag m_bLBdyPrs {}; ///< "LBdyPrs"; body pressures are written
    Flag m_bBdyPrsType2 {}; ///< "BdyPrsType" 2, else 1
    Flag m_bLSaveHstBdyPrs {}; ///< "LSaveHstBdyPrs"
    Flag m_bLBdyPrsTec {}; ///< "LBdyPrsTec"
    std::uint32_t m_uintIterBdyPrs {}; ///< "iterBdyPrs"
    std::uint32_t m_uintIterFM {}; ///< "iterFM"
    double m_dXMnt = 0.0; ///< "xMnt"; moment reference point
    double m_dYMnt = 0.0; ///< "yMnt"
    double m_dZMnt = 0.0; ///< "zMnt"
    Flag m_bLtimeavg {}; ///< "Ltimeavg"
    std::uint32_t m_uintItbeg {}; ///< "itbeg"
    std::uint32_t m_uintItend {}; ///< "itend"
    Flag m_bLRotFAST {}; ///< "LRotFAST"; rotor performance is written
    Flag m_bLSaveHstRotFAST {}; ///< "LSaveHstRotFAST"
    std::uint32_t m_uintIterRotFAST {}; ///< "iterRotFAST"
    Flag m_bLSaveHstFASTSln {}; ///< "LSaveHstFASTSln"
    std::uint32_t m_uintIterFASTSln {}; ///< "iterFASTSln"; period of the solution dumps
    Flag m_bLSaveHstRst {}; ///< "LSaveHstRst"
    std::uint32_t m_uintIterRst {}; ///< "iterRst"
    std::string m_strMomentGroups; ///< text of "<case>_moment_table.dat"
    Flag m_bFlagTurb {}; ///< "flagTurb"
    std::int32_t m_nTurbStart {}; ///< "turbstart"
    std::int32_t m_nNtTurb {}; ///< "ntturb"
    Flag m_bTLimit {}; ///< "tlimit"
    std::int32_t m_nFlagKE {}; ///< "flagke"
    double m_dLs {}; ///< "ls"
    double m_dTurbInt {}; ///< "turbint"
    double m_dRelTK {}; ///< "reltk"
    double m_dRelTE {}; ///< "relte"
    std::uint8_t m_ucTAlpha {}; ///< "talpatk" and "talpate" 1.0 if 1, else 0.5
    // Carried for the front end; nothing of ours looks at these eleven.
    Flag m_bCarried0 {};
    Flag m_bCarried1 {};
    std::uint32_t m_uintCarried0 {};
    std::uint32_t m_uintCarried1 {};
    double m_dCarried0 {};
    Flag m_bCarried2 {};
    double m_dCarried1 {};
    double m_dCarried2 {};
    double m_dCarried3 {};
    double m_dCarried4 {};
    double m_dCarried5 {};
    AdaptiveData m_adapt;
    Tavro::FilePath m_fpCompletionFile; ///< tells the front end how the run ended
    Flag m_bFlagMan {}; ///< "flagMan"; a trajectory is prescribed
    std::string m_strTrajectory; ///< text of "<case>.SlvrTraj"
};

} // namespace VRK
