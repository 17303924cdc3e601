// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string>

/// Changes to the surroundings of a process. For the inside of `run_isolated`.
namespace Testing {

/// Gives up root's rights, before which no permission counts. Nothing happens for other users. The
/// caller's files must be open to everybody where the test needs them.
void become_ordinary_user();

/// Whether a mode can close a file to an ordinary user. Where not: say so and skip.
[[nodiscard]] bool modes_close_files();

/// Whether names that differ in the case of letters alone name two files.
[[nodiscard]] bool case_tells_names_apart();

/// Whether a directory can be opened as a file, and removed under those who work in it.
[[nodiscard]] bool directories_are_like_files();

/// Puts an empty file system of `bytes` on a directory, for this process alone. False where the
/// system does not permit that: say so and skip.
[[nodiscard]] bool mount_small_disk(const std::string& directory, unsigned long bytes);

} // namespace Testing
