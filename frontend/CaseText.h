// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "case/ControllerInput.h"
#include "frontend/Diagnostics.h"

#include <optional>
#include <string>
#include <vector>

namespace Frontend {

/// The case file that a name on the command line stands for: that of a directory is `case.toml` in
/// it.
[[nodiscard]] std::string case_file(const std::string& path);

/// The record of a readable case: a TOML file and the files that it names, which are found from its
/// directory. Everything that is wrong is reported, not only the first; nothing if anything is.
///
/// The names of airfoil tables are kept as they are written, because a run looks for them from the
/// directory of its case. Warnings alone still give a record.
[[nodiscard]] std::optional<VRK::ControllerInput> read_case_text(
    const std::string& path, Diagnostics& diagnostics);

/// The same; `files` gets those that the case is made from: itself, and its bodies, airfoil tables
/// and restart file.
[[nodiscard]] std::optional<VRK::ControllerInput> read_case_text(
    const std::string& path, Diagnostics& diagnostics, std::vector<std::string>& files);

/// The same of the text of a file with that name.
[[nodiscard]] std::optional<VRK::ControllerInput> case_of_text(
    const std::string& text, const std::string& file, Diagnostics& diagnostics);
/// And with the files that it names.
[[nodiscard]] std::optional<VRK::ControllerInput> case_of_text(const std::string& text,
    const std::string& file, Diagnostics& diagnostics, std::vector<std::string>& files);

} // namespace Frontend
