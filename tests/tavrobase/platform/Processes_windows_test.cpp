// SPDX-License-Identifier: Apache-2.0
#include "tavrobase/ProcessExecution.h"
#include "tavrobase/platform/Processes.h"
#include "tests/support/Environment.h"
#include "tests/support/Files.h"
#include "tests/support/Programs.h"
#include "tests/support/Scopes.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include <windows.h>

namespace Testing {

namespace {

using Words = std::vector<std::string>;

std::string child() { return program_beside_this("platform_windows_child"); }

/// What the child writes to its standard output.
std::string output_of(const Words& words, const std::string& program = child())
{
    std::string out;
    std::string err;
    std::string error;
    EXPECT_TRUE(Tavro::run_process(Tavro::FilePath(program), words, "child", error, out, err));
    EXPECT_EQ(error, "");
    return out;
}

DWORD open_handles()
{
    DWORD count = 0;
    EXPECT_NE(::GetProcessHandleCount(::GetCurrentProcess(), &count), 0);
    return count;
}

TEST(ProcessExecution, NoArgumentsGiveOnlyTheQuotedProgramWithItsEnding)
{
    EXPECT_EQ(output_of({}), "\"" + child() + ".exe\"");
}

TEST(ProcessExecution, EachArgumentIsQuotedAndNothingInItIsEscaped)
{
    EXPECT_EQ(output_of({ "x", "a b", "", "q\"q" }),
        "\"" + child() + ".exe\" \"x\" \"a b\" \"\" \"q\"q\"");
}

TEST(ProcessExecution, ArgumentWithBlanksArrivesAsOne)
{
    EXPECT_EQ(output_of({ "print", "a b  c" }), "a b  c");
}

TEST(ProcessExecution, ProgramNamedWithItsEndingGetsItTwiceAndFailsToStart)
{
    std::string error;
    EXPECT_FALSE(
        Tavro::run_process(Tavro::FilePath(child() + ".exe"), { "exit", "0" }, "child", error));
    EXPECT_EQ(error, "CreateProcess() failed!  ERROR #: 2\n"); // not found
}

TEST(ProcessExecution, FailedStartOfEachFormIsReportedAndLeavesNoHandles)
{
    const Tavro::FilePath nowhere("C:/nowhere/program");
    std::string error;
    (void)Tavro::run_process(nowhere, {}, "x", error); // what the system opens for itself
    const DWORD before = open_handles();
    error.clear();
    EXPECT_FALSE(Tavro::run_process(nowhere, {}, "x", error));
    EXPECT_TRUE(error == "CreateProcess() failed!  ERROR #: 2\n"
        || error == "CreateProcess() failed!  ERROR #: 3\n")
        << error; // no such file, or no such path
    error.clear();
    EXPECT_EQ(Tavro::start_process(nowhere, {}, "x", error), -1);
    EXPECT_TRUE(error.starts_with("CreateProcess() failed!  ERROR #: ")) << error;
    error.clear();
    std::string out = "old";
    std::string err = "old";
    EXPECT_FALSE(Tavro::run_process(nowhere, {}, "x", error, out, err));
    EXPECT_TRUE(error.starts_with("CreateProcess() failed!  ERROR #: ")) << error;
    EXPECT_EQ(out + err, "");
    EXPECT_EQ(open_handles(), before);
}

TEST(ProcessExecution, FinishedRunsLeaveNoHandles)
{
    std::string error;
    EXPECT_TRUE(Tavro::run_process(Tavro::FilePath(child()), { "exit", "0" }, "child", error));
    (void)output_of({ "print", "x" });
    const DWORD before = open_handles();
    for (int turn = 0; turn < 3; ++turn) {
        EXPECT_TRUE(Tavro::run_process(Tavro::FilePath(child()), { "exit", "0" }, "child", error));
        (void)output_of({ "print", "x" });
    }
    EXPECT_EQ(open_handles(), before);
}

TEST(ProcessExecution, ChildThatFailsIsAStartedOne)
{
    std::string error;
    for (const char* status : { "1", "259", "-1" }) // 259 is what the system says of a living one
        EXPECT_TRUE(
            Tavro::run_process(Tavro::FilePath(child()), { "exit", status }, "child", error));
    std::string out;
    std::string err;
    EXPECT_TRUE(
        Tavro::run_process(Tavro::FilePath(child()), { "exit", "259" }, "child", error, out, err));
    EXPECT_EQ(error, "");
}

TEST(ProcessExecution, StartReturnsTheNumberOfTheProcess)
{
    std::string error;
    const int pid = Tavro::start_process(Tavro::FilePath(child()), { "exit", "7" }, "child", error);
    EXPECT_GT(pid, 0);
    const auto end = Tavro::Platform::wait_for_child(pid);
    EXPECT_EQ(end.kind, Tavro::Platform::ChildEnd::Kind::Exited);
    EXPECT_EQ(end.value, 7);
    // A child is waited for once.
    EXPECT_EQ(Tavro::Platform::wait_for_child(pid).kind, Tavro::Platform::ChildEnd::Kind::Unknown);
}

TEST(ProcessExecution, ChildHasTheDirectoryAndTheEnvironmentOfItsStarter)
{
    const TemporaryDirectory directory;
    const WorkingDirectoryScope scope(directory.path());
    const EnvironmentScope variable("VORTIK_TEST_WORD", "given");
    EXPECT_EQ(output_of({ "directory" }), directory.path());
    EXPECT_EQ(output_of({ "variable", "VORTIK_TEST_WORD" }), "given");
}

TEST(CapturedProcess, BothStreamsAreCollectedEachByItself)
{
    std::string out = "old";
    std::string err = "old";
    std::string error;
    EXPECT_TRUE(Tavro::run_process(
        Tavro::FilePath(child()), { "print", "one", "other" }, "child", error, out, err));
    EXPECT_EQ(out, "one");
    EXPECT_EQ(err, "other");
}

TEST(CapturedProcess, BytesOfZeroAreKept)
{
    std::string out;
    std::string err;
    std::string error;
    EXPECT_TRUE(Tavro::run_process(Tavro::FilePath(child()), { "nul" }, "child", error, out, err));
    EXPECT_EQ(out, std::string("a\0b\0", 4));
    EXPECT_EQ(err, std::string("\0e", 2));
}

TEST(CapturedProcess, MoreThanThePipesHoldIsCollectedWhole)
{
    std::string out;
    std::string err;
    std::string error;
    EXPECT_TRUE(Tavro::run_process(
        Tavro::FilePath(child()), { "flood", "300000" }, "child", error, out, err));
    ASSERT_EQ(out.size(), 300000U);
    ASSERT_EQ(err.size(), 300000U);
    for (std::size_t i = 0; i < out.size(); ++i) {
        ASSERT_EQ(out[i], static_cast<char>('a' + i / 1000 % 26)) << i;
        ASSERT_EQ(err[i], static_cast<char>('A' + i / 1000 % 26)) << i;
    }
}

TEST(Processes, PathOfTheOwnProgramHasSlashesAndItsEnding)
{
    EXPECT_EQ(Tavro::Platform::executable_path(), own_program());
    EXPECT_TRUE(own_program().ends_with(".exe"));
    EXPECT_EQ(Tavro::Platform::program_file("C:/a/TreeGen"), "C:/a/TreeGen.exe");
}

} // namespace

} // namespace Testing
