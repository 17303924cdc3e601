// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "case/ControllerInput.h"

namespace Testing {

/// A small case named "hover": 20 steps in layers of 12 and 8, one body, one rotor with the airfoil
/// table "naca.aft", body fitter and validator; body pressures and solutions kept every 5 steps,
/// rotors every 10, restart files every 8. Not adaptive, with a period of 10.
[[nodiscard]] VRK::ControllerInput chain_case();

[[nodiscard]] VRK::RotorData chain_rotor();
[[nodiscard]] VRK::BodyData chain_body();
/// One layer more, of so many steps in 0.125 each.
void add_layer(VRK::TimeData& time, std::uint32_t steps);

} // namespace Testing
