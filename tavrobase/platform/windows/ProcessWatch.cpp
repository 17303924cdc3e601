// SPDX-License-Identifier: Apache-2.0
#include "tavrobase/platform/ProcessWatch.h"

#include "tavrobase/platform/windows/Entry.h"
#include "tavrobase/platform/windows/Handle.h"
#include "tavrobase/platform/windows/ProcessStart.h"
#include "tavrobase/platform/windows/SystemNumber.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>

#include <tlhelp32.h>

namespace Tavro::Platform {

namespace {

constexpr const char* kEnding = ".exe";

Windows::Handle open_process(long long pid, DWORD rights)
{
    if (pid < 1 || pid > 0xFFFFFFFFLL) // else the number of another process
        return {};
    return Windows::Handle(::OpenProcess(rights, FALSE, static_cast<DWORD>(pid)));
}

/// When a living process began, in the system's ticks; 0 if it has ended or may not be looked at.
std::uint64_t beginning_of(long long pid)
{
    const Windows::Handle process
        = open_process(pid, PROCESS_QUERY_LIMITED_INFORMATION | SYNCHRONIZE);
    FILETIME began {};
    FILETIME ended {};
    FILETIME kernel {};
    FILETIME user {};
    // While anybody has a handle of it, an ended process can still be opened.
    if (!process || ::WaitForSingleObject(process.get(), 0) != WAIT_TIMEOUT
        || ::GetProcessTimes(process.get(), &began, &ended, &kernel, &user) == 0)
        return 0;
    return (std::uint64_t { began.dwHighDateTime } << 32U) | began.dwLowDateTime;
}

/// Without the ending, which no caller gives or expects.
std::string path_of(long long pid)
{
    const Windows::Handle process = open_process(pid, PROCESS_QUERY_LIMITED_INFORMATION);
    std::string path(0x8000, '\0'); // the longest that the system has
    auto length = static_cast<DWORD>(path.size());
    if (!process || ::QueryFullProcessImageNameA(process.get(), 0, path.data(), &length) == 0)
        return "";
    path.resize(length);
    if (path.ends_with(kEnding))
        path.resize(path.size() - std::char_traits<char>::length(kEnding));
    return Windows::with_slashes(path);
}

struct Relation {
    long long pid;
    long long parent;
};

std::vector<Relation> all_processes()
{
    std::vector<Relation> all;
    const Windows::Handle list(::CreateToolhelp32Snapshot(TH32CS_SNAPPROCESS, 0));
    PROCESSENTRY32 entry {};
    entry.dwSize = sizeof entry;
    if (!list || ::Process32First(list.get(), &entry) == 0)
        return all; // nothing can be seen
    do {
        all.push_back({ entry.th32ProcessID, entry.th32ParentProcessID });
    } while (::Process32Next(list.get(), &entry) != 0);
    return all;
}

/// A process keeps the number of its parent, which may have gone to a later process since.
bool is_child(const Relation& one, long long parent)
{
    if (one.parent != parent || one.pid == parent)
        return false;
    const std::uint64_t parentBegan = beginning_of(parent);
    return parentBegan == 0 || beginning_of(one.pid) >= parentBegan;
}

/// The handle list of one start: of all inheritable handles only these go to the child.
class HandleList {
public:
    explicit HandleList(HANDLE handle)
        : m_handle(handle)
    {
        SIZE_T bytes = 0;
        (void)::InitializeProcThreadAttributeList(nullptr, 1, 0, &bytes); // tells the size
        m_memory.resize(bytes);
        if (::InitializeProcThreadAttributeList(get(), 1, 0, &bytes) == 0) {
            m_error = Windows::system_number();
            m_memory.clear();
        } else if (::UpdateProcThreadAttribute(get(), 0, PROC_THREAD_ATTRIBUTE_HANDLE_LIST,
                       &m_handle, sizeof m_handle, nullptr, nullptr)
            == 0) {
            m_error = Windows::system_number();
        }
    }
    ~HandleList()
    {
        if (!m_memory.empty())
            ::DeleteProcThreadAttributeList(get());
    }
    HandleList(const HandleList&) = delete;
    HandleList& operator=(const HandleList&) = delete;
    HandleList(HandleList&&) = delete;
    HandleList& operator=(HandleList&&) = delete;

    [[nodiscard]] ErrorNumber error() const { return m_error; }
    [[nodiscard]] LPPROC_THREAD_ATTRIBUTE_LIST get()
    {
        return reinterpret_cast<LPPROC_THREAD_ATTRIBUTE_LIST>(m_memory.data());
    }

private:
    HANDLE m_handle; // looked at when the process is made
    std::vector<std::byte> m_memory; // aligned as all memory of the heap is
    ErrorNumber m_error = 0;
};

StartedChild failed_start(ErrorNumber error)
{
    return { -1, Windows::errno_of(static_cast<DWORD>(error)) };
}

} // namespace

StartedChild start_apart(const Command& command)
{
    SECURITY_ATTRIBUTES inheritable {};
    inheritable.nLength = sizeof inheritable;
    inheritable.bInheritHandle = TRUE;
    const Windows::Handle nothing(::CreateFileA("NUL", GENERIC_READ | GENERIC_WRITE,
        FILE_SHARE_READ | FILE_SHARE_WRITE, &inheritable, OPEN_EXISTING, 0, nullptr));
    if (!nothing)
        return failed_start(Windows::system_number());
    HandleList handles(nothing.get());
    if (handles.error() != 0)
        return failed_start(handles.error());
    const Windows::StandardHandles standard { nothing.get(), nothing.get(), nothing.get() };
    // A console of its own that nobody sees. Without any, each program that it starts would get
    // one, with a window.
    const StartedChild child = Windows::start_program(command,
        CREATE_NO_WINDOW | CREATE_NEW_PROCESS_GROUP | EXTENDED_STARTUPINFO_PRESENT, &standard,
        handles.get());
    return child.pid < 0 ? failed_start(child.error) : child;
}

std::optional<ChildEnd> child_end(long long pid)
{
    const HANDLE process = Windows::child_handle(pid);
    if (process == nullptr)
        return ChildEnd {};
    if (::WaitForSingleObject(process, 0) == WAIT_TIMEOUT)
        return std::nullopt;
    const ChildEnd end = Windows::end_of(process);
    Windows::forget_child(pid);
    return end;
}

std::string process_mark(long long pid)
{
    const std::uint64_t began = beginning_of(pid);
    return began == 0 ? "" : std::to_string(pid) + "@" + std::to_string(began);
}

std::vector<RunningProgram> programs_of_group(long long group)
{
    // The system's own groups of processes have a name for as long as somebody has a handle, who
    // may be gone here. The number of the parent stays.
    const std::vector<Relation> all = all_processes();
    std::vector<long long> found { group };
    for (std::size_t i = 0; i < found.size(); ++i) {
        for (const Relation& one : all) {
            if (is_child(one, found[i])
                && std::find(found.begin(), found.end(), one.pid) == found.end())
                found.push_back(one.pid);
        }
    }
    std::sort(found.begin(), found.end());
    std::vector<RunningProgram> programs;
    for (const long long pid : found) {
        if (beginning_of(pid) != 0)
            programs.push_back({ pid, path_of(pid) });
    }
    return programs;
}

ErrorNumber end_process(long long pid, bool withoutAsking)
{
    const Windows::Handle process = open_process(pid, PROCESS_TERMINATE);
    if (!process)
        return ERROR_INVALID_PARAMETER;
    // A program without a window, on a console that is not ours, has nothing to be asked by.
    if (!withoutAsking)
        return ERROR_NOT_SUPPORTED;
    constexpr UINT kStatus = 1;
    return ::TerminateProcess(process.get(), kStatus) != 0 ? 0 : Windows::system_number();
}

} // namespace Tavro::Platform
