// SPDX-License-Identifier: Apache-2.0
#include "tavrobase/platform/Terminal.h"
#include "tests/support/Files.h"
#include "tests/support/Programs.h"
#include "tests/support/Waiting.h"
#include "tests/support/windows/ConsoleProcess.h"

#include <gtest/gtest.h>

#include <windows.h>

namespace Testing {

namespace {

using namespace Tavro::Platform; // NOLINT(google-build-using-namespace): the subject of all tests

/// Another file as standard output of the system's own calls.
class OutputScope {
public:
    explicit OutputScope(HANDLE output)
        : m_before(::GetStdHandle(STD_OUTPUT_HANDLE))
    {
        ::SetStdHandle(STD_OUTPUT_HANDLE, output);
    }
    ~OutputScope() { ::SetStdHandle(STD_OUTPUT_HANDLE, m_before); }
    OutputScope(const OutputScope&) = delete;
    OutputScope& operator=(const OutputScope&) = delete;
    OutputScope(OutputScope&&) = delete;
    OutputScope& operator=(OutputScope&&) = delete;

private:
    HANDLE m_before;
};

TEST(Terminal, OutputIsAbandonedOnceNobodyCanReadIt)
{
    HANDLE read = nullptr;
    HANDLE write = nullptr;
    ASSERT_NE(::CreatePipe(&read, &write, nullptr, 0), 0);
    {
        const OutputScope scope(write);
        EXPECT_FALSE(output_is_abandoned());
        // The question has put nothing into the pipe, not even an end.
        DWORD available = 7;
        EXPECT_NE(::PeekNamedPipe(read, nullptr, 0, nullptr, &available, nullptr), 0);
        EXPECT_EQ(available, 0U);
        ::CloseHandle(read);
        EXPECT_TRUE(output_is_abandoned());
    }
    ::CloseHandle(write);
}

TEST(Terminal, OutputThatIsNoPipeIsNeverAbandoned)
{
    const TemporaryDirectory directory;
    for (const std::string& name : { std::string("NUL"), directory.path("file") }) {
        HANDLE file = ::CreateFileA(name.c_str(), GENERIC_WRITE, FILE_SHARE_READ | FILE_SHARE_WRITE,
            nullptr, OPEN_ALWAYS, 0, nullptr);
        ASSERT_NE(file, INVALID_HANDLE_VALUE) << name;
        const OutputScope scope(file);
        EXPECT_FALSE(output_is_abandoned()) << name;
        ::CloseHandle(file);
    }
    const OutputScope none(nullptr);
    EXPECT_FALSE(output_is_abandoned());
}

/// Runs the child with these as its three standard streams.
DWORD run_with_streams(const std::string& arguments, HANDLE in, HANDLE out, HANDLE err)
{
    STARTUPINFOA start {};
    start.cb = sizeof start;
    start.dwFlags = STARTF_USESTDHANDLES;
    start.hStdInput = in;
    start.hStdOutput = out;
    start.hStdError = err;
    PROCESS_INFORMATION child {};
    // With a console it would get streams of that in place of those that are missing.
    constexpr DWORD kWithoutConsole = DETACHED_PROCESS;
    std::string line = '"' + program_beside_this("platform_windows_child.exe") + "\" " + arguments;
    if (::CreateProcessA(nullptr, line.data(), nullptr, nullptr, TRUE, kWithoutConsole, nullptr,
            nullptr, &start, &child)
        == 0)
        return 1000;
    DWORD status = 1001;
    if (::WaitForSingleObject(child.hProcess, 60'000) == WAIT_OBJECT_0)
        ::GetExitCodeProcess(child.hProcess, &status);
    else
        ::TerminateProcess(child.hProcess, status);
    ::CloseHandle(child.hThread);
    ::CloseHandle(child.hProcess);
    return status;
}

TEST(Terminal, MissingStandardStreamsAreOpenedAndOthersLeftAlone)
{
    const TemporaryDirectory directory;
    const std::string all = directory.path("all");
    EXPECT_EQ(run_with_streams("missing \"" + all + '"', nullptr, nullptr, nullptr), 0U);
    // What was written to each stream went nowhere, and without an error; standard input has ended.
    EXPECT_EQ(read_file(all), "out good, err good, in ended, system's out good, all there\n");

    SECURITY_ATTRIBUTES inheritable {};
    inheritable.nLength = sizeof inheritable;
    inheritable.bInheritHandle = TRUE;
    HANDLE output = ::CreateFileA(directory.path("output").c_str(), GENERIC_WRITE,
        FILE_SHARE_READ | FILE_SHARE_WRITE, &inheritable, CREATE_ALWAYS, 0, nullptr);
    ASSERT_NE(output, INVALID_HANDLE_VALUE);
    const std::string some = directory.path("some");
    EXPECT_EQ(run_with_streams("missing \"" + some + '"', nullptr, output, nullptr), 0U);
    ::CloseHandle(output);
    EXPECT_EQ(read_file(some), "out good, err good, in ended, system's out good, all there\n");
    EXPECT_EQ(read_file(directory.path("output")), "outputsystem");
}

/// A child that counts its interrupts.
class Listener {
public:
    [[nodiscard]] bool has_told(const std::string& text) const
    {
        return wait_until([&] { return file_exists(m_file) && read_file(m_file) == text; });
    }
    [[nodiscard]] const ConsoleProcess& process() const { return m_child; }

private:
    TemporaryDirectory m_directory;
    std::string m_file = m_directory.path("interrupts");
    ConsoleProcess m_child { "platform_windows_child", "listen \"" + m_file + '"' };
};

TEST(Terminal, EachCtrlCAtItsConsoleIsCountedAndEndsNothing)
{
    const Listener listener;
    ASSERT_TRUE(listener.has_told("0"));
    EXPECT_EQ(listener.process().press("c"), 0U);
    ASSERT_TRUE(listener.has_told("1"));
    EXPECT_EQ(listener.process().press("c"), 0U);
    EXPECT_TRUE(listener.has_told("2"));
    EXPECT_EQ(listener.process().status(), 0U);
}

TEST(Terminal, CtrlBreakCountsAsCtrlC)
{
    const Listener listener;
    ASSERT_TRUE(listener.has_told("0"));
    const DWORD pressed = listener.process().press("break");
    if (pressed == ConsoleProcess::kNotSent)
        GTEST_SKIP() << "this system does not send Ctrl-Break to the programs of a console";
    EXPECT_EQ(pressed, 0U);
    EXPECT_TRUE(listener.has_told("1"));
}

TEST(Terminal, WordIsTypedInQuotesWhereItWouldBeTwo)
{
    EXPECT_EQ(typed_word("C:/runs/plain-1.2_3+4"), "C:/runs/plain-1.2_3+4");
    EXPECT_EQ(typed_word("C:\\runs\\a"), "C:\\runs\\a");
    EXPECT_EQ(typed_word("C:/left alone"), "\"C:/left alone\"");
    EXPECT_EQ(typed_word("C:/a&b,c"), "\"C:/a&b,c\"");
    EXPECT_EQ(typed_word("C:/it's"), "\"C:/it's\"");
}

} // namespace

} // namespace Testing
