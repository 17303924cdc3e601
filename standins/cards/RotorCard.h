// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <vector>

namespace Standins {

/// Two columns of equal length.
struct RotorTable {
    bool m_bProvided = false; ///< its flag line; the rows are there in any case
    std::vector<double> m_vecFirst;
    std::vector<double> m_vecSecond;
};

/// Harmonic coefficients, two columns of equal length.
struct RotorHarmonics {
    std::vector<double> m_vecCos; ///< A
    std::vector<double> m_vecSin; ///< B
};

/// One row of the airfoil tables.
struct RotorAirfoil {
    double m_dRadius = 0.0; ///< r/R
    std::string m_strFile;
};

/// One rotor of the card.
struct Rotor {
    std::string m_strName;
    bool m_bSteady = false; ///< "Rsteady"
    bool m_bClockwise = false;
    bool m_bFlapping = false;
    bool m_bFlapGeomCorrection = false; ///< true only with flapping
    bool m_bCyclicPitch = false;
    bool m_bTipCorrection = false;
    std::uint32_t m_uintBlades = 0;
    std::uint32_t m_uintSourceLocations = 0;
    std::uint32_t m_uintAzimuth = 0;
    double m_dRadius = 0.0;
    double m_dHubRadius = 0.0;
    double m_dHingeOffset = 0.0;
    double m_dTipSpeed = 0.0;
    double m_dTipCorrectionRadius = 0.0;
    double m_dReferenceTwist = 0.0;
    double m_dPitchAngle = 0.0;
    double m_dBankAngle = 0.0;
    double m_dCone = 0.0;
    double m_dCollective = 0.0;
    RotorHarmonics m_cyclic;
    RotorHarmonics m_flap;
    RotorTable m_chord;
    RotorTable m_deflection;
    RotorTable m_twist;
    RotorTable m_inplane;
    std::vector<double> m_vecRefRadius;
    double m_dRequiredCT = 0.0;
    std::vector<RotorAirfoil> m_vecAirfoils;
    std::array<double, 3> m_adCenter {};
};

/// "<case>.SlvrRot".
struct RotorCard {
    bool m_bLHAWT = false; ///< wind turbine, else propeller
    std::vector<Rotor> m_vecRotors;
    bool m_bTrim = false;
    std::uint32_t m_uintTrimPeriod = 0;
    std::uint32_t m_uintTrimStart = 0;
    std::uint32_t m_uintTrimEnd = 0;
    double m_dTrimMaxCollectiveChange = 0.0;
    double m_dTrimTolerance = 0.0;
};

/// Reads the whole card: every comment and value line in its place, every table with the rows that
/// it counts, every number in its form and finite, no line more or less.
/// Errors: `Malformed`.
[[nodiscard]] RotorCard read_rotor_card(const std::string& path);

} // namespace Standins
