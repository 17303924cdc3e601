// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "tavrobase/platform/windows/SysError.h"

#include <string>

namespace Tavro::Platform::Windows {

/// The system's own number of the calling thread's last failed call, for reports that print the
/// number: people look it up in the system's lists, not in those of the C library.
[[nodiscard]] inline ErrorNumber system_number()
{
    return static_cast<ErrorNumber>(::GetLastError());
}

/// The system's English words for such a number, without a full stop.
[[nodiscard]] std::string system_text(ErrorNumber number);

} // namespace Tavro::Platform::Windows
