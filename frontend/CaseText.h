// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "case/ControllerInput.h"
#include "frontend/Diagnostics.h"

#include <optional>
#include <string>

namespace Frontend {

/// The record of a readable case: a TOML file and the files that it names, which are found from its
/// directory. Everything that is wrong is told, not only the first; nothing if anything is.
///
/// The names of airfoil tables are kept as they are written, because a run looks for them from the
/// directory of its case. Warnings alone still give a record.
[[nodiscard]] std::optional<VRK::ControllerInput> read_case_text(
    const std::string& path, Diagnostics& diagnostics);

} // namespace Frontend
