// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "tavrobase/platform/windows/SysError.h"

#include <optional>
#include <string>

namespace Tavro::Platform::Windows {

/// Without "/" or "\" at its end, unless that makes it the root of a drive.
[[nodiscard]] std::string without_last_slashes(std::string path);

/// With "/" between names, as the system itself does not write it.
[[nodiscard]] std::string with_slashes(std::string path);

/// What a directory says of the entry itself, of a link and not of what it leads to.
[[nodiscard]] std::optional<WIN32_FIND_DATAA> entry_facts(const std::string& path);

/// Tells an open file or directory from all others; nothing if the path leads nowhere.
struct Identity {
    DWORD volume = 0;
    DWORD high = 0;
    DWORD low = 0;

    [[nodiscard]] bool operator==(const Identity&) const = default;
};
[[nodiscard]] std::optional<Identity> identity_of(HANDLE file);
[[nodiscard]] std::optional<Identity> identity_of(const std::string& path);

} // namespace Tavro::Platform::Windows
