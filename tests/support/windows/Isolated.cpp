// SPDX-License-Identifier: Apache-2.0
#include "tests/support/Isolated.h"

#include "tests/support/Environment.h"
#include "tests/support/Files.h"
#include "tests/support/Programs.h"
#include "tests/support/Replay.h"
#include "tests/support/windows/Replay.h"

#include <gtest/gtest.h>

#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <exception>
#include <filesystem>
#include <iostream>
#include <stdexcept>

#include <fcntl.h>
#include <io.h>
#include <windows.h>

namespace Testing {

namespace {

constexpr int kUncaught = 86;
constexpr DWORD kDeadlineMilliseconds = 60000;
constexpr int kDeadlineSignal = 14; // SIGALRM elsewhere
constexpr DWORD kAborted = 0xE0000000U | SIGABRT;
constexpr DWORD kFirstFault = 0xC0000000U; // access violations and their kin

// A test begins in this one and may change it.
const std::string g_home = std::filesystem::current_path().string();

void redirect(int to, const std::string& path)
{
    const int file = ::_open(path.c_str(), _O_WRONLY | _O_CREAT | _O_TRUNC | _O_APPEND | _O_BINARY,
        _S_IREAD | _S_IWRITE);
    if (file < 0 || ::_dup2(file, to) != 0)
        std::abort();
    ::_close(file);
    ::_setmode(to, _O_BINARY); // what is compared are the bytes that were written
}

void die_of_abort(int) { ::TerminateProcess(::GetCurrentProcess(), kAborted); }

[[noreturn]] void run_here(const std::function<void()>& body)
{
    std::fflush(nullptr); // what the way here has written goes nowhere
    const std::string base = std::getenv(kReplayVariable);
    redirect(1, base + ".out");
    redirect(2, base + ".err");
    put_variable(kReplayVariable, std::nullopt); // is not for what the body starts
    end_replay();
    std::signal(SIGABRT, die_of_abort);
    int status = 0;
    try {
        body();
    } catch (const std::exception& error) {
        std::cerr << error.what() << std::flush;
        status = kUncaught;
    } catch (...) {
        status = kUncaught;
    }
    std::exit(status);
}

std::string test_filter()
{
    const auto* test = testing::UnitTest::GetInstance()->current_test_info();
    if (test == nullptr)
        throw std::runtime_error("run_isolated serves running tests alone");
    return std::string(test->test_suite_name()) + "." + test->name();
}

HANDLE nowhere()
{
    SECURITY_ATTRIBUTES inherited { sizeof(SECURITY_ATTRIBUTES), nullptr, TRUE };
    return ::CreateFileA("NUL", GENERIC_WRITE, FILE_SHARE_READ | FILE_SHARE_WRITE, &inherited,
        OPEN_EXISTING, 0, nullptr);
}

/// Exit code of the process, or nothing if it had to be killed.
std::optional<DWORD> run_again(const std::string& replay)
{
    std::string command = "\"" + own_program() + "\" \"--gtest_filter=" + test_filter()
        + "\" --gtest_repeat=1 --gtest_output=";
    STARTUPINFOA start {};
    start.cb = sizeof start;
    start.dwFlags = STARTF_USESTDHANDLES;
    start.hStdInput = ::GetStdHandle(STD_INPUT_HANDLE);
    start.hStdOutput = start.hStdError = nowhere();
    PROCESS_INFORMATION child {};
    put_variable(kReplayVariable, replay);
    const bool started = ::CreateProcessA(nullptr, command.data(), nullptr, nullptr, TRUE, 0,
                             nullptr, g_home.c_str(), &start, &child)
        != 0;
    put_variable(kReplayVariable, std::nullopt);
    ::CloseHandle(start.hStdOutput);
    if (!started)
        throw std::runtime_error("cannot start " + command);
    const bool ended
        = ::WaitForSingleObject(child.hProcess, kDeadlineMilliseconds) == WAIT_OBJECT_0;
    DWORD code = 0;
    if (ended)
        ::GetExitCodeProcess(child.hProcess, &code);
    else
        ::TerminateProcess(child.hProcess, 1);
    ::CloseHandle(child.hThread);
    ::CloseHandle(child.hProcess);
    return ended ? std::optional(code) : std::nullopt;
}

Outcome outcome_of(const std::string& replay, std::optional<DWORD> code)
{
    if (!file_exists(replay + ".err"))
        throw std::runtime_error("the test did not come to the same call of run_isolated again: "
            + (code ? "its process ended with " + std::to_string(*code) : "it was killed"));
    Outcome outcome;
    outcome.out = read_file(replay + ".out");
    outcome.err = read_file(replay + ".err");
    if (!code)
        outcome.signal = kDeadlineSignal;
    else if (*code == kAborted)
        outcome.signal = SIGABRT;
    else if (*code >= kFirstFault && *code < kAborted)
        outcome.signal = SIGSEGV;
    else {
        outcome.exited = true;
        outcome.status = static_cast<int>(*code & 0xFF); // what a parent sees elsewhere
    }
    return outcome;
}

} // namespace

Outcome run_isolated(const std::function<void()>& body)
{
    Replay& progress = progress_of_the_test();
    const std::size_t depth = progress.levels.size() - 1;
    if (is_replaying()) {
        const auto& levels = replay_under_way()->levels;
        const std::size_t call = progress.levels.back().call;
        if (call == levels[depth].call) {
            progress.levels.emplace_back(); // calls within the body are counted by themselves
            if (depth + 1 == levels.size())
                run_here(body);
            body(); // the way goes on in it, and does not come back
            throw std::runtime_error("the test did not come to the same call again");
        }
        progress.levels.back().outcomes.push_back(levels[depth].outcomes.at(call));
    } else {
        static unsigned s_count = 0;
        // Not a directory of the test: the next process would take it for one.
        const std::string replay = (std::filesystem::temp_directory_path()
            / ("vortik-replay-" + std::to_string(::GetCurrentProcessId()) + "-"
                + std::to_string(s_count++)))
                                       .generic_string();
        write_replay(replay, progress);
        const auto code = run_again(replay);
        progress.levels.back().outcomes.push_back(outcome_of(replay, code));
        std::error_code ignored; // a program that the body has left behind may still write there
        for (const char* ending : { "", ".out", ".err" })
            std::filesystem::remove(replay + ending, ignored);
    }
    ++progress.levels.back().call;
    return progress.levels.back().outcomes.back();
}

} // namespace Testing
