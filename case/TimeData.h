// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>
#include <vector>

namespace VRK {

/// Time schedule. The seven vectors are one table, a row per time layer, and share their length.
struct TimeData {
    std::uint8_t m_ucFcMode {}; ///< "fc" of the solver card: 1 gives 1.0, 2 gives 0.5, else 0.0
    std::vector<double> m_vecTLen; ///< duration
    std::vector<std::uint32_t> m_vecNtCell; ///< time steps
    std::vector<std::uint32_t> m_vecNIter; ///< iterations per step
    std::vector<double> m_vecRlxu; ///< relaxation factors
    std::vector<double> m_vecRlxv;
    std::vector<double> m_vecRlxw;
    std::vector<double> m_vecRlxp;
};

} // namespace VRK
