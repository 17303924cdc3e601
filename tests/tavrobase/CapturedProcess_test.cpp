// SPDX-License-Identifier: Apache-2.0
// The form of run_process that collects what the program writes.
#include "tavrobase/ProcessExecution.h"

#include "tests/support/FailingCalls.h"
#include "tests/support/Files.h"
#include "tests/support/Isolated.h"
#include "tests/support/Waiting.h"
#include "tests/tavrobase/Arguments.h"
#include "tests/tavrobase/ProcessSurroundings.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cerrno>
#include <csignal>
#include <cstdlib>
#include <functional>
#include <iostream>
#include <string>
#include <vector>

#include <fcntl.h>
#include <sys/resource.h>
#include <sys/syscall.h>
#include <unistd.h>

namespace {

using Tavro::run_process;
using Testing::acting_child;
using Testing::read_file;
using Testing::reporting_child;
using Testing::run_isolated;

/// What a run gave.
struct Captured {
    bool result = false;
    std::string error = "untouched";
    std::string out = "from before";
    std::string err = "from before too";
};

Captured capture(const std::string& program, const std::vector<std::string>& arguments)
{
    Captured captured;
    captured.result = run_process(Tavro::FilePath(program), arguments, "the child", captured.error,
        captured.out, captured.err);
    return captured;
}

Captured capture(const std::vector<std::string>& arguments)
{
    return capture(acting_child(), arguments);
}

/// Letters of the alphabet over and over, as the acting child writes them.
std::string alphabet(char first, std::size_t count)
{
    std::string text(count, ' ');
    for (std::size_t i = 0; i < count; ++i)
        text[i] = static_cast<char>(first + static_cast<char>(i % 26));
    return text;
}

void print(const Captured& captured)
{
    std::cout << captured.result << "|" << captured.error << "|" << captured.out << "|"
              << captured.err;
}

} // namespace

TEST(CapturedProcess, BothStreamsAreCollectedIntoTextsThatAreEmptiedFirst)
{
    const Captured captured = capture({ "print", "to out\n", "to err\n" });
    EXPECT_TRUE(captured.result);
    EXPECT_EQ(captured.error, "untouched");
    EXPECT_EQ(captured.out, "to out\n");
    EXPECT_EQ(captured.err, "to err\n");
}

TEST(CapturedProcess, ASilentProgramGivesEmptyTexts)
{
    const Captured captured = capture({ "exit", "0" });
    EXPECT_TRUE(captured.result);
    EXPECT_EQ(captured.out, "");
    EXPECT_EQ(captured.err, "");
}

TEST(CapturedProcess, NulBytesAreKept)
{
    const Captured captured = capture({ "nul" });
    EXPECT_EQ(captured.out, std::string("a\0b\0", 4));
    EXPECT_EQ(captured.err, std::string("\0e", 2));
}

TEST(CapturedProcess, MegabytesOnBothStreamsArriveWhole)
{
    constexpr std::size_t kSize = 5'000'000;
    const Captured captured = capture({ "flood", std::to_string(kSize) });
    EXPECT_TRUE(captured.result);
    EXPECT_TRUE(captured.out == alphabet('a', kSize)) << captured.out.size();
    EXPECT_TRUE(captured.err == alphabet('A', kSize)) << captured.err.size();
}

TEST(CapturedProcess, MegabytesOnOneStreamBeforeTheOtherArriveWhole)
{
    constexpr std::size_t kSize = 3'000'000;
    const Captured captured = capture({ "errors-first", std::to_string(kSize) });
    EXPECT_TRUE(captured.result);
    EXPECT_TRUE(captured.out == alphabet('a', kSize)) << captured.out.size();
    EXPECT_TRUE(captured.err == alphabet('A', kSize)) << captured.err.size();
}

// Around sizes at which the block of a reader or the room in a pipe ends.
TEST(CapturedProcess, OutputOfAnySizeArrivesWhole)
{
    for (const std::size_t size :
        { 1U, 1022U, 1023U, 1024U, 2046U, 4096U, 65535U, 65536U, 65537U }) {
        const Captured captured = capture({ "flood", std::to_string(size) });
        EXPECT_TRUE(captured.out == alphabet('a', size)) << size << " " << captured.out.size();
        EXPECT_TRUE(captured.err == alphabet('A', size)) << size << " " << captured.err.size();
    }
}

TEST(CapturedProcess, ArgumentsArriveAsTheyAreBehindTheName)
{
    const Testing::TemporaryDirectory directory;
    const auto outcome = run_isolated([&] {
        ::setenv("VORTIK_REPORT", directory.path().c_str(), 1);
        std::cout << capture(reporting_child(), { "a b", "", "\"q\"", "x\ny" }).result;
    });
    EXPECT_EQ(outcome.out, "1");
    EXPECT_EQ(read_file(directory.path("arguments")),
        "0:[the child]\n1:[a b]\n2:[]\n3:[\"q\"]\n4:[x\ny]\n");
}

TEST(CapturedProcess, ANonZeroStatusGivesTrueAndIsReportedAtLevelTwo)
{
    const auto outcome = run_isolated([] {
        Testing::set_arguments({ "-debug=2" });
        std::cout << capture({ "exit", "3" }).result << capture({ "kill", "9" }).result
                  << capture({ "silent-exit", "4" }).result << Testing::has_children();
    });
    EXPECT_EQ(outcome.out, "1110");
    EXPECT_EQ(outcome.err,
        "the child ended with status 3\n"
        "the child was ended by signal 9\n"
        "the child ended with status 4\n");
}

TEST(CapturedProcess, TheProgramReadsOurStandardInput)
{
    const Testing::TemporaryDirectory directory;
    Testing::write_file(directory.path("input"), "some words\nfor the child");
    const auto outcome = run_isolated([&] {
        const int input = ::open(directory.path("input").c_str(), O_RDONLY | O_CLOEXEC);
        if (input < 0 || ::dup2(input, STDIN_FILENO) < 0)
            std::abort();
        print(capture({ "echo" }));
    });
    EXPECT_EQ(outcome.out, "1|untouched|some words\nfor the child|");
}

TEST(CapturedProcess, TheProgramHasNoDescriptorOfOursBesidesItsStreams)
{
    const Testing::TemporaryDirectory directory;
    const auto outcome = run_isolated([&] {
        const int input = ::open("/dev/null", O_RDONLY);
        if (::dup2(input, STDIN_FILENO) < 0)
            std::abort();
        Testing::take_descriptors_below(100);
        ::setenv("VORTIK_REPORT", directory.path().c_str(), 1);
        std::cout << capture(reporting_child(), {}).result;
    });
    EXPECT_EQ(outcome.out, "1");
    const std::string descriptors = read_file(directory.path("descriptors"));
    EXPECT_EQ(descriptors.find("0 /dev/null read\n1 pipe:["), 0U) << descriptors;
    EXPECT_EQ(std::count(descriptors.begin(), descriptors.end(), '\n'), 3) << descriptors;
}

TEST(CapturedProcess, NothingIsLeftBehind)
{
    const auto outcome = run_isolated([] {
        const int before = Testing::open_descriptors();
        (void)capture({ "print", "a", "b" }); // what is left is looked at
        (void)capture({ "flood", "100000" });
        (void)capture("/nowhere", {});
        std::cout << Testing::open_descriptors() - before << Testing::has_children();
    });
    EXPECT_EQ(outcome.out, "00");
}

TEST(CapturedProcess, AGrandchildThatHoldsTheStreamsIsNotWaitedFor)
{
    const Testing::TemporaryDirectory directory;
    const Captured captured = capture({ "leave-grandchild", directory.path() });
    // Only now may it go on: had it been waited for, it would have given up by itself.
    Testing::write_file(directory.path("release"), "");
    EXPECT_TRUE(captured.result);
    EXPECT_EQ(captured.out, "from the child");
    const auto exists
        = [&](const char* name) { return Testing::file_exists(directory.path(name)); };
    EXPECT_TRUE(Testing::wait_until([&] { return exists("released") || exists("gave-up"); }));
    EXPECT_FALSE(exists("gave-up"));
}

TEST(CapturedProcess, SignalsThatArriveMeanwhileDoNoHarm)
{
    const auto outcome = run_isolated([] {
        Testing::start_interrupting();
        std::size_t lost = 0;
        for (int i = 0; i < 5; ++i) {
            const Captured captured = capture({ "flood", "300000" });
            lost += captured.result && captured.out == alphabet('a', 300000)
                    && captured.err == alphabet('A', 300000)
                ? 0U
                : 1U;
        }
        Testing::stop_interrupting();
        std::cout << lost << Testing::has_children();
    });
    EXPECT_EQ(outcome.out, "00");
}

namespace {

/// What a capture gives in a process that has closed some of its standard streams.
std::string captured_without(const std::vector<int>& streams, const std::vector<std::string>& act)
{
    const Testing::TemporaryDirectory directory;
    const auto outcome = run_isolated([&] {
        for (const int stream : streams)
            ::close(stream);
        const Captured captured = capture(act);
        Testing::write_file(directory.path("result"),
            (captured.result ? "true|" : "false|") + captured.error + "|" + captured.out + "|"
                + captured.err);
    });
    EXPECT_TRUE(outcome.exited && outcome.status == 0);
    EXPECT_EQ(outcome.out + outcome.err, "");
    return read_file(directory.path("result"));
}

} // namespace

TEST(CapturedProcess, ACallerWithoutStandardStreamsGetsTheOutputAllTheSame)
{
    const std::string expected = "true|untouched|to out|to err";
    const std::vector<std::string> act { "print", "to out", "to err" };
    EXPECT_EQ(captured_without({ 0, 1, 2 }, act), expected);
    EXPECT_EQ(captured_without({ 0 }, act), expected);
    EXPECT_EQ(captured_without({ 1 }, act), expected);
    EXPECT_EQ(captured_without({ 2 }, act), expected);
    EXPECT_EQ(captured_without({ 0, 1 }, act), expected);
    EXPECT_EQ(captured_without({ 0, 2 }, act), expected);
    EXPECT_EQ(captured_without({ 1, 2 }, act), expected);
}

TEST(CapturedProcess, ACallerWithoutStandardInputGivesNoneToTheProgram)
{
    EXPECT_EQ(captured_without({ 0 }, { "echo" }), "true|untouched|<closed>|");
}

namespace {

constexpr const char* kSkip = "skip";
constexpr int kFirst = 40; // number of the first pipe's read end in these tests; then 41 to 43

/// A capture that is made to fail by `prepare`; `kSkip` where that is not possible. Descriptors
/// below `kFirst` are taken, so that the pipes get known numbers, which no child ever has.
std::string failed_capture(const std::function<bool()>& prepare,
    const std::vector<std::string>& act = { "print", "a", "b" },
    const std::string& program = acting_child())
{
    const auto outcome = run_isolated([&] {
        Testing::take_descriptors_below(kFirst);
        rlimit limit {};
        if (::getrlimit(RLIMIT_NOFILE, &limit) != 0 || !prepare()) {
            std::cout << kSkip;
            return;
        }
        const Captured captured = capture(program, act);
        ::setrlimit(RLIMIT_NOFILE, &limit);
        print(captured);
        // With nothing left open, the numbers that the pipes had are free again.
        std::cout << "|";
        for (int i = 0; i < 4; ++i)
            std::cout << ::open("/dev/null", O_RDONLY) - kFirst;
    });
    EXPECT_TRUE(outcome.exited && outcome.status == 0) << outcome.err;
    return outcome.out;
}

bool limit_descriptors(rlim_t count)
{
    rlimit limit {};
    if (::getrlimit(RLIMIT_NOFILE, &limit) != 0)
        return false;
    limit.rlim_cur = count;
    return ::setrlimit(RLIMIT_NOFILE, &limit) == 0;
}

#define SKIP_IF_IMPOSSIBLE(text)                                                                   \
    if ((text) == kSkip)                                                                           \
    GTEST_SKIP() << "system calls cannot be made to fail here"

} // namespace

// The texts that were there are emptied, and no descriptor is left.
TEST(FailedCapture, WithoutDescriptorsTheFirstPipeFails)
{
    const std::string text = failed_capture([] { return limit_descriptors(kFirst); });
    EXPECT_EQ(text, "0|StdOut CreatePipe() failed!  ERROR #: 24\n|||0123");
}

TEST(FailedCapture, WithDescriptorsForOnePipeTheSecondFails)
{
    const std::string text = failed_capture([] { return limit_descriptors(kFirst + 2); });
    EXPECT_EQ(text, "0|StdError CreatePipe() failed!  ERROR #: 24\n|||0123");
}

TEST(FailedCapture, TheReadEndOfTheOutputCannotBePrepared)
{
    const std::string text
        = failed_capture([] { return Testing::fail_system_call(SYS_fcntl, EPERM, 0, kFirst); });
    SKIP_IF_IMPOSSIBLE(text);
    EXPECT_EQ(text, "0|StdOut SetHandleInformation() failed!  ERROR #: 1\n|||0123");
}

TEST(FailedCapture, TheReadEndOfTheErrorsCannotBePrepared)
{
    const std::string text
        = failed_capture([] { return Testing::fail_system_call(SYS_fcntl, EPERM, 0, kFirst + 2); });
    SKIP_IF_IMPOSSIBLE(text);
    EXPECT_EQ(text, "0|StdError SetHandleInformation() failed!  ERROR #: 1\n|||0123");
}

TEST(FailedCapture, TheProgramCannotBeStarted)
{
    const Testing::TemporaryDirectory directory;
    const auto always = [] { return true; };
    EXPECT_EQ(failed_capture(always, {}, directory.path("missing")),
        "0|CreateProcess() failed!  ERROR #: 2\n|||0123");
    EXPECT_EQ(failed_capture(always, {}, directory.path()),
        "0|CreateProcess() failed!  ERROR #: 13\n|||0123");
}

TEST(FailedCapture, TheOutputCannotBeRead)
{
    const std::string text
        = failed_capture([] { return Testing::fail_system_call(SYS_read, EIO, 0, kFirst); });
    SKIP_IF_IMPOSSIBLE(text);
    EXPECT_EQ(text.substr(0, text.find('\n')), "0|StdOut ReadFile() failed!  ERROR #: 5");
    EXPECT_TRUE(text.ends_with("|0123")) << "a descriptor is left: " << text;
}

TEST(FailedCapture, TheErrorsCannotBeRead)
{
    const std::string text
        = failed_capture([] { return Testing::fail_system_call(SYS_read, EIO, 0, kFirst + 2); });
    SKIP_IF_IMPOSSIBLE(text);
    EXPECT_EQ(text.substr(0, text.find('\n')), "0|StdError ReadFile() failed!  ERROR #: 5");
    EXPECT_TRUE(text.ends_with("|0123")) << "a descriptor is left: " << text;
}
