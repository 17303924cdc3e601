// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "tavrobase/platform/Processes.h"
#include "tavrobase/platform/windows/SystemNumber.h"

#include <string>
#include <vector>

namespace Tavro::Platform::Windows {

/// Handles that a child gets as its standard input, output and error.
struct StandardHandles {
    HANDLE in;
    HANDLE out;
    HANDLE err;
};

/// Programs are named without their ending, as everywhere in the package, and it is always added.
/// Every word stands in quotes; quotes within an argument are not escaped.
[[nodiscard]] std::string command_line(const Command& command);

/// Starts a program without a handle of ours, or with standard handles and, as the system goes,
/// every other inheritable one. Its handle is kept for `child_handle`.
[[nodiscard]] StartedChild start_program(const Command& command, DWORD flags,
    const StandardHandles* standard = nullptr, LPPROC_THREAD_ATTRIBUTE_LIST attributes = nullptr);

/// Of a child that was started and not forgotten; else null. While it lasts, no other process gets
/// the number. Threads: any.
[[nodiscard]] HANDLE child_handle(long long pid);
void forget_child(long long pid);

/// How an ended process ended.
[[nodiscard]] ChildEnd end_of(HANDLE process);

} // namespace Tavro::Platform::Windows
