// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "case/ControllerInput.h"

#include <iosfwd>

/// Boxes for the adaptive cycles: those within which the grid may adapt, or the whole domain, and
/// those of the second list, or one box of no volume.
void format_adapt_boxes(std::ostream& stream, const VRK::ControllerInput& input);

/// Writes them to "AdaptBoxes.dat" in the solver input directory, replacing what was there. Reports
/// nothing.
void write_adapt_boxes(const VRK::ControllerInput& input);
