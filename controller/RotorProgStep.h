// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "case/ControllerInput.h"

#include <string>

/// Writes the rotor card and runs the rotor program. For a restart without adaptation, whose
/// results of that program still stand, it writes the card alone and gives true. Result and `error`
/// as of the pre-calculation.
[[nodiscard]] bool run_rotor_prog_step(const VRK::ControllerInput& input, std::string& error);

/// Runs the rotor program on a card that is there.
[[nodiscard]] bool rotor_prog_step(const VRK::ControllerInput& input, std::string& error);
