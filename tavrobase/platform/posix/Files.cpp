// SPDX-License-Identifier: Apache-2.0
#include "tavrobase/platform/Files.h"

#include "tavrobase/platform/Locale.h"
#include "tavrobase/platform/posix/SysCall.h"

#include <array>
#include <climits>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <memory>
#include <string_view>

#include <dirent.h>
#include <fcntl.h>
#include <fnmatch.h>
#include <sys/stat.h>
#include <unistd.h>

namespace Tavro::Platform {

namespace {

std::string without_last_slashes(std::string path)
{
    while (path.size() > 1 && path.back() == '/')
        path.pop_back();
    return path;
}

/// The directory that holds an entry and the entry's name in it.
struct Entry {
    std::string directory;
    std::string name;
};

Entry entry_of(const std::string& path)
{
    const std::string text = without_last_slashes(path);
    const auto slash = text.rfind('/');
    if (slash == std::string::npos)
        return { ".", text };
    return { slash == 0 ? "/" : text.substr(0, slash), text.substr(slash + 1) };
}

bool exists(const std::string& path)
{
    struct stat facts { };
    return ::lstat(path.c_str(), &facts) == 0;
}

/// Errors by which a directory has no names for us; all others mean that the system is in trouble.
bool is_no_match(int error)
{
    return error == ENOENT || error == ENOTDIR || error == EACCES || error == ELOOP
        || error == ENAMETOOLONG;
}

bool same_file(const struct stat& left, const struct stat& right)
{
    return left.st_dev == right.st_dev && left.st_ino == right.st_ino;
}

} // namespace

bool may_access(const std::string& path, unsigned mode)
{
    static_assert(kMayExecute == X_OK && kMayWrite == W_OK && kMayRead == R_OK);
    return ::access(path.c_str(), static_cast<int>(mode)) == 0;
}

ErrorNumber make_directory(const std::string& path, unsigned mode)
{
    return Posix::error_of(::mkdir, path.c_str(), static_cast<mode_t>(mode));
}

ErrorNumber remove_file(const std::string& path)
{
    return Posix::error_of(::unlink, without_last_slashes(path).c_str());
}

ErrorNumber remove_directory(const std::string& path)
{
    return Posix::error_of(::rmdir, path.c_str());
}

ErrorNumber rename_entry(const std::string& from, const std::string& to)
{
    const std::string entry = without_last_slashes(from); // "link/" would be what it leads to
    const auto error = Posix::error_of(
        ::renameat2, AT_FDCWD, entry.c_str(), AT_FDCWD, to.c_str(), unsigned { RENAME_NOREPLACE });
    if (error != EINVAL && error != ENOSYS)
        return error;
    // The file system cannot do both in one step; a plain rename would replace without a word.
    if (exists(to))
        return EEXIST;
    return Posix::error_of(::rename, entry.c_str(), to.c_str());
}

ErrorNumber change_mode(const std::string& path, unsigned mode)
{
    return Posix::error_of(::chmod, path.c_str(), static_cast<mode_t>(mode));
}

ErrorNumber change_working_directory(const std::string& path)
{
    return Posix::error_of(::chdir, path.c_str());
}

std::optional<std::string> working_directory()
{
    std::vector<char> buffer(PATH_MAX);
    while (::getcwd(buffer.data(), buffer.size()) == nullptr) {
        if (errno != ERANGE)
            return std::nullopt;
        buffer.resize(buffer.size() * 2); // the system allows working directories beyond PATH_MAX
    }
    return std::string(buffer.data());
}

std::optional<FileFacts> file_facts(const std::string& path)
{
    struct stat facts { };
    if (Posix::uninterrupted(::stat, path.c_str(), &facts) != 0)
        return std::nullopt;
    return FileFacts { facts.st_mtime, static_cast<std::uint64_t>(facts.st_size) };
}

bool is_symbolic_link(const std::string& path)
{
    // lstat of "link/" would follow the link
    struct stat facts { };
    return ::lstat(without_last_slashes(path).c_str(), &facts) == 0 && S_ISLNK(facts.st_mode);
}

bool same_name(const std::string& left, const std::string& right) { return left == right; }

bool same_file(const std::string& left, const std::string& right)
{
    struct stat a { };
    struct stat b { };
    return Posix::uninterrupted(::stat, left.c_str(), &a) == 0
        && Posix::uninterrupted(::stat, right.c_str(), &b) == 0 && same_file(a, b);
}

bool same_entry(const std::string& left, const std::string& right)
{
    const Entry a = entry_of(left);
    const Entry b = entry_of(right);
    struct stat left_directory { };
    struct stat right_directory { };
    return a.name == b.name && ::stat(a.directory.c_str(), &left_directory) == 0
        && ::stat(b.directory.c_str(), &right_directory) == 0
        && same_file(left_directory, right_directory);
}

const char* words_for_missing_symbolic_links() { return nullptr; }

ErrorNumber make_symbolic_link(const std::string& target, const std::string& link)
{
    // A link's text is read from the link's own directory, the caller's from the working directory.
    if (target.starts_with('/'))
        return Posix::error_of(::symlink, target.c_str(), link.c_str());
    const auto here = working_directory();
    if (!here)
        return ENOENT;
    return Posix::error_of(::symlink, (*here + "/" + target).c_str(), link.c_str());
}

ErrorNumber make_hard_link(const std::string& target, const std::string& link)
{
    return Posix::error_of(::link, target.c_str(), link.c_str());
}

ErrorNumber copy_link(const std::string& from, const std::string& to)
{
    // Where it leads is worked out in full: a way through the link's own directory ends with that.
    std::error_code error;
    auto target = std::filesystem::weakly_canonical(without_last_slashes(from), error);
    if (error || std::filesystem::is_symlink(target, error)) { // it leads nowhere
        target = std::filesystem::read_symlink(without_last_slashes(from), error);
        if (error)
            return error.value();
        target = (std::filesystem::absolute(entry_of(from).directory) / target).lexically_normal();
    }
    return make_symbolic_link(target.string(), to);
}

bool hide_file(const std::string& path)
{
    // There is no attribute to set: a leading "." in the name is what hides a file here.
    return file_facts(path).has_value();
}

ErrorNumber list_directory(const std::string& path, std::vector<std::string>& names)
{
    const std::unique_ptr<DIR, int (*)(DIR*)> directory(::opendir(path.c_str()), ::closedir);
    if (!directory)
        return is_no_match(errno) ? 0 : errno;
    for (;;) {
        errno = 0;
        const dirent* entry = ::readdir(directory.get());
        if (entry == nullptr)
            return errno;
        const std::string_view name = entry->d_name;
        if (name != "." && name != "..")
            names.emplace_back(name);
    }
}

bool name_matches(const std::string& pattern, const std::string& name)
{
    const PlainLocaleScope bytes;
    return ::fnmatch(pattern.c_str(), name.c_str(), 0) == 0;
}

} // namespace Tavro::Platform
