// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "case/ControllerInput.h"

#include <string>

/// The grid generator: one program that is started once per mode. All of this runs with the grid
/// output directory as the working directory. Results and `error` as of the pre-calculation; the
/// program's verdict is a completion state of exactly 1.

/// Makes the grid of a new run, in the modes that the case asks for.
[[nodiscard]] bool run_all_grid_gen_steps(const VRK::ControllerInput& input, std::string& error);

/// One start of the program, in the mode of the first flag that is set, or in the standard mode.
/// The first start of a new run writes the program's input.
[[nodiscard]] bool run_grid_gen(const VRK::ControllerInput& input, std::string& error, bool octree,
    bool bodyFitter, bool validator, bool metrics, bool hybrid);
/// The same without a link of its own: there must be one.
[[nodiscard]] bool run_tree_gen(const VRK::ControllerInput& input, std::string& error, bool octree,
    bool bodyFitter, bool validator, bool metrics, bool hybrid);

// One start in one mode.
[[nodiscard]] bool run_grid_gen_only_step(const VRK::ControllerInput& input, std::string& error);
[[nodiscard]] bool run_grid_gen_bodyfitter_step(
    const VRK::ControllerInput& input, std::string& error);
[[nodiscard]] bool run_grid_gen_validator_step(
    const VRK::ControllerInput& input, std::string& error);
[[nodiscard]] bool run_grid_gen_metrics_step(const VRK::ControllerInput& input, std::string& error);
[[nodiscard]] bool run_grid_gen_hybrid_step(const VRK::ControllerInput& input, std::string& error);
[[nodiscard]] bool run_grid_gen_step(const VRK::ControllerInput& input, std::string& error);
