// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "case/ControllerInput.h"

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace Frontend {

/// Results in one directory of a run.
struct Results {
    std::string directory; ///< from the root of the run
    std::size_t files;
};

/// What a new run takes away before it begins.
[[nodiscard]] std::vector<Results> results_to_be_cleaned(const std::string& root);
/// "Body_Pressure (3 files), Restarts (1 file)".
[[nodiscard]] std::string results_text(const std::vector<Results>& results);

/// Directories of the run in which there are results to be looked at.
[[nodiscard]] std::vector<std::string> result_directories(const std::string& root);

/// From where a run can go on.
struct RestartPoint {
    std::string file;
    std::uint32_t step;
};
/// The latest restart file of the case that fits the grid as it stands.
[[nodiscard]] std::optional<RestartPoint> latest_restart(
    const std::string& root, const std::string& caseName);

/// Step programs that the case needs and that do not lie in that directory.
[[nodiscard]] std::vector<std::string> missing_programs(
    const std::string& directory, const VRK::ControllerInput& input);

} // namespace Frontend
