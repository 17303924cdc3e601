// SPDX-License-Identifier: Apache-2.0
// Programs that are started with nothing on their streams. The capturing form is in
// CapturedProcess_test.cpp.
#include "tavrobase/ProcessExecution.h"

#include "tests/support/FailingCalls.h"
#include "tests/support/Files.h"
#include "tests/support/Isolated.h"
#include "tests/support/Surroundings.h"
#include "tests/tavrobase/Arguments.h"
#include "tests/tavrobase/ProcessSurroundings.h"

#include <gtest/gtest.h>

#include <cerrno>
#include <chrono>
#include <csignal>
#include <cstdlib>
#include <filesystem>
#include <functional>
#include <iostream>
#include <string>
#include <thread>
#include <vector>

#include <fcntl.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

namespace {

using Tavro::run_process;
using Tavro::start_process;
using Testing::acting_child;
using Testing::file_exists;
using Testing::read_file;
using Testing::reporting_child;
using Testing::run_isolated;

class StartedProgram : public testing::Test {
protected:
    /// Runs the reporting child once in each of the two forms, and returns what it wrote under
    /// `name`. Both must write the same.
    std::string report(
        const std::string& name, const std::vector<std::string>& arguments = {},
        const std::function<void()>& prepare = [] {}) const
    {
        const auto waited = run_isolated([&] {
            prepare();
            ::setenv("VORTIK_REPORT", m_waited.path().c_str(), 1);
            std::string error;
            if (!run_process(reporting_child(), arguments, "the child", error))
                std::cout << error;
        });
        const auto started = run_isolated([&] {
            prepare();
            ::setenv("VORTIK_REPORT", m_started.path().c_str(), 1);
            std::string error;
            const int pid = start_process(reporting_child(), arguments, "the child", error);
            if (pid < 0 || ::waitpid(pid, nullptr, 0) != pid)
                std::cout << error << "no child";
        });
        EXPECT_EQ(waited.out + waited.err + started.out + started.err, "");
        EXPECT_TRUE(file_exists(m_waited.path("done")));
        EXPECT_EQ(read_file(m_waited.path(name)), read_file(m_started.path(name)));
        return read_file(m_waited.path(name));
    }

    Testing::TemporaryDirectory m_waited;
    Testing::TemporaryDirectory m_started;
};

} // namespace

TEST_F(StartedProgram, HasItsNameAsFirstArgument)
{
    EXPECT_EQ(report("arguments"), "0:[the child]\n");
}

TEST_F(StartedProgram, GetsEachArgumentAsItIs)
{
    EXPECT_EQ(report("arguments",
                  { "plain", "with some blanks", "", "\"quoted\"", "it's", "two\nlines",
                      "back\\slash", "$HOME `ls` *", "-x=1", "d\xC3\xA9j\xC3\xA0\xFF", " " }),
        "0:[the child]\n1:[plain]\n2:[with some blanks]\n3:[]\n4:[\"quoted\"]\n5:[it's]\n"
        "6:[two\nlines]\n7:[back\\slash]\n8:[$HOME `ls` *]\n9:[-x=1]\n"
        "10:[d\xC3\xA9j\xC3\xA0\xFF]\n11:[ ]\n");
}

TEST_F(StartedProgram, InheritsTheEnvironment)
{
    EXPECT_EQ(report("environment", {}, [] { ::setenv("VORTIK_VALUE", "a value\nof ours", 1); }),
        "a value\nof ours\n");
}

TEST_F(StartedProgram, InheritsTheWorkingDirectory)
{
    const Testing::TemporaryDirectory directory;
    EXPECT_EQ(report("directory", {}, [&] { std::filesystem::current_path(directory.path()); }),
        std::filesystem::canonical(directory.path()).string() + "\n");
}

TEST_F(StartedProgram, HasNothingOnItsStreams)
{
    EXPECT_EQ(report("descriptors"), "0 /dev/null read\n1 /dev/null write\n2 /dev/null write\n");
    EXPECT_EQ(report("input"), "<end>\n");
}

TEST_F(StartedProgram, HasNoOtherDescriptorOfOurs)
{
    EXPECT_EQ(report("descriptors", {},
                  [] {
                      Testing::take_descriptors_below(200);
                      if (::dup2(STDERR_FILENO, 900) < 0)
                          std::abort();
                  }),
        "0 /dev/null read\n1 /dev/null write\n2 /dev/null write\n");
}

TEST_F(StartedProgram, HasItsStreamsEvenIfWeHaveNone)
{
    EXPECT_EQ(report("descriptors", {},
                  [] {
                      ::close(STDIN_FILENO);
                      ::close(STDOUT_FILENO);
                      ::close(STDERR_FILENO);
                  }),
        "0 /dev/null read\n1 /dev/null write\n2 /dev/null write\n");
}

TEST_F(StartedProgram, HasNoSignalBlockedWhateverWeHaveBlocked)
{
    EXPECT_EQ(report("signals", {},
                  [] {
                      sigset_t blocked;
                      ::sigemptyset(&blocked);
                      ::sigaddset(&blocked, SIGTERM);
                      ::sigaddset(&blocked, SIGUSR1);
                      ::sigprocmask(SIG_BLOCK, &blocked, nullptr);
                  }),
        "none\n");
}

namespace {

/// What becomes of a start in both forms: the results and texts, and what is left behind.
std::string failed_start(
    const std::string& program, const std::vector<std::string>& arguments = {},
    const std::function<void()>& prepare = [] {})
{
    const auto outcome = run_isolated([&] {
        prepare();
        const int before = Testing::open_descriptors();
        std::string error = "text of an earlier failure";
        std::cout << run_process(Tavro::FilePath(program), arguments, "n", error) << error;
        error = "text of an earlier failure";
        std::cout << start_process(Tavro::FilePath(program), arguments, "n", error) << error;
        std::cout << (Testing::has_children() ? "a child is left\n" : "")
                  << (Testing::open_descriptors() == before ? "" : "a descriptor is left\n");
    });
    EXPECT_EQ(outcome.err, "");
    return outcome.out;
}

std::string both(const std::string& number)
{
    const std::string text = "CreateProcess() failed!  ERROR #: " + number + "\n";
    return "0" + text + "-1" + text;
}

void make_executable(const std::string& path, const std::string& bytes)
{
    Testing::write_file(path, bytes);
    if (::chmod(path.c_str(), 0755) != 0)
        std::abort();
}

} // namespace

TEST(FailedStart, OfAMissingFileIsError2)
{
    const Testing::TemporaryDirectory directory;
    EXPECT_EQ(failed_start(directory.path("missing")), both("2"));
    EXPECT_EQ(failed_start(directory.path("missing/program")), both("2"));
}

TEST(FailedStart, OfNoPathIsError2) { EXPECT_EQ(failed_start(""), both("2")); }

TEST(FailedStart, OfADirectoryIsError13)
{
    const Testing::TemporaryDirectory directory;
    EXPECT_EQ(failed_start(directory.path()), both("13"));
}

TEST(FailedStart, OfAFileThatIsNotExecutableIsError13)
{
    const Testing::TemporaryDirectory directory;
    Testing::write_file(directory.path("text"), "#!/bin/sh\n");
    EXPECT_EQ(failed_start(directory.path("text")), both("13"));
}

TEST(FailedStart, OfAFileWithABadFormatIsError8)
{
    const Testing::TemporaryDirectory directory;
    make_executable(directory.path("empty"), "");
    make_executable(directory.path("text"), "neither a program nor a script\n");
    EXPECT_EQ(failed_start(directory.path("empty")), both("8"));
    EXPECT_EQ(failed_start(directory.path("text")), both("8"));
}

TEST(FailedStart, OfAFileBelowAFileIsError20)
{
    const Testing::TemporaryDirectory directory;
    Testing::write_file(directory.path("file"), "");
    EXPECT_EQ(failed_start(directory.path("file/program")), both("20"));
}

TEST(FailedStart, OfAScriptWithoutItsInterpreterIsError2)
{
    const Testing::TemporaryDirectory directory;
    make_executable(directory.path("script"), "#!" + directory.path("missing") + "\n");
    EXPECT_EQ(failed_start(directory.path("script")), both("2"));
}

TEST(FailedStart, OfALinkIntoALoopIsError40)
{
    const Testing::TemporaryDirectory directory;
    Testing::make_link("loop", directory.path("loop"));
    EXPECT_EQ(failed_start(directory.path("loop")), both("40"));
}

TEST(FailedStart, WithAnArgumentThatIsTooLongIsError7)
{
    EXPECT_EQ(failed_start(acting_child(), { std::string(1 << 20, 'x') }), both("7"));
}

TEST(FailedStart, ForLackOfMemoryIsError12)
{
    const auto outcome = run_isolated([] {
        if (!Testing::fail_system_call(SYS_execve, ENOMEM)) {
            std::cout << "skip";
            return;
        }
        std::string error;
        std::cout << run_process(acting_child(), {}, "n", error) << error
                  << start_process(acting_child(), {}, "n", error) << error
                  << Testing::has_children();
    });
    if (outcome.out == "skip")
        GTEST_SKIP() << "system calls cannot be made to fail here";
    EXPECT_EQ(outcome.out, both("12") + "0");
}

// Programs are not searched for: a name alone is one of the working directory.
TEST(FailedStart, OfANameThatOnlyTheSearchPathKnowsIsError2)
{
    const Testing::TemporaryDirectory directory;
    EXPECT_EQ(failed_start("tavrobase_acting_child", {},
                  [&] {
                      std::filesystem::current_path(directory.path());
                      ::setenv("PATH", Testing::program_beside_this("").c_str(), 1);
                  }),
        both("2"));
}

namespace {

/// Result, error text and reports at debug level 2 of a run of the acting child.
std::string ran(
    const std::vector<std::string>& arguments, const std::string& level = "2",
    const std::function<void()>& prepare = [] {})
{
    const auto outcome = run_isolated([&] {
        Testing::set_arguments({ "-debug=" + level });
        prepare();
        const int before = Testing::open_descriptors();
        std::string error = "untouched";
        const bool result = run_process(acting_child(), arguments, "Vortik_Solver", error);
        std::cerr << (result ? "true " : "false ") << error
                  << (Testing::has_children() ? ", a child is left" : "")
                  << (Testing::open_descriptors() == before ? "" : ", a descriptor is left");
    });
    EXPECT_TRUE(outcome.exited && outcome.status == 0);
    EXPECT_EQ(outcome.out, "");
    return outcome.err;
}

} // namespace

TEST(RunProcess, AProgramThatSucceedsGivesTrueAndLeavesTheErrorTextAlone)
{
    EXPECT_EQ(ran({ "exit", "0" }), "Vortik_Solver ended with status 0\ntrue untouched");
}

TEST(RunProcess, ANonZeroStatusGivesTrueAndIsReportedAtLevelTwo)
{
    EXPECT_EQ(ran({ "exit", "3" }), "Vortik_Solver ended with status 3\ntrue untouched");
    EXPECT_EQ(ran({ "exit", "255" }), "Vortik_Solver ended with status 255\ntrue untouched");
    EXPECT_EQ(ran({ "exit", "3" }, "1"), "true untouched");
}

TEST(RunProcess, DeathByASignalGivesTrueAndIsReportedAtLevelTwo)
{
    EXPECT_EQ(ran({ "kill", "9" }), "Vortik_Solver was ended by signal 9\ntrue untouched");
    EXPECT_EQ(ran({ "kill", "15" }), "Vortik_Solver was ended by signal 15\ntrue untouched");
    EXPECT_EQ(ran({ "kill", "15" }, "1"), "true untouched");
}

TEST(RunProcess, OutputOfTheProgramIsThrownAway)
{
    EXPECT_EQ(ran({ "print", "out", "err" }, "0"), "true untouched");
    EXPECT_EQ(ran({ "flood", "1000000" }, "0"), "true untouched");
}

TEST(RunProcess, AnEmptyArgumentListGivesTheProgramAlone)
{
    EXPECT_EQ(ran({}), "Vortik_Solver ended with status 93\ntrue untouched"); // nothing to do
}

TEST(RunProcess, AProgramWhoseEndIsIgnoredGivesTrueWithItsStatusUnknown)
{
    EXPECT_EQ(ran({ "exit", "3" }, "2", [] { ::signal(SIGCHLD, SIG_IGN); }),
        "Vortik_Solver ended with unknown status\ntrue untouched");
}

TEST(RunProcess, ReturnsOnlyWhenTheProgramHasEndedThoughSignalsArrive)
{
    const Testing::TemporaryDirectory directory;
    const auto outcome = run_isolated([&] {
        Testing::start_interrupting();
        std::thread releasing([&] {
            while (Testing::interruptions() < 10)
                std::this_thread::sleep_for(std::chrono::milliseconds(1));
            Testing::write_file(directory.path("go"), "");
        });
        std::string error;
        const bool result
            = run_process(acting_child(), { "wait-for", directory.path("go") }, "n", error);
        std::cout << result << file_exists(directory.path("go")) << Testing::has_children();
        Testing::stop_interrupting();
        releasing.join();
    });
    EXPECT_EQ(outcome.out, "110");
}

TEST(RunProcess, AnotherChildOfOursIsLeftAlone)
{
    const auto outcome = run_isolated([] {
        const pid_t other = ::fork();
        if (other == 0)
            ::_exit(5);
        std::string error;
        int status = 0;
        std::cout << run_process(acting_child(), { "exit", "3" }, "n", error)
                  << (::waitpid(other, &status, 0) == other) << WEXITSTATUS(status);
    });
    EXPECT_EQ(outcome.out, "115");
}

// The system's own naming has no extension for programs, so none is added: a path that has one
// names just that file.
TEST(RunProcess, APathWithAnExtensionIsStartedAsItStands)
{
    const Testing::TemporaryDirectory directory;
    Testing::make_link(acting_child(), directory.path("child.exe"));
    std::string error;
    EXPECT_TRUE(run_process(directory.path("child.exe"), { "exit", "0" }, "n", error));
    EXPECT_FALSE(run_process(directory.path("child"), { "exit", "0" }, "n", error));
    EXPECT_EQ(error, "CreateProcess() failed!  ERROR #: 2\n");
}

TEST(RunProcess, AProgramWhosePathHasBlanksAndQuotesIsStarted)
{
    const Testing::TemporaryDirectory directory;
    const std::string path = directory.path("the \"best\" child's \xC3\xA9\nprogram");
    Testing::make_link(acting_child(), path);
    std::string error;
    EXPECT_TRUE(run_process(path, { "exit", "0" }, "n", error)) << error;
}

TEST(RunProcess, AScriptIsAProgram)
{
    const Testing::TemporaryDirectory directory;
    make_executable(directory.path("script"), "#!/bin/sh\necho ran > \"$1\"\n");
    std::string error;
    EXPECT_TRUE(run_process(directory.path("script"), { directory.path("file") }, "n", error));
    EXPECT_EQ(read_file(directory.path("file")), "ran\n");
}

TEST(StartProcess, ReturnsTheProcessIdWhileTheProgramRuns)
{
    const Testing::TemporaryDirectory directory;
    const auto outcome = run_isolated([&] {
        std::string error = "untouched";
        const int before = Testing::open_descriptors();
        const int pid
            = start_process(acting_child(), { "wait-for", directory.path("go") }, "n", error);
        int status = 0;
        std::cout << (::waitpid(pid, &status, WNOHANG) == 0) << (::kill(pid, 0) == 0) << error;
        Testing::write_file(directory.path("go"), "");
        std::cout << (::waitpid(pid, &status, 0) == pid) << WIFEXITED(status) << WEXITSTATUS(status)
                  << (Testing::open_descriptors() == before);
    });
    EXPECT_EQ(outcome.out, "11untouched1101");
}

TEST(StartProcess, ReportsNoEnd)
{
    const auto outcome = run_isolated([] {
        Testing::set_arguments({ "-debug=5" });
        std::string error;
        const int pid = start_process(acting_child(), { "exit", "3" }, "n", error);
        std::cout << (::waitpid(pid, nullptr, 0) == pid);
    });
    EXPECT_EQ(outcome.out, "1");
    EXPECT_EQ(outcome.err, "");
}
