// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <optional>
#include <string>
#include <vector>

#include <sys/types.h>

/// The processes of a run, as the system knows them.
namespace Testing {

/// Step programs whose controller has died become children of this process from now on, so that
/// their ends are seen here too.
void adopt_orphans();

/// How a child or an orphan ended, in the words of waitpid; nothing while it runs.
[[nodiscard]] std::optional<int> end_of(pid_t pid);

struct RunProcess {
    pid_t pid = -1;
    pid_t parent = -1;
    std::string name; ///< what it was called by
};

/// All living processes with a word that speaks of something below the directory.
[[nodiscard]] std::vector<RunProcess> processes_of(const std::string& directory);

} // namespace Testing
