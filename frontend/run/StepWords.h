// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "links/ControllerStep.h"

#include <string>
#include <vector>

namespace Frontend {

/// What a running step is called; a failure is called what the step is.
[[nodiscard]] std::string step_name(int step);

/// Logs in which the reasons of a step's failure are to be looked for, from the root of the run,
/// the likeliest first; of no program's step, the controller's own alone.
[[nodiscard]] std::vector<std::string> logs_of_step(int step);

/// Every log that there may be of a step, each once.
[[nodiscard]] std::vector<std::string> all_logs();

/// "45 s", "3 min 20 s", "2 h 5 min".
[[nodiscard]] std::string duration_text(long long seconds);
/// The same in at most six letters, below a hundred days: "75s" is "1m15s".
[[nodiscard]] std::string narrow_duration_text(long long seconds);

} // namespace Frontend
