// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "case/ControllerInput.h"

#include <cstdint>
#include <map>
#include <set>
#include <string>
#include <vector>

namespace Testing {

/// One start of a step program in an undisturbed run.
struct ExpectedStart {
    std::string program;
    std::string lines; ///< what the controller has said in its log since the last start
    int failure = 0; ///< the run's last word if this program fails
};

/// All starts of a run, in their order. `restartStep` is that of the restart file.
[[nodiscard]] std::vector<ExpectedStart> expected_starts(
    const VRK::ControllerInput& input, std::uint32_t restartStep);

/// What the archive of an adaptive run holds when it is complete, beside what former runs have
/// left.
struct ExpectedArchive {
    /// By their names in the grid history: end of the first line, from the time on.
    std::map<std::string, std::string> grids;
    std::set<std::string> bodies; ///< names among the body pressures
};

/// Of a case in which each step takes 0.125.
[[nodiscard]] ExpectedArchive expected_archive(
    const VRK::ControllerInput& input, std::uint32_t restartStep);

[[nodiscard]] std::uint32_t steps_of(const VRK::ControllerInput& input);

} // namespace Testing
