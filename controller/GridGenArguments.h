// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "case/ControllerInput.h"

#include <string>
#include <vector>

/// What one start of the grid generator is to do.
enum class GridGenMode { Octree, BodyFitter, Validator, Metrics, Hybrid, Standard };

/// The program's arguments for that. File names without a directory are those of the grid output
/// directory, in which it runs.
[[nodiscard]] std::vector<std::string> grid_gen_arguments(
    const VRK::ControllerInput& input, GridGenMode mode, unsigned int linkID);
