// SPDX-License-Identifier: Apache-2.0
#include "tavrobase/SystemUtilities.h"

#include "tests/support/Files.h"
#include "tests/support/Isolated.h"
#include "tests/support/Surroundings.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <fstream>
#include <iostream>
#include <limits>
#include <sstream>
#include <string>

#include <sys/mman.h>
#include <sys/mount.h>
#include <unistd.h>

namespace {

using Tavro::ProcessData;
using Tavro::SystemData;
using Testing::run_isolated;

constexpr const char* kSkip = "skip";

constexpr SystemData kSystem { 91, 92, 93, 94, 95, 96 };
constexpr ProcessData kProcess { 91, 92, 93 };

std::string system_figures(const std::string& meminfo)
{
    std::istringstream stream(meminfo);
    SystemData data = kSystem;
    std::ostringstream text;
    text << Tavro::ParseSystemData(stream, data) << ": " << data.totalPhysicalMemory << " "
         << data.usedPhysicalMemory << " " << data.freePhysicalMemory << ", " << data.totalSwap
         << " " << data.usedSwap << " " << data.freeSwap;
    return text.str();
}

std::string process_figures(const std::string& stat)
{
    std::istringstream stream(stat);
    ProcessData data = kProcess;
    std::ostringstream text;
    text << Tavro::ParseProcessData(stream, data) << ": " << data.physicalMemoryUsed << " "
         << data.virtualMemorySize << " " << data.pageFaults;
    return text.str();
}

constexpr const char* kSystemLeftAlone = "0: 91 92 93, 94 95 96";
constexpr const char* kProcessLeftAlone = "0: 91 92 93";

} // namespace

TEST(SystemDataLayout, IsSixFieldsOf32Bits)
{
    EXPECT_EQ(sizeof(SystemData), 24U);
    EXPECT_EQ(offsetof(SystemData, totalPhysicalMemory), 0U);
    EXPECT_EQ(offsetof(SystemData, usedPhysicalMemory), 4U);
    EXPECT_EQ(offsetof(SystemData, freePhysicalMemory), 8U);
    EXPECT_EQ(offsetof(SystemData, totalSwap), 12U);
    EXPECT_EQ(offsetof(SystemData, usedSwap), 16U);
    EXPECT_EQ(offsetof(SystemData, freeSwap), 20U);
}

TEST(ProcessDataLayout, IsThreeFieldsOf32Bits)
{
    EXPECT_EQ(sizeof(ProcessData), 12U);
    EXPECT_EQ(offsetof(ProcessData, physicalMemoryUsed), 0U);
    EXPECT_EQ(offsetof(ProcessData, virtualMemorySize), 4U);
    EXPECT_EQ(offsetof(ProcessData, pageFaults), 8U);
}

// The first two numbers, and those behind six others; used is total without free.
TEST(SystemFigures, AreTakenByTheirPlaceInTheFile)
{
    EXPECT_EQ(system_figures("MemTotal:       16316412 kB\n"
                             "MemFree:         1234567 kB\n"
                             "Buffers:          300000 kB\n"
                             "Cached:          4000000 kB\n"
                             "SwapCached:            5 kB\n"
                             "Active:          6000000 kB\n"
                             "Inactive:        7000000 kB\n"
                             "HighTotal:             8 kB\n"
                             "SwapTotal:       2097148 kB\n"
                             "SwapFree:        2000000 kB\n"
                             "Dirty:               100 kB\n"),
        "1: 16316412 15081845 1234567, 2097148 97148 2000000");
}

TEST(SystemFigures, DoNotDependOnTheNames)
{
    EXPECT_EQ(system_figures("a 100 x b 40 x c 1 x d 2 x e 3 x f 4 x g 5 x h 6 x i 70 x j 20 x"),
        "1: 100 60 40, 70 50 20");
}

TEST(SystemFigures, OfAFileThatEndsEarlyAreAFailure)
{
    EXPECT_EQ(system_figures(""), kSystemLeftAlone);
    EXPECT_EQ(system_figures("MemTotal: 100 kB\nMemFree: 40 kB\n"), kSystemLeftAlone);
    EXPECT_EQ(system_figures("a 100 x b 40 x c 1 x d 2 x e 3 x f 4 x g 5 x h 6 x i 70 x j"),
        kSystemLeftAlone);
}

TEST(SystemFigures, OfAFileWithWordsForNumbersAreAFailure)
{
    EXPECT_EQ(system_figures("MemTotal: much kB\nMemFree: 40 kB\n"), kSystemLeftAlone);
}

TEST(SystemFigures, Beyond32BitsAreTheHighestNumber)
{
    EXPECT_EQ(system_figures("a 4294967296 x b 1 x c 1 x d 2 x e 3 x f 4 x g 5 x h 6 x "
                             "i 9999999999999 x j 4294967295 x"),
        "1: 4294967295 4294967294 1, 4294967295 0 4294967295");
}

namespace {

/// A "stat" line whose fields from the third on hold their own numbers.
std::string stat_line(const std::string& name)
{
    return "1234 (" + name
        + ") S 4 5 6 7 8 9 10 11 12 13 14 15 16 17 18 19 20 21 22 23 24 25 26 27 28\n";
}

constexpr const char* kStatFigures = "1: 98304 23 12"; // 24 pages of 4096 bytes

} // namespace

TEST(ProcessFigures, AreTheTwelfthTheTwentyThirdAndTheTwentyFourthField)
{
    EXPECT_EQ(process_figures(stat_line("solver")), kStatFigures);
}

TEST(ProcessFigures, ANameWithBlanksAndParenthesesIsOneField)
{
    EXPECT_EQ(process_figures(stat_line("my solver")), kStatFigures);
    EXPECT_EQ(process_figures(stat_line("a) S (b")), kStatFigures);
    EXPECT_EQ(process_figures(stat_line("")), kStatFigures);
    EXPECT_EQ(process_figures(stat_line("two\nlines")), kStatFigures);
}

TEST(ProcessFigures, OfALineThatEndsEarlyAreAFailure)
{
    EXPECT_EQ(process_figures(""), kProcessLeftAlone);
    EXPECT_EQ(process_figures("1234"), kProcessLeftAlone);
    EXPECT_EQ(process_figures("1234 (n) S"), kProcessLeftAlone);
    EXPECT_EQ(process_figures("1 (n) S 4 5 6 7 8 9 10 11 12 13 14 15 16 17 18 19 20 21 22 23\n"),
        kProcessLeftAlone);
}

TEST(ProcessFigures, Beyond32BitsAreTheHighestNumber)
{
    // 1048576 pages are 2 to the 32nd bytes.
    EXPECT_EQ(process_figures("1 (n) S 4 5 6 7 8 9 10 11 4294967296 13 14 15 16 17 18 19 20 21 22 "
                              "17592186044416 1048576\n"),
        "1: 4294967295 4294967295 4294967295");
    EXPECT_EQ(process_figures("1 (n) S 4 5 6 7 8 9 10 11 4294967295 13 14 15 16 17 18 19 20 21 22 "
                              "4294967295 1048575\n"),
        "1: 4294963200 4294967295 4294967295");
}

namespace {

/// The number of a line of "/proc/meminfo".
std::uint32_t line_of_meminfo(int wanted)
{
    std::ifstream meminfo("/proc/meminfo");
    std::string line;
    for (int i = 0; i < wanted; ++i)
        std::getline(meminfo, line);
    std::istringstream words(line);
    std::string name;
    std::uint64_t number = 0;
    words >> name >> number;
    return static_cast<std::uint32_t>(number);
}

bool has_proc() { return Testing::file_exists("/proc/meminfo"); }

} // namespace

TEST(SystemQueries, GiveTheFieldsOfTheSystemsFile)
{
    if (!has_proc())
        GTEST_SKIP() << "there is no /proc here";
    SystemData data {};
    ASSERT_TRUE(Tavro::GetSystemData(data));
    EXPECT_EQ(data.totalPhysicalMemory, line_of_meminfo(1));
    EXPECT_EQ(data.usedPhysicalMemory, data.totalPhysicalMemory - data.freePhysicalMemory);
    EXPECT_EQ(data.usedSwap, data.totalSwap - data.freeSwap);

    bool success = false;
    EXPECT_EQ(Tavro::GetTotalPhysicalMemory(success), line_of_meminfo(1));
    EXPECT_TRUE(success);
}

// Free memory changes between two looks, so the fields are told apart by a file of our own, laid
// over the system's for one process.
TEST(SystemQueries, EachGivesItsField)
{
    const Testing::TemporaryDirectory directory;
    Testing::make_directory(directory.path("proc"));
    const auto outcome = run_isolated([&] {
        if (!Testing::mount_small_disk("/proc", 65536)) {
            std::cout << kSkip;
            return;
        }
        Testing::write_file(
            "/proc/meminfo", "a 100 x b 40 x c 1 x d 2 x e 3 x f 4 x g 5 x h 6 x i 70 x j 20 x");
        bool success = false;
        const auto show = [&](unsigned int figure) {
            std::cout << figure << (success ? " " : "? ");
            success = false;
        };
        show(Tavro::GetTotalPhysicalMemory(success));
        show(Tavro::GetUsedPhysicalMemory(success));
        show(Tavro::GetFreePhysicalMemory(success));
        show(Tavro::GetTotalSwapSpace(success));
        show(Tavro::GetUsedSwapSpace(success));
        show(Tavro::GetFreeSwapSpace(success));
        ::umount2("/proc", MNT_DETACH);
    });
    if (outcome.out == kSkip)
        GTEST_SKIP() << "nothing can be mounted here";
    EXPECT_EQ(outcome.out, "100 60 40 70 50 20 ");
}

TEST(SystemQueries, WithoutProcGiveZeroAndFalse)
{
    const auto outcome = run_isolated([] {
        if (!Testing::mount_small_disk("/proc", 65536)) {
            std::cout << kSkip;
            return;
        }
        bool success = true;
        const auto show = [&](unsigned int figure) {
            std::cout << figure << success;
            success = true;
        };
        show(Tavro::GetTotalPhysicalMemory(success));
        show(Tavro::GetUsedPhysicalMemory(success));
        show(Tavro::GetFreePhysicalMemory(success));
        show(Tavro::GetTotalSwapSpace(success));
        show(Tavro::GetUsedSwapSpace(success));
        show(Tavro::GetFreeSwapSpace(success));
        SystemData data {};
        std::cout << " " << Tavro::GetSystemData(data);
        ::umount2("/proc", MNT_DETACH);
    });
    if (outcome.out == kSkip)
        GTEST_SKIP() << "nothing can be mounted here";
    EXPECT_EQ(outcome.out, "000000000000 0");
}

TEST(ProcessQueries, WithoutProcGiveFailures)
{
    const auto outcome = run_isolated([] {
        if (!Testing::mount_small_disk("/proc", 65536)) {
            std::cout << kSkip;
            return;
        }
        bool success = true;
        const auto show = [&](unsigned int figure) {
            std::cout << figure << success;
            success = true;
        };
        show(Tavro::GetPhysicalMemoryUsed(success));
        show(Tavro::GetVirtualMemorySize(success));
        show(Tavro::GetTotalPageFaults(success));
        show(Tavro::GetPageFaultsSinceLastCall(success));
        show(Tavro::GetPhysicalMemoryUsed(1, success));
        show(Tavro::GetVirtualMemorySize(1, success));
        show(Tavro::GetTotalPageFaults(1, success));
        ProcessData data {};
        std::cout << " " << Tavro::GetProcessData(::getpid(), data) << " " << Tavro::SYS_PMUSED_MB()
                  << " " << Tavro::SYS_VMSIZE_MB() << " " << Tavro::SYS_PAGEFLT_LC_MB();
        ::umount2("/proc", MNT_DETACH);
    });
    if (outcome.out == kSkip)
        GTEST_SKIP() << "nothing can be mounted here";
    EXPECT_EQ(outcome.out, "00000000000000 0 -1 -1 -1");
}

TEST(ProcessQueries, EachGivesItsFieldOfItsProcess)
{
    const auto outcome = run_isolated([] {
        if (!Testing::mount_small_disk("/proc", 65536)) {
            std::cout << kSkip;
            return;
        }
        const std::string own = std::to_string(::getpid());
        Testing::make_directory("/proc/77");
        Testing::make_directory("/proc/" + own);
        Testing::write_file("/proc/77/stat", stat_line("other process"));
        Testing::write_file("/proc/" + own + "/stat",
            own + " (own) S 4 5 6 7 8 9 10 11 120 13 14 15 16 17 18 19 20 21 22 3145728 384\n");
        bool success = false;
        const auto show = [&](unsigned int figure) {
            std::cout << figure << (success ? " " : "? ");
            success = false;
        };
        show(Tavro::GetPhysicalMemoryUsed(77, success));
        show(Tavro::GetVirtualMemorySize(77, success));
        show(Tavro::GetTotalPageFaults(77, success));
        show(Tavro::GetPhysicalMemoryUsed(success));
        show(Tavro::GetVirtualMemorySize(success));
        show(Tavro::GetTotalPageFaults(success));
        std::cout << Tavro::SYS_PMUSED_MB() << " " << Tavro::SYS_VMSIZE_MB();
        ::umount2("/proc", MNT_DETACH);
    });
    if (outcome.out == kSkip)
        GTEST_SKIP() << "nothing can be mounted here";
    // 384 pages are 1572864 bytes or 1.5 megabytes, 3145728 bytes are 3.
    EXPECT_EQ(outcome.out, "98304 23 12 1572864 3145728 120 1.5 3");
}

// A count that the failure in the middle does not disturb, shared by both functions.
TEST(PageFaultsSinceLastCall, AreCountedOverBothFunctions)
{
    const auto outcome = run_isolated([] {
        if (!Testing::mount_small_disk("/proc", 65536)) {
            std::cout << kSkip;
            return;
        }
        const std::string own = "/proc/" + std::to_string(::getpid());
        Testing::make_directory(own);
        const auto set_faults = [&](const std::string& faults) {
            Testing::write_file(own + "/stat",
                "1 (n) S 4 5 6 7 8 9 10 11 " + faults + " 13 14 15 16 17 18 19 20 21 22 23 24\n");
        };
        bool success = false;
        set_faults("100");
        std::cout << Tavro::GetPageFaultsSinceLastCall(success) << success << " ";
        std::cout << Tavro::SYS_PAGEFLT_LC_MB() << " ";
        set_faults("130");
        std::cout << Tavro::SYS_PAGEFLT_LC_MB() << " ";
        set_faults("many");
        std::cout << Tavro::SYS_PAGEFLT_LC_MB() << " ";
        std::cout << Tavro::GetPageFaultsSinceLastCall(success) << success << " ";
        set_faults("135");
        std::cout << Tavro::GetPageFaultsSinceLastCall(success) << success << " ";
        ::umount2("/proc", MNT_DETACH);
    });
    if (outcome.out == kSkip)
        GTEST_SKIP() << "nothing can be mounted here";
    EXPECT_EQ(outcome.out, "1001 0 30 -1 00 51 ");
}

TEST(ProcessQueries, OfAProcessThatDoesNotExistFail)
{
    ProcessData data = kProcess;
    EXPECT_FALSE(Tavro::GetProcessData(-1, data));
    EXPECT_FALSE(Tavro::GetProcessData(std::numeric_limits<long long>::max(), data));
    EXPECT_EQ(data.pageFaults, kProcess.pageFaults);
    bool success = true;
    EXPECT_EQ(Tavro::GetPhysicalMemoryUsed(-1, success), 0U);
    EXPECT_FALSE(success);
}

TEST(ProcessQueries, OfThisProcessFollowItsMemory)
{
    if (!has_proc())
        GTEST_SKIP() << "there is no /proc here";
    constexpr std::size_t kSize = std::size_t { 64 } << 20;
    constexpr double kMegabytes = 60.0; // pages that the system has not yet counted left out
    const auto outcome = run_isolated([] {
        const double before = Tavro::SYS_PMUSED_MB();
        void* block
            = ::mmap(nullptr, kSize, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
        if (block == MAP_FAILED)
            std::abort();
        std::fill_n(static_cast<char*>(block), kSize, 'x');
        const double after = Tavro::SYS_PMUSED_MB();
        bool success = false;
        const unsigned int bytes = Tavro::GetPhysicalMemoryUsed(success);
        ProcessData data {};
        std::cout << (after - before >= kMegabytes) << success << (bytes >= kSize)
                  << Tavro::GetProcessData(::getpid(), data)
                  << (data.virtualMemorySize >= data.physicalMemoryUsed)
                  << (Tavro::SYS_VMSIZE_MB() >= after);
    });
    EXPECT_EQ(outcome.out, "111111");
}
