// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "case/Flag.h"

#include <cstdint>
#include <string>
#include <vector>

namespace VRK {

/// One rotor. Each pair of vectors is a table of two columns of equal length. Lengths marked r/R
/// are fractions of the radius; angles are as the front end gives them.
struct RotorData {
    std::string m_strName;
    Flag m_bClockwise {};
    Flag m_bTipCorrection {};
    std::uint32_t m_uintBlades = 0;
    std::uint32_t m_uintSourceLocations = 0; ///< on the radius
    double m_dRadius = 0.0;
    double m_dHubRadius = 0.0; ///< r/R
    double m_dHingeOffset = 0.0; ///< r/R
    double m_dTipSpeed = 0.0;
    double m_dTipCorrectionRadius = 0.0; ///< r/R
    double m_dReferenceTwist = 0.0;
    double m_dPitchAngle = 0.0; ///< up is positive
    double m_dBankAngle = 0.0; ///< right is positive
    double m_dCone = 0.0;
    double m_dCollective = 0.0;
    double m_dRequiredCT = 0.0; ///< thrust coefficient that a trim aims at
    Flag m_bUnsteady {}; ///< the card states the opposite, "Rsteady"
    double m_adCenter[3] {};
    Flag m_bCyclicPitch {};
    std::vector<double> m_vecCyclicCos; ///< harmonic coefficients A
    std::vector<double> m_vecCyclicSin; ///< and B
    Flag m_bFlapping {};
    Flag m_bFlapGeomCorrection {}; ///< counts only with `m_bFlapping`
    std::vector<double> m_vecFlapCos;
    std::vector<double> m_vecFlapSin;
    // A table keeps its rows while its flag is off.
    Flag m_bChordTable {};
    std::vector<double> m_vecChordR; ///< r/R
    std::vector<double> m_vecChord; ///< chord/radius
    Flag m_bDeflTable {};
    std::vector<double> m_vecDeflR;
    std::vector<double> m_vecDefl;
    Flag m_bInplaneTable {};
    std::vector<double> m_vecInplaneR;
    std::vector<double> m_vecInplane;
    Flag m_bTwistTable {};
    std::vector<double> m_vecTwistR;
    std::vector<double> m_vecTwist;
    std::uint32_t m_uintAzimuth = 0; ///< azimuth locations
    std::vector<double> m_vecRefRadius; ///< r/R of the output locations
    std::vector<double> m_vecAftSchedule; ///< r/R of each airfoil table
    std::vector<std::string> m_vecAftFile; ///< its file
};

} // namespace VRK
