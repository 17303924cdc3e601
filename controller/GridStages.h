// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "case/ControllerInput.h"
#include "links/ControllerStep.h"

#include <string>

/// Steps under which the stages of one grid are published.
struct GridStageSteps {
    VRK::ControllerStep hybrid;
    VRK::ControllerStep octree;
    VRK::ControllerStep bodyFitter;
    VRK::ControllerStep validator;
    VRK::ControllerStep metrics;
};

/// Makes one grid in the stages that the case asks for: hybrid, or octree and body fitter; then
/// validator and metrics. Ends at the first that fails.
[[nodiscard]] bool run_grid_stages(
    const VRK::ControllerInput& input, std::string& error, const GridStageSteps& steps);
