// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "tests/support/Programs.h"

#include <string>

/// What the tests of started programs look at in their own process. For the inside of
/// `run_isolated`.
namespace Testing {

inline std::string acting_child() { return program_beside_this("tavrobase_acting_child"); }
inline std::string reporting_child() { return program_beside_this("tavrobase_reporting_child"); }

/// Number of open descriptors of this process.
[[nodiscard]] int open_descriptors();

/// Whether this process has a child, running or not yet waited for.
[[nodiscard]] bool has_children();

/// Opens descriptors, inheritable ones, until all below `first` are taken: the next that anybody
/// opens is `first`.
void take_descriptors_below(int first);

/// Lets a signal arrive all the time; its handler does nothing, and calls are not restarted.
void start_interrupting();
void stop_interrupting();
/// How many have arrived.
[[nodiscard]] int interruptions();

} // namespace Testing
