// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "case/ControllerInput.h"

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace Frontend {

/// Directories of the run in which there are results to be looked at.
[[nodiscard]] std::vector<std::string> result_directories(const std::string& root);

/// What keeps the programs of a run from writing there, as a sentence: the directory is gone, or
/// its file system is as good as full. Empty if nothing does.
[[nodiscard]] std::string lack_of_place(const std::string& root);

/// From where a run can go on.
struct RestartPoint {
    std::string file;
    std::uint32_t step;
};
/// The latest restart file of the case that fits the grid as it stands, unless an adaptation was
/// cut off.
[[nodiscard]] std::optional<RestartPoint> latest_restart(
    const std::string& root, const std::string& caseName);
/// Whether a run ended while it adapted its grid, after that had been replaced: the latest restart
/// file belongs to the grid before.
[[nodiscard]] bool is_adaptation_cut_off(const std::string& root, const std::string& caseName);

/// Whether there is a file that can be started.
[[nodiscard]] bool is_program(const std::string& path);
/// Step programs that the case needs and that do not lie in that directory.
[[nodiscard]] std::vector<std::string> missing_programs(
    const std::string& directory, const VRK::ControllerInput& input);

} // namespace Frontend
