// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "frontend/run/Cleaning.h"

#include <optional>
#include <string>
#include <vector>

namespace Frontend {

/// When the last run worked, and those that it continues. Empty if that has not been noted.
[[nodiscard]] std::vector<WorkTime> work_times(const std::string& root, const RunRecord& record);
/// Those files that were not written while a run worked: somebody else's, or changed since.
[[nodiscard]] std::vector<Results> strangers_among(const std::string& root,
    const std::vector<Results>& results, const std::vector<WorkTime>& times);

/// Of all that a new run would clean, what is not the last run's. Nothing if that has cleaned
/// nothing itself: all is as it was when it was allowed to.
[[nodiscard]] std::vector<Results> strange_results(
    const std::string& root, const RunRecord& record, const std::vector<Results>& cleaned);
/// Of cards and grids that a run would replace, what no run has written or somebody has changed
/// since. Logs are nobody's to keep.
[[nodiscard]] std::vector<Results> strange_cards(
    const std::string& root, const RunRecord& record, const std::vector<Results>& replaced);
/// The same of files whose places a case names.
[[nodiscard]] std::vector<Results> strange_input(
    const std::string& root, const RunRecord& record, const std::vector<Results>& replaced);

/// Notes in the record of a run that begins what there is of the runs before it and what it takes
/// the place of. `former` is the record of the last one.
void note_files(const std::string& root, const VRK::ControllerInput& input,
    const std::optional<RunRecord>& former, RunRecord& record);

} // namespace Frontend
