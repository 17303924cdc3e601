// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "case/ControllerInput.h"

#include <cstdint>
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

[[nodiscard]] std::uint32_t steps_of(const VRK::ControllerInput& input);

} // namespace Testing
