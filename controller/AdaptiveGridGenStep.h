// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "case/ControllerInput.h"

#include <string>

/// Makes the grid of an adaptive cycle from the adapter's labels. The case's refinement boxes and
/// the grid generator's file change with it. False, before any program has run, if the input of the
/// last grid cannot be read; `error` says so. Otherwise result and `error` as of the
/// pre-calculation.
[[nodiscard]] bool run_adaptive_grid_gen_step(VRK::ControllerInput& input, std::string& error);
