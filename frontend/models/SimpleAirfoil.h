// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string>

namespace Examples {

/// An airfoil table by a simple model, to show the format with. It is no measurement: lift is that
/// of a thin airfoil below the stall and of a flat plate beyond it, drag that of a flat plate on a
/// constant, moment zero, and Mach numbers only scale the lift slope (Prandtl-Glauert, up to 0.8).
/// 0 to 1 in Mach number, -180 to 180 degrees.
[[nodiscard]] std::string simple_airfoil_table(const std::string& title);

} // namespace Examples
