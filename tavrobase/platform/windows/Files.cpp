// SPDX-License-Identifier: Apache-2.0
#include "tavrobase/platform/Files.h"

#include "tavrobase/platform/windows/Entry.h"
#include "tavrobase/platform/windows/Handle.h"

#include <array>
#include <cstdio>

#include <direct.h>
#include <io.h>
#include <sys/stat.h>
#include <sys/types.h>

namespace Tavro::Platform {

namespace {

using Windows::without_last_slashes;

/// The directory that holds an entry and the entry's name in it.
struct Entry {
    std::string directory;
    std::string name;
};

Entry entry_of(const std::string& path)
{
    const std::string text = without_last_slashes(path);
    const auto slash = text.find_last_of("/\\:");
    Entry entry;
    if (slash == std::string::npos)
        entry = { ".", text };
    else
        entry = { text.substr(0, slash + 1), text.substr(slash + 1) };
    if (const auto facts = Windows::entry_facts(text))
        entry.name = facts->cFileName; // which the text may spell in its short form
    return entry;
}

bool is_directory(const std::string& path)
{
    const DWORD attributes = ::GetFileAttributesA(path.c_str());
    return attributes != INVALID_FILE_ATTRIBUTES && (attributes & FILE_ATTRIBUTE_DIRECTORY) != 0;
}

/// Errors by which a directory has no names for us; all others mean that the system is in trouble.
bool is_no_match(DWORD error)
{
    switch (error) {
    case ERROR_FILE_NOT_FOUND:
    case ERROR_PATH_NOT_FOUND:
    case ERROR_INVALID_NAME:
    case ERROR_BAD_PATHNAME:
    case ERROR_DIRECTORY:
    case ERROR_ACCESS_DENIED:
    case ERROR_FILENAME_EXCED_RANGE:
    case ERROR_CANT_RESOLVE_FILENAME:
        return true;
    default:
        return false;
    }
}

} // namespace

bool may_access(const std::string& path, unsigned mode)
{
    // Whatever can be read can be executed here, and newer C libraries end a process that asks.
    return ::_access(path.c_str(), static_cast<int>(mode & ~kMayExecute)) == 0;
}

ErrorNumber make_directory(const std::string& path, unsigned)
{
    return Windows::error_of(::_mkdir, path.c_str());
}

ErrorNumber remove_file(const std::string& path)
{
    const std::string entry = without_last_slashes(path);
    if (is_symbolic_link(entry) && is_directory(entry))
        return ::RemoveDirectoryA(entry.c_str()) != 0 ? 0 : Windows::last_error();
    return Windows::error_of(::_unlink, entry.c_str());
}

ErrorNumber remove_directory(const std::string& path)
{
    return Windows::error_of(::_rmdir, path.c_str());
}

ErrorNumber rename_entry(const std::string& from, const std::string& to)
{
    const std::string entry = without_last_slashes(from);
    // That of this C library never replaces.
    return Windows::error_of(std::rename, entry.c_str(), to.c_str());
}

ErrorNumber change_mode(const std::string& path, unsigned mode)
{
    return Windows::error_of(::_chmod, path.c_str(), static_cast<int>(mode));
}

ErrorNumber change_working_directory(const std::string& path)
{
    return Windows::error_of(::_chdir, path.c_str());
}

std::optional<std::string> working_directory()
{
    // The system has no longer ones.
    std::array<char, MAX_PATH> buffer {};
    if (::_getcwd(buffer.data(), static_cast<int>(buffer.size())) == nullptr)
        return std::nullopt;
    return Windows::with_slashes(buffer.data());
}

std::optional<FileFacts> file_facts(const std::string& path)
{
    struct _stat64 facts { };
    if (::_stat64(without_last_slashes(path).c_str(), &facts) != 0)
        return std::nullopt;
    return FileFacts { facts.st_mtime, static_cast<std::uint64_t>(facts.st_size) };
}

bool is_symbolic_link(const std::string& path)
{
    // Junctions too: what is behind either belongs to somebody else.
    const auto facts = Windows::entry_facts(path);
    return facts && (facts->dwFileAttributes & FILE_ATTRIBUTE_REPARSE_POINT) != 0
        && (facts->dwReserved0 == IO_REPARSE_TAG_SYMLINK
            || facts->dwReserved0 == IO_REPARSE_TAG_MOUNT_POINT);
}

bool same_name(const std::string& left, const std::string& right)
{
    return ::lstrcmpiA(left.c_str(), right.c_str()) == 0;
}

bool same_file(const std::string& left, const std::string& right)
{
    const auto identity = Windows::identity_of(left);
    return identity && identity == Windows::identity_of(right);
}

bool same_entry(const std::string& left, const std::string& right)
{
    const Entry a = entry_of(left);
    const Entry b = entry_of(right);
    if (!same_name(a.name, b.name))
        return false;
    const auto leftDirectory = Windows::identity_of(a.directory);
    return leftDirectory && leftDirectory == Windows::identity_of(b.directory);
}

const char* words_for_missing_symbolic_links()
{
    return "FileUtilities.C SymlinkFile not supported on winxp";
}

// Neither kind of link is made here: users mostly lack the right to make symbolic ones, and
// programs of the package expect neither.
ErrorNumber make_symbolic_link(const std::string&, const std::string&) { return ENOSYS; }
ErrorNumber make_hard_link(const std::string&, const std::string&) { return ENOSYS; }

ErrorNumber copy_link(const std::string& from, const std::string& to)
{
    constexpr DWORD kWithoutThatRight = 2; // where the user has switched that on
    const std::string link = without_last_slashes(from);
    std::array<char, 32768> target {};
    const Windows::Handle end(
        ::CreateFileA(link.c_str(), 0, FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE,
            nullptr, OPEN_EXISTING, FILE_FLAG_BACKUP_SEMANTICS, nullptr));
    if (!end
        || ::GetFinalPathNameByHandleA(
               end.get(), target.data(), static_cast<DWORD>(target.size()), 0)
            == 0)
        return Windows::last_error();
    const DWORD kind = is_directory(link) ? SYMBOLIC_LINK_FLAG_DIRECTORY : 0;
    const bool made
        = ::CreateSymbolicLinkA(to.c_str(), target.data(), kind | kWithoutThatRight) != 0;
    return made ? 0 : Windows::last_error();
}

bool hide_file(const std::string& path)
{
    const DWORD attributes = ::GetFileAttributesA(path.c_str());
    if (attributes == INVALID_FILE_ATTRIBUTES)
        return false;
    if ((attributes & FILE_ATTRIBUTE_HIDDEN) == 0)
        (void)::SetFileAttributesA(path.c_str(), attributes | FILE_ATTRIBUTE_HIDDEN); // it exists
    return true;
}

ErrorNumber list_directory(const std::string& path, std::vector<std::string>& names)
{
    const bool separated = path.ends_with('/') || path.ends_with('\\') || path.ends_with(':');
    WIN32_FIND_DATAA facts {};
    HANDLE search = ::FindFirstFileA((path + (separated ? "*" : "/*")).c_str(), &facts);
    if (search == INVALID_HANDLE_VALUE)
        return is_no_match(::GetLastError()) ? 0 : Windows::last_error();
    do {
        const std::string_view name = facts.cFileName;
        if (name != "." && name != "..")
            names.emplace_back(name);
    } while (::FindNextFileA(search, &facts) != 0);
    const DWORD end = ::GetLastError();
    (void)::FindClose(search); // everything has been read
    return end == ERROR_NO_MORE_FILES ? 0 : Windows::errno_of(end);
}

} // namespace Tavro::Platform
