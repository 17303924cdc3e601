// SPDX-License-Identifier: Apache-2.0
#include "tavrobase/platform/Files.h"

#include "tavrobase/platform/windows/Entry.h"
#include "tavrobase/platform/windows/Handle.h"

#include <cstddef>
#include <memory>

namespace Tavro::Platform {

namespace {

using Windows::Handle;

constexpr DWORD kBlock = 1U << 20;

Handle open_file(const std::string& path, DWORD access, DWORD disposition)
{
    // Others may use the file meanwhile, as with files opened by the C library.
    return Handle(::CreateFileA(path.c_str(), access, FILE_SHARE_READ | FILE_SHARE_WRITE, nullptr,
        disposition, FILE_ATTRIBUTE_NORMAL, nullptr));
}

bool write_all(HANDLE file, const std::byte* data, DWORD size)
{
    while (size > 0) {
        DWORD written = 0;
        if (::WriteFile(file, data, size, &written, nullptr) == 0 || written == 0)
            return false;
        data += written;
        size -= written;
    }
    return true;
}

CopyEnd copy_open_files(HANDLE from, HANDLE to)
{
    const auto buffer = std::make_unique_for_overwrite<std::byte[]>(kBlock);
    for (;;) {
        DWORD got = 0;
        if (::ReadFile(from, buffer.get(), kBlock, &got, nullptr) == 0)
            return CopyEnd::SourceUnreadable;
        if (got == 0)
            return CopyEnd::Complete;
        if (!write_all(to, buffer.get(), got))
            return CopyEnd::TargetFailed;
    }
}

bool move_to(HANDLE file, std::uint64_t offset, DWORD from)
{
    LARGE_INTEGER distance {};
    distance.QuadPart = static_cast<LONGLONG>(offset);
    return ::SetFilePointerEx(file, distance, nullptr, from) != 0;
}

CopyEnd closed(Handle& target, CopyEnd end)
{
    return target.close() != 0 && end == CopyEnd::Complete ? CopyEnd::TargetFailed : end;
}

} // namespace

CopyEnd copy_contents(const std::string& from, const std::string& to)
{
    const Handle source = open_file(from, GENERIC_READ, OPEN_EXISTING);
    // Not CREATE_ALWAYS, which refuses a hidden file and would empty the source if it is the same.
    Handle target = open_file(to, GENERIC_WRITE, OPEN_ALWAYS);
    if (!target)
        return source ? CopyEnd::TargetFailed : CopyEnd::SourceUnreadable;
    if (source) {
        const auto identity = Windows::identity_of(source.get());
        if (identity && identity == Windows::identity_of(target.get()))
            return CopyEnd::Complete;
    }
    if (::SetEndOfFile(target.get()) == 0 && ::GetFileType(target.get()) == FILE_TYPE_DISK)
        return CopyEnd::TargetFailed;
    if (!source)
        return CopyEnd::SourceUnreadable;
    return closed(target, copy_open_files(source.get(), target.get()));
}

CopyEnd append_contents(const std::string& from, std::uint64_t offset, const std::string& to)
{
    const Handle source = open_file(from, GENERIC_READ, OPEN_EXISTING);
    if (!source || !move_to(source.get(), offset, FILE_BEGIN))
        return CopyEnd::SourceUnreadable;
    Handle target = open_file(to, GENERIC_WRITE, OPEN_ALWAYS);
    if (!target || !move_to(target.get(), 0, FILE_END))
        return CopyEnd::TargetFailed;
    return closed(target, copy_open_files(source.get(), target.get()));
}

} // namespace Tavro::Platform
