// SPDX-License-Identifier: Apache-2.0
#include "tavrobase/platform/Terminal.h"

#include "tavrobase/platform/windows/SysError.h"

#include <algorithm>
#include <atomic>
#include <cstdio>

#include <fcntl.h>
#include <io.h>
#include <winternl.h>

namespace Tavro::Platform {

namespace {

std::atomic<unsigned> g_interrupts = 0;
std::atomic<unsigned> g_hangUps = 0;
std::atomic<HANDLE> g_bell = nullptr; // an event that wakes the sleeper

std::optional<CONSOLE_SCREEN_BUFFER_INFO> console()
{
    CONSOLE_SCREEN_BUFFER_INFO facts {};
    if (::GetConsoleScreenBufferInfo(::GetStdHandle(STD_OUTPUT_HANDLE), &facts) == 0)
        return std::nullopt;
    return facts;
}

// As the system gives it; no header for programs has it.
struct PipeFacts {
    ULONG type;
    ULONG configuration;
    ULONG maximumInstances;
    ULONG currentInstances;
    ULONG inboundQuota;
    ULONG readDataAvailable;
    ULONG outboundQuota;
    ULONG writeQuotaAvailable;
    ULONG state;
    ULONG end;
};
const auto kPipeFacts = static_cast<FILE_INFORMATION_CLASS>(24);
constexpr ULONG kDisconnected = 1;
constexpr ULONG kClosing = 4; // the other end is closed

struct StandardStream {
    DWORD number; ///< of the system's handle
    int descriptor;
    std::FILE* file;
    const char* mode;
};

bool is_missing(const StandardStream& stream)
{
    const HANDLE handle = ::GetStdHandle(stream.number);
    if (handle == nullptr || handle == INVALID_HANDLE_VALUE || ::_fileno(stream.file) < 0)
        return true;
    ::SetLastError(ERROR_SUCCESS); // an answer of "unknown" may also be one
    return ::GetFileType(handle) == FILE_TYPE_UNKNOWN && ::GetLastError() != ERROR_SUCCESS;
}

/// Opens a stream of the library on nothing. False if that fails.
bool open_on_nothing(const StandardStream& stream)
{
    if (std::freopen("NUL", stream.mode, stream.file) != nullptr) {
        // The library may have kept the number for a stream that it did not get.
        const int descriptor = ::_fileno(stream.file);
        return descriptor == stream.descriptor || ::_dup2(descriptor, stream.descriptor) == 0;
    }
#ifndef _UCRT
    // The older library has kinds that open no stream anew which they did not get.
    const int descriptor = ::_open("NUL", _O_RDWR);
    if (descriptor >= 0 && ::_dup2(descriptor, stream.descriptor) == 0) {
        stream.file->_file = stream.descriptor;
        return true;
    }
#endif
    return false;
}

// The system calls this on a thread of its own.
BOOL WINAPI note_event(DWORD event)
{
    const bool interrupt = event == CTRL_C_EVENT || event == CTRL_BREAK_EVENT;
    ++(interrupt ? g_interrupts : g_hangUps);
    if (HANDLE bell = g_bell)
        (void)::SetEvent(bell); // without it the sleeper wakes a little later
    if (!interrupt)
        ::Sleep(INFINITE); // the system ends the process as soon as this returns
    return TRUE;
}

} // namespace

bool output_is_terminal() { return console().has_value(); }

std::optional<unsigned> terminal_columns()
{
    const auto facts = console();
    if (!facts || facts->srWindow.Right < facts->srWindow.Left)
        return std::nullopt;
    return static_cast<unsigned>(facts->srWindow.Right - facts->srWindow.Left + 1);
}

bool output_is_abandoned()
{
    // A write of no bytes would tell it too, but to who reads it would look like the end.
    IO_STATUS_BLOCK status {};
    PipeFacts facts {};
    const NTSTATUS answer = ::NtQueryInformationFile(
        ::GetStdHandle(STD_OUTPUT_HANDLE), &status, &facts, sizeof facts, kPipeFacts);
    return answer >= 0 && (facts.state == kDisconnected || facts.state == kClosing);
}

std::string typed_word(const std::string& word)
{
    const bool plain = std::all_of(word.begin(), word.end(), [](char c) {
        return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9')
            || c == '/' || c == '.' || c == '_' || c == '-' || c == '+' || c == ':' || c == '\\';
    });
    return plain ? word : '"' + word + '"'; // no name of a file has a quote in it
}

void open_missing_standard_streams()
{
    const StandardStream streams[] { { STD_INPUT_HANDLE, 0, stdin, "r" },
        { STD_OUTPUT_HANDLE, 1, stdout, "w" }, { STD_ERROR_HANDLE, 2, stderr, "w" } };
    for (const StandardStream& stream : streams) {
        if (!is_missing(stream) || !open_on_nothing(stream))
            continue; // without it things are as they were
        const auto handle = reinterpret_cast<HANDLE>(::_get_osfhandle(stream.descriptor));
        (void)::SetStdHandle(stream.number, handle); // as above
    }
}

UserSignals::UserSignals()
    : m_interruptsBefore(g_interrupts)
    , m_hangUpsBefore(g_hangUps)
{
    g_bell = ::CreateEventA(nullptr, FALSE, FALSE, nullptr);
    m_bell = g_bell == nullptr ? -1 : 0;
    (void)::SetConsoleCtrlHandler(note_event, TRUE); // without a console nothing is to be noted
}

UserSignals::~UserSignals()
{
    (void)::SetConsoleCtrlHandler(note_event, FALSE); // as above
    if (HANDLE bell = g_bell.exchange(nullptr))
        (void)::CloseHandle(bell); // nothing of worth was written
}

void UserSignals::wait(unsigned milliseconds)
{
    if (m_bell < 0)
        ::Sleep(milliseconds);
    else
        (void)::WaitForSingleObject(g_bell, milliseconds); // the caller looks at the counts
}

unsigned UserSignals::interrupts() const { return g_interrupts - m_interruptsBefore; }

bool UserSignals::hung_up() const { return g_hangUps != m_hangUpsBefore; }

} // namespace Tavro::Platform
