// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace Standins {

/// One layer of the time schedule. Values that the file has twice, at begin and end, are equal.
struct TimeLayer {
    double m_dLength = 0.0; ///< duration; no number if a cut layer has no steps
    std::uint32_t m_uintSteps = 0;
    std::uint32_t m_uintIterations = 0; ///< per step
    double m_dRlxu = 0.0; ///< relaxation factors
    double m_dRlxv = 0.0;
    double m_dRlxw = 0.0;
    double m_dRlxp = 0.0;
};

/// "<case>.Tgrid".
struct TimeSchedule {
    std::vector<TimeLayer> m_vecLayers;
    /// The scientific form, in which a schedule cut at a target is written; false if there is no
    /// layer to tell.
    bool m_bScientific = false;

    /// The last step of the schedule, at which the solver stops.
    [[nodiscard]] std::uint64_t steps() const;
    /// Solution time at the end of step `step`, which counts from 1; 0 for step 0. The whole
    /// duration beyond the last step.
    [[nodiscard]] double time_of_step(std::uint64_t step) const;
};

/// Reads the schedule in either of its forms: as many layers as it says, numbered from 1, all
/// numbers in one form, nothing behind the last one.
/// Errors: `Malformed`.
[[nodiscard]] TimeSchedule read_time_schedule(const std::string& path);

} // namespace Standins
