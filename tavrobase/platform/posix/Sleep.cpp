// SPDX-License-Identifier: Apache-2.0
#include "tavrobase/platform/Sleep.h"

#include <cerrno>
#include <ctime>

namespace Tavro::Platform {

void sleep_milliseconds(std::uint64_t milliseconds)
{
    timespec rest {};
    rest.tv_sec = static_cast<time_t>(milliseconds / 1000);
    rest.tv_nsec = static_cast<long>(milliseconds % 1000) * 1'000'000;
    while (::clock_nanosleep(CLOCK_MONOTONIC, 0, &rest, &rest) == EINTR) { }
}

} // namespace Tavro::Platform
