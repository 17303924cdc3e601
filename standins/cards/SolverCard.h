// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <array>
#include <cstdint>
#include <map>
#include <string>

namespace Standins {

/// The solver main card "<case>.SlvrMain". Texts in double quotes are its keys. Keys with one value
/// only are checked and are found in `m_mapValues` alone.
struct SolverCard {
    std::string m_strCaseName; ///< stem of the files that the card names; the same in all of them

    std::array<double, 3> m_adVelocity {}; ///< "Uinit", "Vinit", "Winit"
    double m_dFc = 0.0; ///< "fc": 1, 0.5 or 0
    std::uint32_t m_uintLimiter = 0; ///< "limiter"

    bool m_bFlagTurb = false; ///< "flagTurb"
    std::int32_t m_nTurbStart = 0; ///< "turbstart"
    std::int32_t m_nNtTurb = 0; ///< "ntturb"
    bool m_bTLimit = false; ///< "tlimit"
    std::int32_t m_nFlagKE = 0; ///< "flagke"
    double m_dLs = 0.0; ///< "ls"
    double m_dTurbInt = 0.0; ///< "turbint"
    double m_dTAlpha = 0.0; ///< "talpatk", which "talpate" repeats: 1 or 0.5
    double m_dRelTK = 0.0; ///< "reltk"
    double m_dRelTE = 0.0; ///< "relte"

    double m_dRho = 0.0; ///< "rho"
    double m_dTinf = 0.0; ///< "Tinf"
    double m_dRGASC = 0.0; ///< "RGASC"
    double m_dGAMSHR = 0.0; ///< "GAMSHR"
    double m_dMU = 0.0; ///< "MU"
    double m_dPinf = 0.0; ///< "Pinf"

    double m_dRlxVelMx = 0.0; ///< "RlxVelMx"; the lowest double if there are no time layers
    double m_dRlxpMx = 0.0; ///< "RlxpMx"; likewise
    std::uint32_t m_uintNXIter = 0; ///< "NXIter"
    std::uint32_t m_uintNYIter = 0; ///< "NYIter"
    std::uint32_t m_uintNZIter = 0; ///< "NZIter"
    std::uint32_t m_uintNpIter = 0; ///< "NpIter"
    std::uint32_t m_uintNppIter = 0; ///< "NppIter"

    bool m_bLBdyPrs = false; ///< "LBdyPrs": body pressures are written
    bool m_bLBdyPrsTec = false; ///< "LBdyPrsTec"
    bool m_bLSaveHstBdyPrs = false; ///< "LSaveHstBdyPrs": one file per period is kept
    int m_nBdyPrsType = 1; ///< "BdyPrsType": 1 or 2
    std::uint32_t m_uintIterBdyPrs = 0; ///< "iterBdyPrs": their period in steps
    std::uint32_t m_uintIterFM = 0; ///< "iterFM": period of forces and moments
    std::array<double, 3> m_adMomentPoint {}; ///< "xMnt", "yMnt", "zMnt"
    bool m_bLtimeavg = false; ///< "Ltimeavg"
    std::uint32_t m_uintItbeg = 0; ///< "itbeg"
    std::uint32_t m_uintItend = 0; ///< "itend"

    bool m_bLRotFAST = false; ///< "LRotFAST": rotor performance is written
    bool m_bLSaveHstRotFAST = false; ///< "LSaveHstRotFAST"
    std::uint32_t m_uintIterRotFAST = 0; ///< "iterRotFAST"

    bool m_bLSaveHstFASTSln = false; ///< "LSaveHstFASTSln": one solution per period is kept
    std::uint32_t m_uintIterFASTSln = 0; ///< "iterFASTSln": period of the solutions in steps

    bool m_bRestart = false; ///< "LDATPRV"
    bool m_bRestartTurb = false; ///< "LDatTurb": true with a restart and turbulence, else false
    bool m_bLSaveHstRst = false; ///< "LSaveHstRst"
    std::uint32_t m_uintIterRst = 0; ///< "iterRst": period of the restart files in steps
    std::string m_strRestartFile; ///< "RSTRTinp"; empty if the card has one blank there

    std::string m_strPressureFile; ///< "FastPrsfile": "./" and the case name
    std::string m_strRestartOut; ///< "RstFileOut": the same
    std::string m_strSolutionFile; ///< "FastSlnfile": the same
    std::string m_strTimeGridFile; ///< "TmRxFl": "./<case>.Tgrid"

    bool m_bTrajectory = false; ///< "flagMan"
    std::string m_strTrajectoryFile; ///< "TrajInpFile": "<case>.SlvrTraj", empty without "flagMan"

    /// Every key of the card with its value as it stands there, without quotes around it.
    std::map<std::string, std::string> m_mapValues;
};

/// Reads the whole card: every line in its place and form, every value of its type and finite,
/// values that depend on one another in agreement, nothing behind the end.
/// Errors: `Malformed`.
[[nodiscard]] SolverCard read_solver_card(const std::string& path);

/// The text of "<case>_moment_table.dat" as it stands; it may be empty.
/// Errors: `Malformed` if the file is missing or holds a zero byte, at which no text goes on.
[[nodiscard]] std::string read_moment_table(const std::string& path);

/// The text of "<case>.SlvrTraj" as it stands; it may be empty.
/// Errors: as for the moment table.
[[nodiscard]] std::string read_trajectory(const std::string& path);

} // namespace Standins
