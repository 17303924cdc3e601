// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "tavrobase/platform/Errors.h"

#ifndef WIN32_LEAN_AND_MEAN
#define WIN32_LEAN_AND_MEAN
#endif
#ifndef NOMINMAX
#define NOMINMAX
#endif
#include <windows.h>

#include <cerrno>
#include <system_error>

namespace Tavro::Platform::Windows {

/// The number of the C library for one of the system's own; EIO if it has none for it.
[[nodiscard]] inline ErrorNumber errno_of(DWORD error)
{
    if (error == ERROR_SUCCESS)
        return 0;
    const auto condition = std::system_category().default_error_condition(static_cast<int>(error));
    return condition.category() == std::generic_category() ? condition.value() : EIO;
}

/// Why the last call of the system's own kind failed.
[[nodiscard]] inline ErrorNumber last_error() { return errno_of(::GetLastError()); }

/// Runs a call of the C library's -1-and-errno kind for its error number alone.
template <typename Call, typename... Arguments>
[[nodiscard]] ErrorNumber error_of(Call call, Arguments... arguments)
{
    return call(arguments...) == 0 ? 0 : errno;
}

} // namespace Tavro::Platform::Windows
