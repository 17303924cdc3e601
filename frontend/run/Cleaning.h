// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "case/ControllerInput.h"
#include "frontend/run/RunDirectory.h"

#include <string>
#include <vector>

namespace Frontend {

/// Results in one directory of a run.
struct Results {
    std::string directory; ///< from the root of the run
    std::vector<std::string> files; ///< the same, sorted
};

/// What the controller takes away before a new run of a case of that name.
[[nodiscard]] std::vector<Results> results_to_be_cleaned(
    const std::string& root, const std::string& caseName);
/// What a run of the case writes anew over what is there; sorted like results.
[[nodiscard]] std::vector<Results> files_to_be_replaced(
    const std::string& root, const VRK::ControllerInput& input);
/// The file of the viscous input, which may be anywhere, if a run would put other bytes into it.
[[nodiscard]] std::vector<Results> viscous_input_to_be_replaced(
    const std::string& root, const VRK::ControllerInput& input);
/// Copies of airfoil tables, hidden beside them, that every run and `vortik airfoil clean` make.
[[nodiscard]] std::vector<Results> copies_of_tables(
    const std::string& root, const VRK::ControllerInput& input);
/// "Body_Pressure (3 files), Restarts (1 file)".
[[nodiscard]] std::string results_text(const std::vector<Results>& results);
/// "a, b, c and 2 more".
[[nodiscard]] std::string some_of(const std::vector<Results>& results);

/// When the last run worked, and those that it continues. Empty if that has not been noted.
[[nodiscard]] std::vector<WorkTime> work_times(const std::string& root, const RunRecord& record);
/// Those files that were not written while a run worked: somebody else's, or changed since.
[[nodiscard]] std::vector<Results> strangers_among(const std::string& root,
    const std::vector<Results>& results, const std::vector<WorkTime>& times);

} // namespace Frontend
