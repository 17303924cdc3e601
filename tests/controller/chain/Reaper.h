// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <optional>
#include <string>
#include <vector>

#include <sys/types.h>

/// The processes of a run, as the system knows them.
namespace Testing {

/// Starts a program by the words of its command line, of which the first is the name it gets where
/// a start gives one. Its environment is ours with `variables` ("NAME=value"), and with no other
/// word for the stand-ins.
[[nodiscard]] pid_t start_program(
    const std::string& file, std::vector<std::string> words, std::vector<std::string> variables);

/// Ends it without asking.
void kill_process(pid_t pid);

/// "0", "255" for -1, "signal 9": an end in words.
[[nodiscard]] std::string words_of_end(int end);

/// Step programs whose controller has died become children of this process from now on, so that
/// their ends are seen here too.
void adopt_orphans();

/// How a child or an orphan ended, for `words_of_end`; nothing while it runs.
[[nodiscard]] std::optional<int> end_of(pid_t pid);

struct RunProcess {
    pid_t pid = -1;
    pid_t parent = -1;
    std::string name; ///< what it was called by
};

/// All living processes with a word that speaks of something below the directory.
[[nodiscard]] std::vector<RunProcess> processes_of(const std::string& directory);

} // namespace Testing
