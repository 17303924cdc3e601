// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "case/ControllerInput.h"
#include "frontend/run/RunInSight.h"

#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace Frontend {

/// Where the controller and the step programs are: the directory of this program's own executable,
/// with "/" at its end.
[[nodiscard]] std::string program_directory();

constexpr const char* kControllerName = "Vortik_Controller";

/// A case that is ready to be run in its directory.
struct PreparedRun {
    std::string root;
    std::string caseFile; ///< the readable one
    VRK::ControllerInput input;
    std::string completionFile;
    CaseDigests built; ///< what a new run of the case would be made from
    std::vector<std::string> changed; ///< parts in which a restart differs from the run before
    std::vector<std::string> inputs = {}; ///< files that the case is made from
};

/// Fits a case to its directory, with the latest restart file if that is asked for. Nothing has
/// been changed on disk. On failure, nothing and the reason.
[[nodiscard]] std::optional<PreparedRun> prepare_run(
    const std::string& caseFile, VRK::ControllerInput input, bool restart, std::string& reason);

/// Makes the link, writes the case file and starts the controller; before anything is taken away it
/// calls `announce`. Null, with the reason, if that failed; nothing has begun then.
[[nodiscard]] std::optional<RunInSight> start_run(
    PreparedRun& run, const std::function<void()>& announce, std::string& reason);

} // namespace Frontend
