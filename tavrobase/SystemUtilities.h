// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>
#include <iosfwd>
#include <string>

/// Who and where the process is, sleeping, and memory figures. The figures come from the files
/// below "/proc"; a system without them gives failures. Nothing throws.
namespace Tavro {

/// Name of the user on whose behalf the process runs; empty if it has none.
[[nodiscard]] std::string GetUsername();
/// "Unknown", after a report at debug level 1, if the system cannot tell.
[[nodiscard]] std::string GetHostname();

void PortableSleep(unsigned int seconds);
void PortableMilliSleep(unsigned int milliseconds);

/// In units of 1024 bytes and its powers.
[[nodiscard]] float BytesToKilobytes(unsigned long bytes);
[[nodiscard]] float BytesToMegabytes(unsigned long bytes);
[[nodiscard]] float BytesToGigabytes(unsigned long bytes);
[[nodiscard]] float BytesToTerabytes(unsigned long bytes);
/// In the largest unit that gives at least 1; the exponent is 0, 3, 6, 9 or 12.
[[nodiscard]] float BytesToAuto(unsigned long bytes, int& exponent);

/// In the unit of "/proc/meminfo", kilobytes.
struct SystemData {
    std::uint32_t totalPhysicalMemory;
    std::uint32_t usedPhysicalMemory;
    std::uint32_t freePhysicalMemory;
    std::uint32_t totalSwap;
    std::uint32_t usedSwap;
    std::uint32_t freeSwap;
};

/// Figures beyond 32 bits are the highest number.
struct ProcessData {
    std::uint32_t physicalMemoryUsed; ///< bytes
    std::uint32_t virtualMemorySize; ///< bytes
    std::uint32_t pageFaults; ///< those that needed the disk
};

/// Takes the figures by their place in the file, not by their names: total, free, six others, total
/// swap, free swap. False, and `data` left alone, if the text ends before that.
[[nodiscard]] bool ParseSystemData(std::istream& meminfo, SystemData& data);
/// Takes fields 12, 23 and 24 of a process's "stat" file; a name with blanks in it is one field.
[[nodiscard]] bool ParseProcessData(std::istream& stat, ProcessData& data);

[[nodiscard]] bool GetSystemData(SystemData& data);
[[nodiscard]] unsigned int GetFreeSwapSpace(bool& success);
[[nodiscard]] unsigned int GetUsedSwapSpace(bool& success);
[[nodiscard]] unsigned int GetTotalSwapSpace(bool& success);
[[nodiscard]] unsigned int GetFreePhysicalMemory(bool& success);
[[nodiscard]] unsigned int GetUsedPhysicalMemory(bool& success);
[[nodiscard]] unsigned int GetTotalPhysicalMemory(bool& success);

[[nodiscard]] bool GetProcessData(long long pid, ProcessData& data);
[[nodiscard]] unsigned int GetPhysicalMemoryUsed(long long pid, bool& success);
[[nodiscard]] unsigned int GetVirtualMemorySize(long long pid, bool& success);
[[nodiscard]] unsigned int GetTotalPageFaults(long long pid, bool& success);
/// Of the calling process.
[[nodiscard]] unsigned int GetPhysicalMemoryUsed(bool& success);
[[nodiscard]] unsigned int GetVirtualMemorySize(bool& success);
[[nodiscard]] unsigned int GetTotalPageFaults(bool& success);
/// Page faults of this process since the last call, or since its start at the first.
unsigned int GetPageFaultsSinceLastCall(bool& success);

/// Seconds since the last call; the whole clock at the first.
int SYS_REALTIME_LC_S();
/// Megabytes of this process, or -1.0.
[[nodiscard]] double SYS_PMUSED_MB();
[[nodiscard]] double SYS_VMSIZE_MB();
/// `GetPageFaultsSinceLastCall`, or -1; the two share one count.
int SYS_PAGEFLT_LC_MB();

} // namespace Tavro
