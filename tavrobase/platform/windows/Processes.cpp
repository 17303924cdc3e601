// SPDX-License-Identifier: Apache-2.0
#include "tavrobase/platform/Processes.h"

#include "tavrobase/platform/windows/Entry.h"
#include "tavrobase/platform/windows/Handle.h"
#include "tavrobase/platform/windows/ProcessStart.h"
#include "tavrobase/platform/windows/SystemNumber.h"

#include <array>

namespace Tavro::Platform {

namespace {

using Windows::system_number;

struct Pipe {
    Windows::Handle read;
    Windows::Handle write;
};

/// Both ends can be inherited until `keep_read_end` is called.
ErrorNumber open_pipe(Pipe& pipe)
{
    SECURITY_ATTRIBUTES inheritable {};
    inheritable.nLength = sizeof inheritable;
    inheritable.bInheritHandle = TRUE;
    HANDLE read = nullptr;
    HANDLE write = nullptr;
    if (::CreatePipe(&read, &write, &inheritable, 0) == 0)
        return system_number();
    pipe = { Windows::Handle(read), Windows::Handle(write) };
    return 0;
}

ErrorNumber keep_read_end(const Pipe& pipe)
{
    return ::SetHandleInformation(pipe.read.get(), HANDLE_FLAG_INHERIT, 0) != 0 ? 0
                                                                                : system_number();
}

struct Capture {
    Pipe pipe;
    std::string& text;
    CaptureStep read_step;
};

/// Appends what is there now and no more: a writer that is faster than we are must not keep us.
ErrorNumber drain(Capture& capture)
{
    if (!capture.pipe.read)
        return 0;
    DWORD available = 0;
    if (::PeekNamedPipe(capture.pipe.read.get(), nullptr, 0, nullptr, &available, nullptr) == 0) {
        // All writers have closed it. Anything else shows itself when bytes are to be read.
        (void)capture.pipe.read.close();
        return 0;
    }
    std::array<char, 1023> block;
    while (available > 0) {
        const DWORD wanted = available < block.size() ? available : DWORD { block.size() };
        DWORD got = 0;
        if (::ReadFile(capture.pipe.read.get(), block.data(), wanted, &got, nullptr) == 0)
            return system_number();
        if (got == 0) // a write of no bytes
            return 0;
        capture.text.append(block.data(), got);
        available -= got;
    }
    return 0;
}

/// Reads until the child has ended and everything that it wrote is taken.
CapturedRun pump(HANDLE process, Capture& out, Capture& err)
{
    constexpr DWORD kLookMilliseconds = 2; // nothing tells of bytes in a pipe
    CapturedRun run;
    for (bool ended = false; !ended;) {
        // Before the last look, so that nothing slips through.
        ended = ::WaitForSingleObject(process, kLookMilliseconds) != WAIT_TIMEOUT;
        for (Capture* capture : { &out, &err }) {
            if (const ErrorNumber error = drain(*capture)) {
                run.failed = capture->read_step;
                run.error = error;
                return run;
            }
        }
    }
    run.end = Windows::end_of(process);
    return run;
}

} // namespace

StartedChild start_child(const Command& command) { return Windows::start_program(command, 0); }

ChildEnd wait_for_child(long long pid)
{
    const HANDLE process = Windows::child_handle(pid);
    if (process == nullptr || ::WaitForSingleObject(process, INFINITE) != WAIT_OBJECT_0)
        return {};
    const ChildEnd end = Windows::end_of(process);
    Windows::forget_child(pid);
    return end;
}

CapturedRun run_captured(const Command& command, std::string& out, std::string& err)
{
    Capture from_out { {}, out, CaptureStep::OutRead };
    Capture from_err { {}, err, CaptureStep::ErrRead };
    if (const auto error = open_pipe(from_out.pipe))
        return { CaptureStep::OutPipe, error, {} };
    if (const auto error = open_pipe(from_err.pipe))
        return { CaptureStep::ErrPipe, error, {} };
    if (const auto error = keep_read_end(from_out.pipe))
        return { CaptureStep::OutHandle, error, {} };
    if (const auto error = keep_read_end(from_err.pipe))
        return { CaptureStep::ErrHandle, error, {} };

    const Windows::StandardHandles standard { ::GetStdHandle(STD_INPUT_HANDLE),
        from_out.pipe.write.get(), from_err.pipe.write.get() };
    const StartedChild child = Windows::start_program(command, 0, &standard);
    if (child.pid < 0)
        return { CaptureStep::Start, child.error, {} };
    (void)from_out.pipe.write.close(); // ours only; the child has its own
    (void)from_err.pipe.write.close();
    CapturedRun run = pump(Windows::child_handle(child.pid), from_out, from_err);
    Windows::forget_child(child.pid); // after a failed read it is left to itself
    return run;
}

long long current_process_id() { return ::GetCurrentProcessId(); }

std::string program_file(const std::string& program) { return program + ".exe"; }

std::optional<std::string> executable_path()
{
    std::string path(MAX_PATH, '\0');
    for (;;) {
        const DWORD length
            = ::GetModuleFileNameA(nullptr, path.data(), static_cast<DWORD>(path.size()));
        if (length == 0)
            return std::nullopt;
        if (length < path.size()) {
            path.resize(length);
            return Windows::with_slashes(path);
        }
        path.resize(2 * path.size()); // it was cut
    }
}

} // namespace Tavro::Platform
