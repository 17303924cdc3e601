// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "frontend/run/RunDirectory.h"

#include <string>
#include <vector>

namespace Frontend {

/// The last lines of a log.
struct LogEnd {
    std::string file; ///< from the root of the run
    std::vector<std::string> lines; ///< fit for a terminal, whatever the log holds
};

/// The logs as they are before a run; those that say nothing need no mark.
[[nodiscard]] std::vector<LogMark> mark_logs(
    const std::string& root, const std::vector<std::string>& files);

/// The ends of those logs that the run has written anything in; nothing that was there before it.
[[nodiscard]] std::vector<LogEnd> log_ends(
    const std::string& root, const RunRecord& record, const std::vector<std::string>& files);

} // namespace Frontend
