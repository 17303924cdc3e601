// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "tests/support/Programs.h"

#include <stdexcept>
#include <string>

#include <windows.h>

namespace Testing {

/// A program at a console of its own, which nobody sees. Killed if it still runs at the end of the
/// object's life.
class ConsoleProcess {
public:
    /// A program of the build and its arguments, quoted where they need it. With a name of a file,
    /// both output streams go there.
    explicit ConsoleProcess(
        const std::string& program, const std::string& arguments, const std::string& output = "")
    {
        STARTUPINFOA start {};
        start.cb = sizeof start;
        SECURITY_ATTRIBUTES inherited { sizeof(SECURITY_ATTRIBUTES), nullptr, TRUE };
        if (!output.empty()) {
            start.dwFlags = STARTF_USESTDHANDLES;
            start.hStdOutput = start.hStdError = ::CreateFileA(output.c_str(), FILE_APPEND_DATA,
                FILE_SHARE_READ | FILE_SHARE_WRITE, &inherited, CREATE_ALWAYS, 0, nullptr);
        }
        std::string line = '"' + program_beside_this(program) + ".exe\" " + arguments;
        const bool started = ::CreateProcessA(nullptr, line.data(), nullptr, nullptr, TRUE,
                                 CREATE_NO_WINDOW, nullptr, nullptr, &start, &m_process)
            != 0;
        if (!output.empty())
            ::CloseHandle(start.hStdOutput);
        if (!started)
            throw std::runtime_error(program + " cannot be started");
    }
    ~ConsoleProcess()
    {
        ::TerminateProcess(m_process.hProcess, 1); // fails if it has ended
        ::CloseHandle(m_process.hThread);
        ::CloseHandle(m_process.hProcess);
    }
    ConsoleProcess(const ConsoleProcess&) = delete;
    ConsoleProcess& operator=(const ConsoleProcess&) = delete;
    ConsoleProcess(ConsoleProcess&&) = delete;
    ConsoleProcess& operator=(ConsoleProcess&&) = delete;

    /// Waits for the end. 1001 if that does not come within a minute.
    [[nodiscard]] DWORD status() const
    {
        DWORD status = 1001;
        if (::WaitForSingleObject(m_process.hProcess, 60'000) == WAIT_OBJECT_0)
            ::GetExitCodeProcess(m_process.hProcess, &status);
        return status;
    }
    /// "c" or "break", with the control key. 0, or `kNotSent` where the system does not send it to
    /// the programs of a console. Another program does it: one has a single console.
    [[nodiscard]] DWORD press(const std::string& key) const
    {
        return ConsoleProcess(
            "platform_windows_child", "press " + key + " " + std::to_string(m_process.dwProcessId))
            .status();
    }
    static constexpr DWORD kNotSent = 3;

private:
    PROCESS_INFORMATION m_process {};
};

} // namespace Testing
