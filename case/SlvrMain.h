// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "case/ControllerInput.h"
#include "case/VerbatimTexts.h"

#include <iosfwd>

/// Solver main card, a namelist. It depends on nothing but the case.
void format_slvr_main(std::ostream& card, const VRK::ControllerInput& input);

/// Writes "<case>.SlvrMain", "<case>_moment_table.dat" and, with a trajectory, "<case>.SlvrTraj" to
/// the solver input directory, replacing what was there. Reports nothing: a file that cannot be
/// opened is passed over.
void write_slvr_main(const VRK::ControllerInput& input);
