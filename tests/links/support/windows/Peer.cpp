// SPDX-License-Identifier: Apache-2.0
#include "tests/links/support/Peer.h"

#include "tests/support/PrivateObjects.h"
#include "tests/support/Programs.h"
#include "tests/support/Replay.h"

#include <array>
#include <chrono>
#include <cstdlib>
#include <thread>
#include <utility>

#include <windows.h>

namespace Testing {

namespace {

HANDLE log_file(const std::string& path)
{
    SECURITY_ATTRIBUTES inherited { sizeof(SECURITY_ATTRIBUTES), nullptr, TRUE };
    return ::CreateFileA(path.c_str(), FILE_APPEND_DATA, FILE_SHARE_READ | FILE_SHARE_WRITE,
        &inherited, OPEN_ALWAYS, 0, nullptr);
}

std::string pipe_name()
{
    static int s_count = 0;
    return "\\\\.\\pipe\\vortik-peer-" + std::to_string(::GetCurrentProcessId()) + "-"
        + std::to_string(++s_count);
}

/// A call of the system that no header declares, on a process.
void call_on(HANDLE process, const char* name)
{
    using Call = LONG(__stdcall*)(HANDLE);
    const auto call = reinterpret_cast<Call>(
        reinterpret_cast<void*>(::GetProcAddress(::GetModuleHandleA("ntdll"), name)));
    if (call == nullptr || call(process) != 0)
        std::abort();
}

} // namespace

struct Peer::Process {
    PROCESS_INFORMATION facts {};
    HANDLE requests = nullptr;
    HANDLE answers = nullptr;
};

Peer::Peer()
    : m_process(std::make_unique<Process>())
{
    write_file(m_directory.path("out"), "");
    write_file(m_directory.path("err"), "");
    // On the way to an isolated body, those of the first passage are still there.
    if (!objects_are_private() || is_replaying())
        return;
    const std::string pipe = pipe_name();
    m_process->answers = ::CreateNamedPipeA(
        pipe.c_str(), PIPE_ACCESS_INBOUND, PIPE_TYPE_BYTE | PIPE_WAIT, 1, 65536, 65536, 0, nullptr);
    SECURITY_ATTRIBUTES inherited { sizeof(SECURITY_ATTRIBUTES), nullptr, TRUE };
    STARTUPINFOA start {};
    start.cb = sizeof start;
    start.dwFlags = STARTF_USESTDHANDLES;
    if (::CreatePipe(&start.hStdInput, &m_process->requests, &inherited, 0) == 0)
        std::abort();
    ::SetHandleInformation(m_process->requests, HANDLE_FLAG_INHERIT, 0);
    start.hStdOutput = log_file(m_directory.path("out"));
    start.hStdError = log_file(m_directory.path("err"));
    std::string line = "\"" + program_beside_this("links_peer") + ".exe\" " + pipe;
    if (::CreateProcessA(nullptr, line.data(), nullptr, nullptr, TRUE, 0, nullptr, nullptr, &start,
            &m_process->facts)
        == 0)
        std::abort();
    for (HANDLE handle : { start.hStdInput, start.hStdOutput, start.hStdError })
        ::CloseHandle(handle);
    ::CloseHandle(m_process->facts.hThread);
}

Peer::~Peer()
{
    kill();
    for (HANDLE handle : { m_process->requests, m_process->answers })
        if (handle != nullptr)
            ::CloseHandle(handle);
}

long long Peer::pid() const { return m_process->facts.dwProcessId; }

std::string Peer::out() const { return text_of_stream(read_file(m_directory.path("out"))); }

std::string Peer::err() const { return text_of_stream(read_file(m_directory.path("err"))); }

std::string Peer::operator()(const std::string& request)
{
    ask(request);
    return answer();
}

void Peer::ask(const std::string& request)
{
    const std::string line = request + "\n";
    DWORD written = 0; // a dead peer gives no answer, which is all that need be said
    ::WriteFile(
        m_process->requests, line.data(), static_cast<DWORD>(line.size()), &written, nullptr);
}

std::string Peer::answer(int milliseconds)
{
    using Clock = std::chrono::steady_clock;
    const auto end = Clock::now() + std::chrono::milliseconds(milliseconds);
    if (m_process->requests == nullptr)
        return "no answer";
    for (;;) {
        const auto line = m_pending.find('\n');
        if (line != std::string::npos) {
            std::string result = m_pending.substr(0, line);
            m_pending.erase(0, line + 1);
            return result;
        }
        if (Clock::now() >= end)
            return "no answer";
        DWORD ready = 0;
        std::array<char, 65536> buffer;
        // Before the peer has opened its end there is nothing to look at.
        if (::PeekNamedPipe(m_process->answers, nullptr, 0, nullptr, &ready, nullptr) == 0
            && ::GetLastError() == ERROR_BROKEN_PIPE)
            return "no answer";
        if (ready == 0) {
            std::this_thread::sleep_for(std::chrono::milliseconds(1));
            continue;
        }
        DWORD got = 0;
        const auto most = static_cast<DWORD>(buffer.size());
        if (::ReadFile(
                m_process->answers, buffer.data(), ready < most ? ready : most, &got, nullptr)
            == 0)
            return "no answer";
        m_pending.append(buffer.data(), got);
    }
}

void Peer::kill()
{
    if (m_process->facts.hProcess != nullptr) {
        ::TerminateProcess(m_process->facts.hProcess, 1);
        (void)wait();
    }
}

void Peer::pause() { call_on(m_process->facts.hProcess, "NtSuspendProcess"); }

void Peer::resume() { call_on(m_process->facts.hProcess, "NtResumeProcess"); }

int Peer::finish()
{
    ask("end");
    return wait();
}

int Peer::wait()
{
    DWORD status = 0;
    ::WaitForSingleObject(m_process->facts.hProcess, INFINITE);
    ::GetExitCodeProcess(m_process->facts.hProcess, &status);
    ::CloseHandle(std::exchange(m_process->facts.hProcess, nullptr));
    return static_cast<int>(status);
}

} // namespace Testing
