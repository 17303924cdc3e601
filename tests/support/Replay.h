// SPDX-License-Identifier: Apache-2.0
#pragma once

/// Where a process cannot be doubled, `run_isolated` starts the test program once more, for the
/// same test: it goes through the test again up to that call and runs its body. What the test has
/// done to files until then has been done already.
namespace Testing {

/// Whether this process is on its way to such a call.
[[nodiscard]] bool is_replaying();

} // namespace Testing
