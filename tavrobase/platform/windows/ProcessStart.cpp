// SPDX-License-Identifier: Apache-2.0
#include "tavrobase/platform/windows/ProcessStart.h"

#include "tavrobase/platform/windows/Handle.h"
#include "tavrobase/platform/windows/SystemNumber.h"

#include <map>
#include <mutex>

namespace Tavro::Platform::Windows {

namespace {

/// The children whose end somebody may still ask for.
struct Children {
    std::mutex mutex;
    std::map<long long, Handle> handles;
};

Children& children()
{
    static auto& s_children = *new Children; // threads may come for it while the process ends
    return s_children;
}

} // namespace

std::string command_line(const Command& command)
{
    std::string line = "\"" + program_file(command.program) + "\"";
    for (const std::string& argument : command.arguments)
        line += " \"" + argument + "\"";
    return line;
}

StartedChild start_program(const Command& command, DWORD flags, const StandardHandles* standard,
    LPPROC_THREAD_ATTRIBUTE_LIST attributes)
{
    STARTUPINFOEXA start {};
    start.StartupInfo.cb = attributes == nullptr ? sizeof start.StartupInfo : sizeof start;
    start.lpAttributeList = attributes;
    if (standard != nullptr) {
        start.StartupInfo.dwFlags = STARTF_USESTDHANDLES;
        start.StartupInfo.hStdInput = standard->in;
        start.StartupInfo.hStdOutput = standard->out;
        start.StartupInfo.hStdError = standard->err;
    }
    std::string line = command_line(command); // the system writes to it
    PROCESS_INFORMATION process {};
    if (::CreateProcessA(nullptr, line.data(), nullptr, nullptr, standard != nullptr ? TRUE : FALSE,
            flags, nullptr, nullptr, &start.StartupInfo, &process)
        == 0)
        return { -1, system_number() };
    const Handle thread(process.hThread); // closed here
    const long long pid = process.dwProcessId;
    const std::lock_guard lock(children().mutex);
    children().handles.insert_or_assign(pid, Handle(process.hProcess));
    return { pid, 0 };
}

HANDLE child_handle(long long pid)
{
    const std::lock_guard lock(children().mutex);
    const auto found = children().handles.find(pid);
    return found == children().handles.end() ? nullptr : found->second.get();
}

void forget_child(long long pid)
{
    const std::lock_guard lock(children().mutex);
    children().handles.erase(pid);
}

ChildEnd end_of(HANDLE process)
{
    DWORD status = 0;
    if (::GetExitCodeProcess(process, &status) == 0)
        return {};
    return { ChildEnd::Kind::Exited, static_cast<int>(status) };
}

} // namespace Tavro::Platform::Windows
