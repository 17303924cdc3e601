// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "case/ControllerInput.h"
#include "tavrobase/FilePath.h"

/// Takes the results of earlier runs out of the model directory, so that a new run cannot see them,
/// and makes the grid output directory, which it creates, the working directory. What is not there
/// is passed over, and what cannot be removed stays.
void clean_run_files(const VRK::ControllerInput& input);

/// Removes the backups that belong to a card, and with `keep` 0 their directory too once it is
/// empty. The names are those in the card's "backup" directory, but it is the working directory
/// from which they are removed: a backup goes only where the two are one.
void RemoveBackupFiles(const Tavro::FilePath& file, unsigned int keep);
