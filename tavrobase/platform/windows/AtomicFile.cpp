// SPDX-License-Identifier: Apache-2.0
#include "tavrobase/platform/AtomicFile.h"

#include "tavrobase/platform/windows/Entry.h"
#include "tavrobase/platform/windows/Handle.h"

#include <algorithm>
#include <atomic>

namespace Tavro::Platform {

namespace {

using Windows::Handle;

/// A new name in the directory of `path`. It does not grow with the name of the file, which may
/// have all the length that the system allows.
std::string neighbour_of(const std::string& path)
{
    static std::atomic<unsigned long> s_count { 0 };
    return path.substr(0, path.find_last_of("/\\:") + 1) + ".vortik-"
        + std::to_string(::GetCurrentProcessId()) + "-" + std::to_string(s_count++);
}

ErrorNumber fill(Handle& file, std::string_view bytes)
{
    constexpr std::size_t kBlock = std::size_t { 1 } << 30;
    while (!bytes.empty()) {
        DWORD written = 0;
        const auto size = static_cast<DWORD>(std::min(bytes.size(), kBlock));
        if (::WriteFile(file.get(), bytes.data(), size, &written, nullptr) == 0)
            return Windows::last_error();
        bytes.remove_prefix(written);
    }
    // Before the file gets its name: else a power failure could leave the name with nothing in it.
    if (::FlushFileBuffers(file.get()) == 0)
        return Windows::last_error();
    return file.close();
}

} // namespace

ErrorNumber write_atomically(const std::string& path, std::string_view bytes)
{
    const std::string target = Windows::without_last_slashes(path);
    const DWORD attributes = ::GetFileAttributesA(target.c_str());
    if (attributes != INVALID_FILE_ATTRIBUTES && (attributes & FILE_ATTRIBUTE_READONLY) != 0)
        return EACCES; // some file systems let it be replaced all the same

    std::string neighbour;
    Handle file;
    do { // until a name is free that a killed process has not left behind
        neighbour = neighbour_of(target);
        file = Handle(::CreateFileA(neighbour.c_str(), GENERIC_WRITE, 0, nullptr, CREATE_NEW,
            FILE_ATTRIBUTE_NORMAL, nullptr));
    } while (!file && ::GetLastError() == ERROR_FILE_EXISTS);
    if (!file)
        return Windows::last_error();

    auto error = fill(file, bytes);
    if (error == 0
        && ::MoveFileExA(neighbour.c_str(), target.c_str(),
               MOVEFILE_REPLACE_EXISTING | MOVEFILE_WRITE_THROUGH)
            == 0)
        error = Windows::last_error(); // also if it is a directory
    if (error != 0) {
        (void)file.close();
        (void)::DeleteFileA(neighbour.c_str()); // the first error is the one to report
    }
    return error;
}

} // namespace Tavro::Platform
