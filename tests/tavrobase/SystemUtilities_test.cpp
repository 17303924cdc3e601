// SPDX-License-Identifier: Apache-2.0
#include "tavrobase/SystemUtilities.h"

#include "tests/support/FailingCalls.h"
#include "tests/support/Isolated.h"
#include "tests/support/Waiting.h"
#include "tests/tavrobase/Arguments.h"
#include "tests/tavrobase/ProcessSurroundings.h"

#include <gtest/gtest.h>

#include <array>
#include <cerrno>
#include <chrono>
#include <climits>
#include <cstdlib>
#include <ctime>
#include <functional>
#include <iostream>
#include <string>

#include <pwd.h>
#include <sched.h>
#include <sys/prctl.h>
#include <sys/syscall.h>
#include <unistd.h>

namespace {

using Testing::run_isolated;

constexpr const char* kSkip = "skip";

/// The user's name as a process sees it that acts for `user` though it belongs to another.
std::string name_acting_for(uid_t user)
{
    return run_isolated([&] {
        if (::seteuid(user) != 0) {
            std::cout << kSkip;
            return;
        }
        // A change of the user hides a process from the tools that look for leaks.
        ::prctl(PR_SET_DUMPABLE, 1, 0, 0, 0);
        std::cout << "[" << Tavro::GetUsername() << "]";
    }).out;
}

} // namespace

TEST(GetUsername, IsTheNameInTheUserDatabase)
{
    const passwd* entry = ::getpwuid(::geteuid());
    if (entry == nullptr)
        GTEST_SKIP() << "the user of this process has no name";
    EXPECT_EQ(Tavro::GetUsername(), entry->pw_name);
}

TEST(GetUsername, OfRootIsRoot)
{
    if (::geteuid() != 0)
        GTEST_SKIP() << "needs root";
    EXPECT_EQ(Tavro::GetUsername(), "root");
}

TEST(GetUsername, IsThatOfTheEffectiveUserWhateverTheEnvironmentSays)
{
    constexpr uid_t kNobody = 65534;
    const passwd* entry = ::getpwuid(kNobody);
    if (entry == nullptr || std::string(entry->pw_name) != "nobody")
        GTEST_SKIP() << "there is no user nobody here";
    const auto outcome = run_isolated([] {
        ::setenv("USER", "somebody", 1);
        ::setenv("LOGNAME", "somebody", 1);
        std::cout << name_acting_for(kNobody);
    });
    if (outcome.out == kSkip)
        GTEST_SKIP() << "needs root";
    EXPECT_EQ(outcome.out, "[nobody]");
}

TEST(GetUsername, OfAnUnknownUserIsEmpty)
{
    constexpr uid_t kUnknown = 3'987'654'321;
    if (::getpwuid(kUnknown) != nullptr)
        GTEST_SKIP() << "the user is known here";
    const std::string name = name_acting_for(kUnknown);
    if (name == kSkip)
        GTEST_SKIP() << "needs root";
    EXPECT_EQ(name, "[]");
}

TEST(GetHostname, IsTheNameOfTheMachine)
{
    const auto outcome = run_isolated([] {
        const std::string name = "rotor-test.example";
        if (::unshare(CLONE_NEWUTS) != 0 || ::sethostname(name.data(), name.size()) != 0)
            std::cout << kSkip;
        else
            std::cout << Tavro::GetHostname();
    });
    if (outcome.out == kSkip)
        GTEST_SKIP() << "a process cannot have a host name of its own here";
    EXPECT_EQ(outcome.out, "rotor-test.example");
}

TEST(GetHostname, MayHaveTheLongestNameOfTheSystem)
{
    const std::string longest(64, 'h');
    const auto outcome = run_isolated([&] {
        if (::unshare(CLONE_NEWUTS) != 0 || ::sethostname(longest.data(), longest.size()) != 0)
            std::cout << kSkip;
        else
            std::cout << Tavro::GetHostname();
    });
    if (outcome.out == kSkip)
        GTEST_SKIP() << "a process cannot have a host name of its own here";
    EXPECT_EQ(outcome.out, longest);
}

TEST(GetHostname, IsWhatTheSystemSays)
{
    std::array<char, 1000> name {};
    ASSERT_EQ(::gethostname(name.data(), name.size() - 1), 0);
    EXPECT_EQ(Tavro::GetHostname(), name.data());
}

namespace {

/// Result and reports of a query that fails, at a debug level.
Testing::Outcome failing_hostname(const std::string& level)
{
    return run_isolated([&] {
        Testing::set_arguments({ "-debug=" + level });
        if (Testing::fail_system_call(SYS_uname, EPERM))
            std::cout << Tavro::GetHostname();
        else
            std::cout << kSkip;
    });
}

} // namespace

TEST(GetHostname, IsUnknownAfterAReportIfTheSystemCannotTell)
{
    const auto outcome = failing_hostname("1");
    if (outcome.out == kSkip)
        GTEST_SKIP() << "system calls cannot be made to fail here";
    EXPECT_EQ(outcome.out, "Unknown");
    EXPECT_EQ(outcome.err, "Could not get hostname for this machine: Operation not permitted\n");
    EXPECT_EQ(failing_hostname("0").err, "");
}

TEST(GetHostname, IsTraced)
{
    const auto outcome = failing_hostname("5");
    if (outcome.out == kSkip)
        GTEST_SKIP() << "system calls cannot be made to fail here";
    EXPECT_EQ(outcome.err,
        "Entering GetHostname\n"
        "Could not get hostname for this machine: Operation not permitted\n"
        "Leaving GetHostname\n");
}

namespace {

/// Runs a sleep that is interrupted all the time; "whole" if it lasted, and was interrupted.
std::string interrupted_sleep(const std::function<void()>& sleep, std::chrono::milliseconds asked)
{
    return run_isolated([&] {
        Testing::start_interrupting();
        const auto start = std::chrono::steady_clock::now();
        sleep();
        const auto slept = std::chrono::steady_clock::now() - start;
        Testing::stop_interrupting();
        // Under the thread sanitizer the handler may come only with a later call.
        const bool interrupted = Testing::wait_until([] { return Testing::interruptions() > 0; });
        std::cout << (slept >= asked ? "whole" : "cut short")
                  << (interrupted ? "" : ", but never interrupted");
    }).out;
}

} // namespace

TEST(PortableSleep, LastsItsWholeSecondThoughSignalsArrive)
{
    EXPECT_EQ(interrupted_sleep([] { Tavro::PortableSleep(1); }, std::chrono::seconds(1)), "whole");
}

TEST(PortableSleep, MillisecondsLastWholeThoughSignalsArrive)
{
    EXPECT_EQ(
        interrupted_sleep([] { Tavro::PortableMilliSleep(150); }, std::chrono::milliseconds(150)),
        "whole");
}

TEST(PortableSleep, NoTimeAtAllReturns)
{
    Tavro::PortableSleep(0);
    Tavro::PortableMilliSleep(0);
}

TEST(BytesTo, KilobytesAre1024Bytes)
{
    EXPECT_EQ(Tavro::BytesToKilobytes(0), 0.0F);
    EXPECT_EQ(Tavro::BytesToKilobytes(1), 0.0009765625F);
    EXPECT_EQ(Tavro::BytesToKilobytes(1536), 1.5F);
}

TEST(BytesTo, MegabytesAre1024Kilobytes)
{
    EXPECT_EQ(Tavro::BytesToMegabytes(1048576), 1.0F);
    EXPECT_EQ(Tavro::BytesToMegabytes(2621440), 2.5F);
}

TEST(BytesTo, GigabytesAre1024Megabytes)
{
    EXPECT_EQ(Tavro::BytesToGigabytes(1073741824), 1.0F);
    EXPECT_EQ(Tavro::BytesToGigabytes(805306368), 0.75F);
}

TEST(BytesTo, TerabytesAre1024Gigabytes)
{
    EXPECT_EQ(Tavro::BytesToTerabytes(1099511627776), 1.0F);
    EXPECT_EQ(Tavro::BytesToTerabytes(3298534883328), 3.0F);
    EXPECT_EQ(Tavro::BytesToTerabytes(549755813888), 0.5F);
    EXPECT_EQ(Tavro::BytesToTerabytes(ULONG_MAX), 16777216.0F); // 2 to the 24th
}

namespace {

struct Automatic {
    float value;
    int exponent;
    bool operator==(const Automatic&) const = default;
};

Automatic automatic(unsigned long bytes)
{
    int exponent = -1;
    const float value = Tavro::BytesToAuto(bytes, exponent);
    return { value, exponent };
}

} // namespace

TEST(BytesToAuto, Below1024BytesStayBytes)
{
    EXPECT_EQ(automatic(0), (Automatic { 0.0F, 0 }));
    EXPECT_EQ(automatic(1023), (Automatic { 1023.0F, 0 }));
}

TEST(BytesToAuto, From1024BytesAreKilobytes)
{
    EXPECT_EQ(automatic(1024), (Automatic { 1.0F, 3 }));
    EXPECT_EQ(automatic(1048575), (Automatic { 1023.9990234375F, 3 })); // 1024 - 1/1024
}

TEST(BytesToAuto, From1024SquaredAreMegabytes)
{
    EXPECT_EQ(automatic(1048576), (Automatic { 1.0F, 6 }));
    EXPECT_EQ(automatic(1073741823), (Automatic { 1024.0F, 6 })); // nearest float
}

TEST(BytesToAuto, From1024CubedAreGigabytes)
{
    EXPECT_EQ(automatic(1073741824), (Automatic { 1.0F, 9 }));
    EXPECT_EQ(automatic(1099511627775), (Automatic { 1024.0F, 9 })); // nearest float
}

TEST(BytesToAuto, From1024ToTheFourthAreTerabytes)
{
    EXPECT_EQ(automatic(1099511627776), (Automatic { 1.0F, 12 }));
    EXPECT_EQ(automatic(1125899906842624), (Automatic { 1024.0F, 12 })); // no larger unit
    EXPECT_EQ(automatic(ULONG_MAX), (Automatic { 16777216.0F, 12 }));
}

TEST(RealtimeSinceLastCall, IsTheWholeClockAtFirstAndThenTheSecondsBetween)
{
    const auto outcome = run_isolated([] {
        const auto before = std::time(nullptr);
        const int first = Tavro::SYS_REALTIME_LC_S();
        const auto between = std::time(nullptr);
        Tavro::PortableMilliSleep(1100);
        const int second = Tavro::SYS_REALTIME_LC_S();
        const auto after = std::time(nullptr);
        std::cout << (first >= before) << (first <= between) << (second >= 1)
                  << (first + second <= after) << "\n";
    });
    EXPECT_EQ(outcome.out, "1111\n");
}
