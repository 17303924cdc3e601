// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string>

/// Changes to the surroundings of a process. For the inside of `run_isolated`.
namespace Testing {

/// Gives up root's rights, before which no permission counts. Nothing happens for other users. The
/// caller's files must be open to everybody where the test needs them.
void become_ordinary_user();

/// Puts an empty file system of `bytes` on a directory, for this process alone. False where the
/// system does not permit that: say so and skip.
[[nodiscard]] bool mount_small_disk(const std::string& directory, unsigned long bytes);

} // namespace Testing
