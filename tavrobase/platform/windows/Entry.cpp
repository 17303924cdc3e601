// SPDX-License-Identifier: Apache-2.0
#include "tavrobase/platform/windows/Entry.h"

#include "tavrobase/platform/windows/Handle.h"

#include <algorithm>

namespace Tavro::Platform::Windows {

std::string without_last_slashes(std::string path)
{
    while (path.size() > 1 && (path.back() == '/' || path.back() == '\\')
        && path[path.size() - 2] != ':')
        path.pop_back();
    return path;
}

std::string with_slashes(std::string path)
{
    std::replace(path.begin(), path.end(), '\\', '/');
    return path;
}

std::optional<WIN32_FIND_DATAA> entry_facts(const std::string& path)
{
    const std::string entry = without_last_slashes(path);
    if (entry.find_first_of("*?") != std::string::npos)
        return std::nullopt; // would be a search, and no entry has such a name
    WIN32_FIND_DATAA facts {};
    HANDLE search = ::FindFirstFileA(entry.c_str(), &facts);
    if (search == INVALID_HANDLE_VALUE)
        return std::nullopt;
    (void)::FindClose(search); // a search that was opened can be closed
    return facts;
}

std::optional<Identity> identity_of(HANDLE file)
{
    BY_HANDLE_FILE_INFORMATION facts {};
    if (::GetFileInformationByHandle(file, &facts) == 0)
        return std::nullopt;
    return Identity { facts.dwVolumeSerialNumber, facts.nFileIndexHigh, facts.nFileIndexLow };
}

std::optional<Identity> identity_of(const std::string& path)
{
    // Directories are opened for backups alone; no access at all is asked for.
    const Handle file(
        ::CreateFileA(path.c_str(), 0, FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE,
            nullptr, OPEN_EXISTING, FILE_FLAG_BACKUP_SEMANTICS, nullptr));
    return file ? identity_of(file.get()) : std::nullopt;
}

} // namespace Tavro::Platform::Windows
