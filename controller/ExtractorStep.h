// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "case/ControllerInput.h"

#include <string>

/// Writes the boundary file and runs the extractor, in a new run and in an adaptive cycle alike.
/// Result and `error` as of the pre-calculation.
[[nodiscard]] bool run_extractor_step(const VRK::ControllerInput& input, std::string& error);
