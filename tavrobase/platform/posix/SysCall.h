// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "tavrobase/platform/Errors.h"

#include <cerrno>
#include <utility>

namespace Tavro::Platform::Posix {

/// Repeats a call of the -1-and-errno kind while a signal interrupts it.
template <typename Call, typename... Arguments>
auto uninterrupted(Call call, Arguments... arguments)
{
    for (;;) {
        const auto result = call(arguments...);
        if (result != -1 || errno != EINTR)
            return result;
    }
}

/// Runs a call of the -1-and-errno kind for its error number alone.
template <typename Call, typename... Arguments>
[[nodiscard]] ErrorNumber error_of(Call call, Arguments... arguments)
{
    return uninterrupted(call, arguments...) == -1 ? errno : 0;
}

} // namespace Tavro::Platform::Posix
