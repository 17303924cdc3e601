// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "case/ControllerInput.h"

#include <string>

/// Writes the solver's card and the time schedule, which ends at the run's target step, and runs
/// the solver. Result and `error` as of the pre-calculation.
[[nodiscard]] bool run_solver_step(const VRK::ControllerInput& input, std::string& error);

/// Runs the solver on cards that are there.
[[nodiscard]] bool run_solver(const VRK::ControllerInput& input, std::string& error);
