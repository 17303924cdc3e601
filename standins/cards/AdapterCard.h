// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>
#include <string>

namespace Standins {

/// The adapter's card "<case>.AdptrMain". Texts in double quotes are its keys.
struct AdapterCard {
    int m_nStage = 0; ///< "stage": 1 or 2
    std::uint64_t m_ullCycle = 0; ///< "adaptcycle", from 1
    std::uint32_t m_uintTimestep = 0; ///< "timestep"
    std::int32_t m_nMethod = 0; ///< "method"
    std::int32_t m_nMaxLvl = 0; ///< "maxlvl"
    double m_dBuffer = 0.0; ///< "buffer"
    double m_dLExp = 0.0; ///< "lexp"
    double m_dRFactor = 0.0; ///< "rfactor"
    double m_dKFilter = 0.0; ///< "kfilter"
    double m_dMaxPerc = 0.0; ///< "maxperc"
    double m_dCDead = 0.0; ///< "cdead"
};

/// Reads the whole card: every line in its place and form, nothing behind the end.
/// Errors: `Malformed`.
[[nodiscard]] AdapterCard read_adapter_card(const std::string& path);

} // namespace Standins
