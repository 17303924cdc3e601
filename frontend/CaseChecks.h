// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "frontend/CaseTree.h"
#include "frontend/Diagnostics.h"

#include <string>

namespace Frontend {

/// Tells what is wrong, or likely so, with fields that are right by themselves: a domain without
/// volume, files that are missing, settings that have no effect. Of an unchecked case all that is a
/// warning. Nothing is said of what follows from a field that is faulty. Files are found from
/// `directory`.
void check_case(const CaseTree& read, const std::string& directory, Diagnostics& diagnostics);

} // namespace Frontend
