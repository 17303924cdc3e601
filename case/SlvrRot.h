// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "case/ControllerInput.h"

#include <iosfwd>

/// Rotor card: values by position, under comment lines that begin with "#".
void format_slvr_rot(std::ostream& card, const VRK::ControllerInput& input);

/// Writes "<case>.SlvrRot" to the solver input directory, replacing what was there. Reports
/// nothing.
void write_slvr_rot(const VRK::ControllerInput& input);
