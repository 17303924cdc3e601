// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "case/ControllerInput.h"
#include "controller/RunSequence.h"

#include <optional>

/// Solution time that the first grid of an adaptive run is made for: the last saved solution within
/// the first period, and 0 without one.
[[nodiscard]] double first_grid_time(const VRK::ControllerInput& input);

/// Solves in segments, and adapts the grid before each segment that begins on a multiple of the
/// period within the window of adaptation. Begins at the target step of the run's state.
/// `namedRestart`: the restart file is still the one that the case names.
/// Errors: `Tavro::BadParameter` for a period of 0; those of file operations on what must be there.
[[nodiscard]] std::optional<RunFailure> run_adaptive_loop(
    VRK::ControllerInput& input, bool namedRestart);
