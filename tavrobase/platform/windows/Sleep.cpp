// SPDX-License-Identifier: Apache-2.0
#include "tavrobase/platform/Sleep.h"

#include "tavrobase/platform/windows/SysError.h"

#include <algorithm>

namespace Tavro::Platform {

void sleep_milliseconds(std::uint64_t milliseconds)
{
    constexpr std::uint64_t kLongest = INFINITE - 1; // the number after it means for ever
    do {
        const std::uint64_t part = std::min(milliseconds, kLongest);
        ::Sleep(static_cast<DWORD>(part));
        milliseconds -= part;
    } while (milliseconds > 0);
}

} // namespace Tavro::Platform
