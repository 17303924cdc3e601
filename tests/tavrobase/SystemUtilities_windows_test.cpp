// SPDX-License-Identifier: Apache-2.0
// Who and where the process is, and figures of the system, on Windows.
#include "tavrobase/SystemUtilities.h"

#include "tests/support/Environment.h"
#include "tests/support/Isolated.h"

#include <gtest/gtest.h>

#include <array>
#include <chrono>
#include <climits>
#include <cstdlib>
#include <ctime>
#include <fstream>
#include <iostream>
#include <string>

#include <winsock2.h>

#include <windows.h>

namespace {

using Testing::run_isolated;

} // namespace

TEST(GetUsername, IsThatOfTheSession)
{
    // As the wide call tells it; the test needs a name of plain letters.
    std::array<wchar_t, 1001> wide {};
    auto size = static_cast<DWORD>(wide.size());
    ASSERT_NE(::GetUserNameW(wide.data(), &size), 0);
    std::string expected;
    for (const wchar_t letter : std::wstring(wide.data())) {
        if (letter > 127)
            GTEST_SKIP() << "the user's name has other letters";
        expected += static_cast<char>(letter);
    }
    EXPECT_EQ(Tavro::GetUsername(), expected);
    EXPECT_NE(expected, "");
}

TEST(GetUsername, DoesNotComeFromTheEnvironment)
{
    const std::string name = Tavro::GetUsername();
    const auto outcome = run_isolated([] {
        Testing::put_variable("USERNAME", "somebody");
        std::cout << Tavro::GetUsername();
    });
    EXPECT_EQ(outcome.out, name);
}

TEST(GetHostname, IsWhatTheNetworkFunctionsSay)
{
    WSADATA data {};
    ASSERT_EQ(::WSAStartup(MAKEWORD(2, 2), &data), 0);
    std::array<char, 1000> name {};
    ASSERT_EQ(::gethostname(name.data(), static_cast<int>(name.size())), 0);
    ::WSACleanup();
    EXPECT_EQ(Tavro::GetHostname(), name.data());
}

TEST(PortableSleep, LastsItsTime)
{
    using Clock = std::chrono::steady_clock;
    const auto start = Clock::now();
    Tavro::PortableMilliSleep(150);
    Tavro::PortableMilliSleep(0);
    Tavro::PortableSleep(0);
    // The clock of the sleep may be a tick of 16 ms coarser than the other.
    EXPECT_GE(Clock::now() - start, std::chrono::milliseconds(130));
}

// A long number has 32 bits here, so terabytes are never reached.
TEST(BytesTo, OfTheLargestNumberAreNextToTheNextUnit)
{
    EXPECT_EQ(Tavro::BytesToKilobytes(1536), 1.5F);
    EXPECT_EQ(Tavro::BytesToMegabytes(2621440), 2.5F);
    EXPECT_EQ(Tavro::BytesToGigabytes(805306368), 0.75F);
    EXPECT_EQ(Tavro::BytesToGigabytes(ULONG_MAX), 4.0F); // nearest float to 4 - 2^-30
    EXPECT_EQ(Tavro::BytesToTerabytes(ULONG_MAX), 0.00390625F); // 4 / 1024
}

TEST(BytesToAuto, PicksTheLargestUnitThatGivesAtLeastOne)
{
    struct Case {
        unsigned long bytes;
        float value;
        int exponent;
    };
    for (const Case& one : { Case { 0, 0.0F, 0 }, Case { 1023, 1023.0F, 0 }, Case { 1024, 1.0F, 3 },
             Case { 1048575, 1023.9990234375F, 3 }, Case { 1048576, 1.0F, 6 },
             Case { 1073741823, 1024.0F, 6 }, Case { 1073741824, 1.0F, 9 },
             Case { ULONG_MAX, 4.0F, 9 } }) {
        int exponent = -1;
        EXPECT_EQ(Tavro::BytesToAuto(one.bytes, exponent), one.value) << one.bytes;
        EXPECT_EQ(exponent, one.exponent) << one.bytes;
    }
}

TEST(MemoryFigures, FailWithoutTheFilesOfAnotherSystem)
{
    if (std::ifstream("/proc/meminfo"))
        GTEST_SKIP() << "a system that has these files lies underneath";
    Tavro::SystemData system {};
    EXPECT_FALSE(Tavro::GetSystemData(system));
    Tavro::ProcessData process {};
    EXPECT_FALSE(Tavro::GetProcessData(1, process));
    for (const auto query : { Tavro::GetFreeSwapSpace, Tavro::GetUsedSwapSpace,
             Tavro::GetTotalSwapSpace, Tavro::GetFreePhysicalMemory, Tavro::GetUsedPhysicalMemory,
             Tavro::GetTotalPhysicalMemory, Tavro::GetPageFaultsSinceLastCall }) {
        bool success = true;
        EXPECT_EQ(query(success), 0U);
        EXPECT_FALSE(success);
    }
    bool success = true;
    EXPECT_EQ(Tavro::GetPhysicalMemoryUsed(success), 0U);
    EXPECT_FALSE(success);
    EXPECT_EQ(Tavro::SYS_PMUSED_MB(), -1.0);
    EXPECT_EQ(Tavro::SYS_VMSIZE_MB(), -1.0);
    EXPECT_EQ(Tavro::SYS_PAGEFLT_LC_MB(), -1);
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
                  << (first + second <= after);
    });
    EXPECT_EQ(outcome.out, "1111");
}
