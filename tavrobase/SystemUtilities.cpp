// SPDX-License-Identifier: Apache-2.0
#include "tavrobase/SystemUtilities.h"

#include "tavrobase/Trace.h"
#include "tavrobase/platform/Sleep.h"
#include "tavrobase/platform/Users.h"

#include <ctime>

namespace Tavro {

namespace {

constexpr unsigned long kUnit = 1024;
constexpr std::uint64_t kMillisecondsPerSecond = 1000;

float in_units(unsigned long bytes, int power)
{
    double divisor = 1.0;
    for (int i = 0; i < power; ++i)
        divisor *= static_cast<double>(kUnit);
    return static_cast<float>(static_cast<double>(bytes) / divisor);
}

} // namespace

std::string GetUsername() { return Platform::user_name().value_or(""); }

std::string GetHostname()
{
    TAVRO_TRACE_BEGIN("GetHostname")
    std::string name;
    const auto error = Platform::host_name(name);
    if (error == 0)
        return name;
    PrintErrorDebugHelper(
        1, "Could not get hostname for this machine: " + Platform::error_text(error));
    return "Unknown";
    TAVRO_TRACE_END
}

void PortableSleep(unsigned int seconds)
{
    Platform::sleep_milliseconds(seconds * kMillisecondsPerSecond);
}

void PortableMilliSleep(unsigned int milliseconds) { Platform::sleep_milliseconds(milliseconds); }

float BytesToKilobytes(unsigned long bytes) { return in_units(bytes, 1); }
float BytesToMegabytes(unsigned long bytes) { return in_units(bytes, 2); }
float BytesToGigabytes(unsigned long bytes) { return in_units(bytes, 3); }
float BytesToTerabytes(unsigned long bytes) { return in_units(bytes, 4); }

float BytesToAuto(unsigned long bytes, int& exponent)
{
    constexpr int kLargestPower = 4;
    constexpr int kExponentPerPower = 3;
    int power = 0;
    for (unsigned long rest = bytes; rest >= kUnit && power < kLargestPower; rest /= kUnit)
        ++power;
    exponent = power * kExponentPerPower;
    return in_units(bytes, power);
}

int SYS_REALTIME_LC_S()
{
    static std::time_t intPreviousTime = 0;
    const std::time_t now = std::time(nullptr);
    const std::time_t passed = now - intPreviousTime;
    intPreviousTime = now;
    return static_cast<int>(passed);
}

} // namespace Tavro
