// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "frontend/run/RunStart.h"

#include <string>

namespace Frontend {

/// Why the run may not begin in its directory, or nothing. `force` overrides what is only a doubt,
/// not that an input of the case would be lost.
/// Needs a share in the links.
[[nodiscard]] std::string obstacle(const PreparedRun& run, bool force);
/// What whoever forces a restart is to know of it, or nothing.
[[nodiscard]] std::string doubt_about_restart(const PreparedRun& run);
/// Why the installation cannot run the case, or nothing.
[[nodiscard]] std::string lack_of_programs(const PreparedRun& run);

} // namespace Frontend
