// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "tavrobase/platform/Errors.h"

#include <optional>
#include <string>
#include <vector>

/// Starting child programs. A child gets the caller's environment and working directory, no blocked
/// signals (those that the caller ignores stay ignored, so that a run under nohup survives as a
/// whole), and no descriptor of ours but the three standard ones, whatever those are. Programs are
/// named without the ending that the files of programs have on some systems.
namespace Tavro::Platform {

struct Command {
    std::string program; ///< path of the executable; not searched for
    std::string name; ///< what the child sees as its own name, where a start gives one
    std::vector<std::string> arguments;
};

/// How a child ended.
struct ChildEnd {
    enum class Kind { Exited, Signalled, Unknown } kind = Kind::Unknown;
    int value = 0; ///< exit status or signal number
};

struct StartedChild {
    long long pid = -1; ///< -1 if the program could not be started
    ErrorNumber error = 0;
};

/// Path of the file of a program that a command names.
[[nodiscard]] std::string program_file(const std::string& program);

/// Starts a program with nothing on its standard input and its output thrown away, or, on systems
/// where a terminal belongs to the process and not to its descriptors, with no descriptor at all. A
/// program that cannot be executed is a failed start, never a child that ends at once. Its error
/// number is the system's own, to be printed as a number.
[[nodiscard]] StartedChild start_child(const Command& command);

/// Waits without limit. A child is waited for once.
[[nodiscard]] ChildEnd wait_for_child(long long pid);

/// The place at which a captured run failed.
enum class CaptureStep { None, OutPipe, ErrPipe, OutHandle, ErrHandle, Start, OutRead, ErrRead };

struct CapturedRun {
    CaptureStep failed = CaptureStep::None;
    ErrorNumber error = 0;
    ChildEnd end;
};

/// Runs a program on the caller's standard input and appends what it writes. Returns when the
/// program has ended; a grandchild that still holds the output open is not waited for.
[[nodiscard]] CapturedRun run_captured(const Command& command, std::string& out, std::string& err);

[[nodiscard]] long long current_process_id();

/// Path by which this process was started, with "/" between its parts, whatever name it was given:
/// of a link, not of what it leads to. A relative one is seen from the working directory at the
/// start. Nothing if the system cannot tell.
[[nodiscard]] std::optional<std::string> executable_path();

} // namespace Tavro::Platform
