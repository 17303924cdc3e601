// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string>
#include <vector>

namespace Frontend {

/// The last lines of a log.
struct LogEnd {
    std::string file; ///< from the root of the run
    std::vector<std::string> lines; ///< fit for a terminal, whatever the log holds
};

/// The ends of those logs that say anything at all.
[[nodiscard]] std::vector<LogEnd> log_ends(
    const std::string& root, const std::vector<std::string>& files);

} // namespace Frontend
