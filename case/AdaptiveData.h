// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "case/Flag.h"
#include "geometry/ValueTypes.h"

#include <cstdint>
#include <vector>

namespace VRK {

/// Settings of the solution-adaptive cycles.
struct AdaptiveData {
    Flag m_bAdaptive {}; ///< the cycles are on
    std::uint32_t m_uintPeriod {}; ///< time steps between adaptations
    std::int32_t m_nMaxLvl {};
    double m_dRFactor {};
    double m_dBuffer {};
    std::int32_t m_nMethod {};
    std::uint32_t m_uintStart {}; ///< first step of adaptation
    Flag m_bUseEnd {}; ///< `m_uintEnd` is in force
    std::uint32_t m_uintEnd {}; ///< last step of adaptation
    double m_dKFilter {};
    double m_dLExp {};
    double m_dMaxPerc {};
    double m_dCDead {};
    std::vector<Tavro::BoundingBox<double, 3>> m_vecAdaptBoxes; ///< first list of "AdaptBoxes.dat"
    std::vector<Tavro::BoundingBox<double, 3>> m_vecSecondAdaptBoxes; ///< second list
};

} // namespace VRK
