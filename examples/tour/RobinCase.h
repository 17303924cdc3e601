// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "case/ControllerInput.h"

namespace Examples {

/// The ROBIN fuselage with its four-bladed rotor in forward flight, in metres and seconds: body
/// scale and rotor of the wind tunnel tests, with the settings of a short run.
[[nodiscard]] VRK::ControllerInput robin_case(const std::string& directory);

} // namespace Examples
