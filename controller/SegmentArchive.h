// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "case/ControllerInput.h"

#include <cstdint>

/// Copies grid and body grid for every step from `first` to `last` at which the coming solver
/// segment saves a solution or body pressures, and for the last step of the run. The grid files
/// are those that the segment will use, so each saved result finds the grid of its own time.
/// `newGrid` marks the first copy of either kind.
void archive_segment(
    const VRK::ControllerInput& input, std::uint32_t first, std::uint32_t last, bool newGrid);
