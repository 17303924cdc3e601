// SPDX-License-Identifier: Apache-2.0
#include "tavrobase/platform/Files.h"

#include "tavrobase/platform/posix/Descriptor.h"
#include "tavrobase/platform/posix/SysCall.h"

#include <cstddef>
#include <memory>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace Tavro::Platform {

namespace {

using Posix::Descriptor;

constexpr std::size_t kKernelBlock = std::size_t { 1 } << 30;
constexpr std::size_t kBufferBlock = std::size_t { 1 } << 20;
constexpr mode_t kNewFileMode = 0666; // lowered by the mask, as for any new file

bool write_all(int fd, const std::byte* data, std::size_t size)
{
    while (size > 0) {
        const auto written = Posix::uninterrupted(::write, fd, data, size);
        if (written < 0)
            return false;
        data += written;
        size -= static_cast<std::size_t>(written);
    }
    return true;
}

CopyEnd copy_through_buffer(int from, int to)
{
    const auto buffer = std::make_unique_for_overwrite<std::byte[]>(kBufferBlock);
    for (;;) {
        const auto got = Posix::uninterrupted(::read, from, buffer.get(), kBufferBlock);
        if (got < 0)
            return CopyEnd::SourceUnreadable;
        if (got == 0)
            return CopyEnd::Complete;
        if (!write_all(to, buffer.get(), static_cast<std::size_t>(got)))
            return CopyEnd::TargetFailed;
    }
}

/// Moves blocks inside the kernel, which shares them where the file system can. Whatever the kernel
/// leaves (other kinds of files, old kernels, pseudo files that tell no size) goes through a
/// buffer, and an error is met there again on the side to which it belongs.
CopyEnd copy_open_files(int from, int to)
{
    while (Posix::uninterrupted(::copy_file_range, from, nullptr, to, nullptr, kKernelBlock, 0U)
        > 0) { }
    return copy_through_buffer(from, to);
}

} // namespace

CopyEnd copy_contents(const std::string& from, const std::string& to)
{
    Descriptor source(Posix::uninterrupted(::open, from.c_str(), O_RDONLY | O_CLOEXEC));
    Descriptor target(
        Posix::uninterrupted(::open, to.c_str(), O_WRONLY | O_CREAT | O_CLOEXEC, kNewFileMode));
    if (!target)
        return source ? CopyEnd::TargetFailed : CopyEnd::SourceUnreadable;

    struct stat target_facts { };
    if (::fstat(target.get(), &target_facts) != 0)
        return CopyEnd::TargetFailed;
    if (source) {
        struct stat source_facts { };
        // Emptying the target would empty the source with it.
        if (::fstat(source.get(), &source_facts) == 0 && source_facts.st_dev == target_facts.st_dev
            && source_facts.st_ino == target_facts.st_ino)
            return CopyEnd::Complete;
    }
    // A new file is left alone: ext4 writes out at once what is closed after it has been emptied.
    if (S_ISREG(target_facts.st_mode) && target_facts.st_size > 0
        && Posix::uninterrupted(::ftruncate, target.get(), off_t { 0 }) != 0)
        return CopyEnd::TargetFailed;
    if (!source)
        return CopyEnd::SourceUnreadable;

    const CopyEnd end = copy_open_files(source.get(), target.get());
    // A network file system may report a full device only here.
    if (target.close() != 0 && end == CopyEnd::Complete)
        return CopyEnd::TargetFailed;
    return end;
}

CopyEnd append_contents(const std::string& from, std::uint64_t offset, const std::string& to)
{
    Descriptor source(Posix::uninterrupted(::open, from.c_str(), O_RDONLY | O_CLOEXEC));
    if (!source || ::lseek(source.get(), static_cast<off_t>(offset), SEEK_SET) < 0)
        return CopyEnd::SourceUnreadable;
    // Not O_APPEND: the kernel moves no blocks into files that were opened so.
    Descriptor target(
        Posix::uninterrupted(::open, to.c_str(), O_WRONLY | O_CREAT | O_CLOEXEC, kNewFileMode));
    if (!target || ::lseek(target.get(), 0, SEEK_END) < 0)
        return CopyEnd::TargetFailed;
    const CopyEnd end = copy_open_files(source.get(), target.get());
    if (target.close() != 0 && end == CopyEnd::Complete)
        return CopyEnd::TargetFailed;
    return end;
}

} // namespace Tavro::Platform
