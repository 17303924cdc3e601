// SPDX-License-Identifier: Apache-2.0
#include "tavrobase/platform/AtomicFile.h"

#include "tavrobase/platform/posix/Descriptor.h"
#include "tavrobase/platform/posix/SysCall.h"

#include <atomic>
#include <cstdio>

#include <fcntl.h>
#include <unistd.h>

namespace Tavro::Platform {

namespace {

using Posix::Descriptor;

constexpr mode_t kNewFileMode = 0666; // lowered by the mask, as for any new file

std::string without_last_slashes(std::string path)
{
    while (path.size() > 1 && path.back() == '/')
        path.pop_back();
    return path;
}

/// A new name in the directory of `path`. It does not grow with the name of the file, which may
/// have all the length that the system allows.
std::string neighbour_of(const std::string& path)
{
    static std::atomic<unsigned long> s_count { 0 };
    const auto slash = path.rfind('/');
    return path.substr(0, slash == std::string::npos ? 0 : slash + 1) + ".vortik-"
        + std::to_string(::getpid()) + "-" + std::to_string(s_count++);
}

/// A file system without the question leaves the answer to the calls that follow.
ErrorNumber may_replace(const std::string& path)
{
    const auto error = Posix::error_of(
        ::faccessat, AT_FDCWD, path.c_str(), W_OK, AT_EACCESS | AT_SYMLINK_NOFOLLOW);
    return error == EACCES || error == EROFS || error == EPERM ? error : 0;
}

ErrorNumber write_all(int fd, std::string_view bytes)
{
    while (!bytes.empty()) {
        const auto written = Posix::uninterrupted(::write, fd, bytes.data(), bytes.size());
        if (written < 0)
            return errno;
        bytes.remove_prefix(static_cast<std::size_t>(written));
    }
    return 0;
}

ErrorNumber fill(Descriptor& file, std::string_view bytes)
{
    if (const auto error = write_all(file.get(), bytes); error != 0)
        return error;
    // Before the file gets its name: else a power failure could leave the name with nothing in it.
    if (const auto error = Posix::error_of(::fsync, file.get()); error != 0)
        return error;
    return file.close();
}

} // namespace

ErrorNumber write_atomically(const std::string& path, std::string_view bytes)
{
    const std::string target = without_last_slashes(path);
    if (const auto error = may_replace(target); error != 0)
        return error;

    std::string neighbour;
    Descriptor file;
    do { // until a name is free that a killed process has not left behind
        neighbour = neighbour_of(target);
        file = Descriptor(Posix::uninterrupted(::open, neighbour.c_str(),
            O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC, kNewFileMode));
    } while (!file && errno == EEXIST);
    if (!file)
        return errno;

    auto error = fill(file, bytes);
    if (error == 0)
        error = Posix::error_of(::rename, neighbour.c_str(), target.c_str());
    if (error != 0)
        (void)::unlink(neighbour.c_str()); // the first error is the one to report
    return error;
}

} // namespace Tavro::Platform
