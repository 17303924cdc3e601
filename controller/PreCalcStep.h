// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "case/ControllerInput.h"

#include <string>

/// Runs the pre-calculation. True if it ran and reported success. `error` gets a text if it could
/// not be started, and stays as it was if it reports a failure.
[[nodiscard]] bool run_pre_calc_step(const VRK::ControllerInput& input, std::string& error);
