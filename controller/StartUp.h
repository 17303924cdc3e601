// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "case/ControllerInput.h"
#include "tavrobase/FilePath.h"

/// From the command line to the first published step, in the order in which a front end can see
/// what happens. A function that gives false has said on the error stream what failed and has given
/// back what was taken so far; the process then ends with -1.

/// Makes the directory of the case file the root of the run and the working directory, and sends
/// the standard streams to the run's logs. Sets `caseFile`. The top of the file system is no root.
[[nodiscard]] bool enter_run(int argc, const char* const* argv, Tavro::FilePath& caseFile);

/// Reads the case file and deletes it: a case is run once.
[[nodiscard]] bool take_case(const Tavro::FilePath& caseFile, VRK::ControllerInput& input);

/// Puts "not finished" into the completion file and prepares the run's state.
[[nodiscard]] bool prepare_state(const VRK::ControllerInput& input);

/// Joins the links and attaches to the front end's; publishes that the controller is ready.
[[nodiscard]] bool attach_to_front_end(const VRK::ControllerInput& input);

/// Starts the update thread.
[[nodiscard]] bool start_watching();

/// Puts the cleaned copies of the airfoil tables in the place of the case's own.
void clean_airfoil_tables(VRK::ControllerInput& input);

/// Publishes the length of the run and starts its clock.
void begin_progress(const VRK::ControllerInput& input);
