// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "tavrobase/platform/Errors.h"
#include "tavrobase/platform/Processes.h"

#include <optional>
#include <string>
#include <vector>

/// Programs that run by themselves, beyond the life of the process that started them.
namespace Tavro::Platform {

/// Starts a program as the head of a group of its own: neither Ctrl-C nor the end of the terminal
/// reaches it or what it starts. It has nothing on its standard input and its output is thrown
/// away. The group bears the program's number. The error number of a failed start is one for
/// `error_text`.
[[nodiscard]] StartedChild start_apart(const Command& command);

/// How a child has ended; nothing while it runs. To be asked no more after an answer.
[[nodiscard]] std::optional<ChildEnd> child_end(long long pid);

/// A text that names this one process and no later one of the same number. Empty if there is no
/// such process or it has ended, waited for or not.
[[nodiscard]] std::string process_mark(long long pid);

struct RunningProgram {
    long long pid;
    std::string path; ///< as a command names the program; empty if it may not be looked at
};
/// All that runs in the group that `start_apart` made, its head too, by number. Where the system
/// keeps no groups, the head and what descends from it.
[[nodiscard]] std::vector<RunningProgram> programs_of_group(long long group);

/// Asks a process to end, or ends it without asking. Errors: some systems have no way to ask a
/// program that has neither a window nor our terminal.
[[nodiscard]] ErrorNumber end_process(long long pid, bool withoutAsking);

} // namespace Tavro::Platform
