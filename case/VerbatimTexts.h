// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "case/ControllerInput.h"

#include <string>

/// The moment table as the case has it, nothing added. Replaces the file; reports nothing.
void write_moment_groups(const VRK::ControllerInput& input, const std::string& path);

/// The trajectory as the case has it, nothing added. Replaces the file; reports nothing.
void write_slvr_traj(const VRK::ControllerInput& input, const std::string& path);
