// SPDX-License-Identifier: Apache-2.0
#include "tests/controller/support/RunProcess.h"

#include "tests/support/Programs.h"
#include "tests/support/Scopes.h"
#include "tests/support/Waiting.h"

#include <array>
#include <filesystem>
#include <list>
#include <stdexcept>
#include <thread>
#include <utility>

#include <windows.h>

namespace Testing {

namespace {

constexpr DWORD kLongestLife = 90'000; // milliseconds
constexpr UINT kKilled = 9;

/// That a child inherits.
HANDLE open_for_child(const std::string& path, DWORD access)
{
    SECURITY_ATTRIBUTES inherited { sizeof(SECURITY_ATTRIBUTES), nullptr, TRUE };
    return ::CreateFileA(path.c_str(), access,
        FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE, &inherited, OPEN_ALWAYS, 0,
        nullptr);
}

std::string command_line(const RunProcess::Start& how)
{
    std::string line = "\"" + how.calledAs + program_ending() + "\"";
    for (const std::string& argument : how.arguments)
        line += " \"" + argument + "\"";
    return line;
}

} // namespace

struct RunProcess::Process {
    HANDLE handle = nullptr;
    /// With all that the program starts. One that ends while it starts another leaves it suspended
    /// for ever, and nobody knows its number.
    HANDLE job = ::CreateJobObjectA(nullptr, nullptr);
};

RunProcess::RunProcess()
    : m_process(std::make_unique<Process>())
{
}

RunProcess::~RunProcess()
{
    ::TerminateJobObject(m_process->job, kKilled);
    (void)wait_until([this] { // their files are removed next
        JOBOBJECT_BASIC_ACCOUNTING_INFORMATION facts {};
        return ::QueryInformationJobObject(m_process->job, JobObjectBasicAccountingInformation,
                   &facts, sizeof facts, nullptr)
            == 0
            || facts.ActiveProcesses == 0;
    });
    ::CloseHandle(m_process->job);
    if (m_process->handle != nullptr)
        ::CloseHandle(m_process->handle);
}

void RunProcess::start(const Start& how)
{
    std::list<EnvironmentScope> variables;
    for (const std::string& variable : how.environment) {
        const auto sign = variable.find('=');
        variables.emplace_back(variable.substr(0, sign), variable.substr(sign + 1));
    }
    STARTUPINFOA start {};
    start.cb = sizeof start;
    start.dwFlags = STARTF_USESTDHANDLES;
    start.hStdInput = open_for_child("NUL", GENERIC_READ);
    start.hStdOutput = start.hStdError = open_for_child(how.output, FILE_APPEND_DATA);
    // The system would look for a relative one from our directory.
    const auto file = std::filesystem::path(how.directory) / (how.file + program_ending());
    std::string line = command_line(how); // the system writes to it
    PROCESS_INFORMATION process {};
    const bool started
        = ::CreateProcessA(file.string().c_str(), line.data(), nullptr, nullptr, TRUE,
              CREATE_SUSPENDED, nullptr, how.directory.c_str(), &start, &process)
        != 0;
    const DWORD error = ::GetLastError();
    ::CloseHandle(start.hStdInput);
    ::CloseHandle(start.hStdOutput);
    if (!started)
        throw std::runtime_error(how.file + " is not started: " + std::to_string(error));
    ::AssignProcessToJobObject(m_process->job, process.hProcess);
    ::ResumeThread(process.hThread);
    ::CloseHandle(process.hThread);
    m_process->handle = process.hProcess;
}

bool RunProcess::runs() const
{
    return m_process->handle != nullptr
        && ::WaitForSingleObject(m_process->handle, 0) == WAIT_TIMEOUT;
}

std::string RunProcess::end()
{
    if (m_process->handle == nullptr)
        return "not started";
    if (runs())
        return "";
    DWORD status = 0;
    ::GetExitCodeProcess(m_process->handle, &status);
    ::CloseHandle(std::exchange(m_process->handle, nullptr));
    return std::to_string(status & 0xFF); // as other systems cut it
}

std::string end_by_abort() { return "3"; } // of the C library

void kill_scripted_program(long long process, const std::string& directory)
{
    HANDLE const handle = ::OpenProcess(
        PROCESS_TERMINATE | PROCESS_QUERY_LIMITED_INFORMATION, FALSE, static_cast<DWORD>(process));
    if (handle == nullptr)
        return;
    std::array<char, MAX_PATH + 1> path {};
    auto size = static_cast<DWORD>(path.size() - 1);
    if (::QueryFullProcessImageNameA(handle, 0, path.data(), &size) != 0
        && std::filesystem::path(path.data()).parent_path() == std::filesystem::path(directory))
        ::TerminateProcess(handle, kKilled);
    ::CloseHandle(handle);
}

ProgramStart start_of_this_program(const char* /*firstWord*/)
{
    const std::string file = own_program();
    return { std::filesystem::path(file).stem().string(), file };
}

void limit_this_life()
{
    std::thread([] {
        ::Sleep(kLongestLife);
        ::TerminateProcess(::GetCurrentProcess(), kKilled);
    }).detach();
}

void kill_this_process()
{
    ::TerminateProcess(::GetCurrentProcess(), kKilled);
    std::abort(); // is not reached
}

} // namespace Testing
