// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "links/ControllerStep.h"
#include "tavrobase/FilePath.h"

/// The completion file: one line, the step with which a run ended. It is what tells the front end
/// of a controller that is no longer there. A file that cannot be opened is passed over: the run
/// matters more than the word about it.

/// Puts the step into the file, in place of what was there. Its first line is always the old
/// word or the new one.
void write_completion_file(const Tavro::FilePath& file, VRK::ControllerStep step);

/// The same for the run's own file and step. Takes no lock: to be called where nobody else can
/// change the step.
void output_completion_file();
