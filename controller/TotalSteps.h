// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "case/TimeData.h"

#include <cstdint>
#include <numeric>

/// Time steps of the whole run, in 32 bits.
[[nodiscard]] inline std::uint32_t total_steps(const VRK::TimeData& time)
{
    return std::accumulate(time.m_vecNtCell.begin(), time.m_vecNtCell.end(), std::uint32_t { 0 });
}
