// SPDX-License-Identifier: Apache-2.0
#include "tavrobase/SystemUtilities.h"

#include "tavrobase/platform/Processes.h"

#include <algorithm>
#include <array>
#include <fstream>
#include <iterator>
#include <limits>
#include <locale>
#include <sstream>

namespace Tavro {

namespace {

constexpr std::uint64_t kPageSize = 4096;
constexpr double kMegabyte = 1024.0 * 1024.0;

std::uint32_t in_32_bits(std::uint64_t number)
{
    constexpr std::uint64_t kHighest = std::numeric_limits<std::uint32_t>::max();
    return static_cast<std::uint32_t>(std::min(number, kHighest));
}

unsigned int system_figure(std::uint32_t SystemData::*figure, bool& success)
{
    SystemData data {};
    success = GetSystemData(data);
    return success ? data.*figure : 0;
}

unsigned int process_figure(long long pid, std::uint32_t ProcessData::*figure, bool& success)
{
    ProcessData data {};
    success = GetProcessData(pid, data);
    return success ? data.*figure : 0;
}

double megabytes_or_failure(unsigned int bytes, bool success)
{
    return success ? static_cast<double>(bytes) / kMegabyte : -1.0;
}

} // namespace

bool ParseSystemData(std::istream& meminfo, SystemData& data)
{
    // "MemTotal:  16316412 kB" and so on, ten of them.
    enum Place { TotalMemory = 0, FreeMemory = 1, TotalSwap = 8, FreeSwap = 9, Places = 10 };
    meminfo.imbue(std::locale::classic());
    std::array<std::uint64_t, Places> figures {};
    for (auto& figure : figures) {
        std::string name;
        std::string unit;
        meminfo >> name >> figure >> unit;
    }
    if (!meminfo)
        return false;
    data.totalPhysicalMemory = in_32_bits(figures[TotalMemory]);
    data.freePhysicalMemory = in_32_bits(figures[FreeMemory]);
    data.usedPhysicalMemory = data.totalPhysicalMemory - data.freePhysicalMemory;
    data.totalSwap = in_32_bits(figures[TotalSwap]);
    data.freeSwap = in_32_bits(figures[FreeSwap]);
    data.usedSwap = data.totalSwap - data.freeSwap;
    return true;
}

bool ParseProcessData(std::istream& stat, ProcessData& data)
{
    // Fields are counted from 1: the pid, the name in parentheses, then words and numbers.
    constexpr int kFirstBehindName = 3;
    constexpr int kMajorFaults = 12;
    constexpr int kVirtualSize = 23;
    constexpr int kResidentPages = 24;

    const std::string text { std::istreambuf_iterator<char>(stat), {} };
    const auto nameEnd = text.rfind(')');
    if (nameEnd == std::string::npos)
        return false;
    std::istringstream fields(text.substr(nameEnd + 1));
    fields.imbue(std::locale::classic());
    const auto skip_to = [&fields](int from, int to) {
        std::string field;
        for (; from < to; ++from)
            fields >> field;
    };
    std::uint64_t faults = 0;
    std::uint64_t size = 0;
    std::uint64_t pages = 0;
    skip_to(kFirstBehindName, kMajorFaults);
    fields >> faults;
    skip_to(kMajorFaults + 1, kVirtualSize);
    fields >> size >> pages;
    static_assert(kResidentPages == kVirtualSize + 1);
    if (!fields)
        return false;
    data.pageFaults = in_32_bits(faults);
    data.virtualMemorySize = in_32_bits(size);
    data.physicalMemoryUsed = in_32_bits(pages * kPageSize);
    return true;
}

bool GetSystemData(SystemData& data)
{
    std::ifstream meminfo("/proc/meminfo");
    return meminfo && ParseSystemData(meminfo, data);
}

unsigned int GetFreeSwapSpace(bool& success)
{
    return system_figure(&SystemData::freeSwap, success);
}

unsigned int GetUsedSwapSpace(bool& success)
{
    return system_figure(&SystemData::usedSwap, success);
}

unsigned int GetTotalSwapSpace(bool& success)
{
    return system_figure(&SystemData::totalSwap, success);
}

unsigned int GetFreePhysicalMemory(bool& success)
{
    return system_figure(&SystemData::freePhysicalMemory, success);
}

unsigned int GetUsedPhysicalMemory(bool& success)
{
    return system_figure(&SystemData::usedPhysicalMemory, success);
}

unsigned int GetTotalPhysicalMemory(bool& success)
{
    return system_figure(&SystemData::totalPhysicalMemory, success);
}

bool GetProcessData(long long pid, ProcessData& data)
{
    std::ifstream stat("/proc/" + std::to_string(pid) + "/stat");
    return stat && ParseProcessData(stat, data);
}

unsigned int GetPhysicalMemoryUsed(long long pid, bool& success)
{
    return process_figure(pid, &ProcessData::physicalMemoryUsed, success);
}

unsigned int GetVirtualMemorySize(long long pid, bool& success)
{
    return process_figure(pid, &ProcessData::virtualMemorySize, success);
}

unsigned int GetTotalPageFaults(long long pid, bool& success)
{
    return process_figure(pid, &ProcessData::pageFaults, success);
}

unsigned int GetPhysicalMemoryUsed(bool& success)
{
    return GetPhysicalMemoryUsed(Platform::current_process_id(), success);
}

unsigned int GetVirtualMemorySize(bool& success)
{
    return GetVirtualMemorySize(Platform::current_process_id(), success);
}

unsigned int GetTotalPageFaults(bool& success)
{
    return GetTotalPageFaults(Platform::current_process_id(), success);
}

unsigned int GetPageFaultsSinceLastCall(bool& success)
{
    static unsigned int luintPrevious = 0;
    const unsigned int faults = GetTotalPageFaults(success);
    if (!success)
        return 0;
    const unsigned int since = faults - luintPrevious;
    luintPrevious = faults;
    return since;
}

double SYS_PMUSED_MB()
{
    bool success = false;
    const unsigned int bytes = GetPhysicalMemoryUsed(success);
    return megabytes_or_failure(bytes, success);
}

double SYS_VMSIZE_MB()
{
    bool success = false;
    const unsigned int bytes = GetVirtualMemorySize(success);
    return megabytes_or_failure(bytes, success);
}

int SYS_PAGEFLT_LC_MB()
{
    bool success = false;
    const unsigned int faults = GetPageFaultsSinceLastCall(success);
    return success ? static_cast<int>(faults) : -1;
}

} // namespace Tavro
