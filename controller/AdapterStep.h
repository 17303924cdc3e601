// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "case/ControllerInput.h"

#include <string>

/// Writes the adapter's card and runs the adapter: with `mode` 1 before a new grid, with 2 after
/// it. Result and `error` as of the pre-calculation.
[[nodiscard]] bool run_adaptive_pre_calc_step(
    const VRK::ControllerInput& input, std::string& error, int mode);
