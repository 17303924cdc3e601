// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "tavrobase/platform/Errors.h"

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

/// Files and directories. Paths are byte strings with "/" between names.
namespace Tavro::Platform {

/// Bits of `may_access`, to be added up.
constexpr unsigned kMayExecute = 1;
constexpr unsigned kMayWrite = 2;
constexpr unsigned kMayRead = 4;
constexpr unsigned kMayAll = kMayRead | kMayWrite | kMayExecute;

/// Whether the real user may do all of `mode` with what the path leads to.
[[nodiscard]] bool may_access(const std::string& path, unsigned mode);

/// Creates one level; `mode` is lowered by the process's file mode mask.
[[nodiscard]] ErrorNumber make_directory(const std::string& path, unsigned mode);
/// Removes the entry itself, a link and not what it leads to; a "/" at the path's end counts for
/// nothing.
[[nodiscard]] ErrorNumber remove_file(const std::string& path);
[[nodiscard]] ErrorNumber remove_directory(const std::string& path);
/// Never replaces what already has the new name. Where the file system cannot look and rename in
/// one step these are two.
[[nodiscard]] ErrorNumber rename_entry(const std::string& from, const std::string& to);
[[nodiscard]] ErrorNumber change_mode(const std::string& path, unsigned mode);

[[nodiscard]] ErrorNumber change_working_directory(const std::string& path);
/// Of any length; nothing if the system cannot tell (the directory is gone).
[[nodiscard]] std::optional<std::string> working_directory();

struct FileFacts {
    std::int64_t modified; ///< seconds since 1970
    std::uint64_t size; ///< bytes
};
/// Of the file that the path leads to; nothing if there is none.
[[nodiscard]] std::optional<FileFacts> file_facts(const std::string& path);

/// Whether the path itself is a link, to a directory too and dangling too; a "/" at its end counts
/// for nothing.
[[nodiscard]] bool is_symbolic_link(const std::string& path);

/// Whether the system takes two names in one directory for the same.
[[nodiscard]] bool same_name(const std::string& left, const std::string& right);

/// Whether both paths, with links followed, lead to one existing file or directory, whatever
/// happens to it meanwhile.
[[nodiscard]] bool same_file(const std::string& left, const std::string& right);

/// Whether both paths name the same entry of the same directory, however they are spelt. Two hard
/// links to one file are different entries.
[[nodiscard]] bool same_entry(const std::string& left, const std::string& right);

/// What a system on which programs make no symbolic links says of them, for people; null where they
/// do.
[[nodiscard]] const char* words_for_missing_symbolic_links();
/// A link at `link` that leads to `target`; a relative target is one of the working directory.
[[nodiscard]] ErrorNumber make_symbolic_link(const std::string& target, const std::string& link);
[[nodiscard]] ErrorNumber make_hard_link(const std::string& target, const std::string& link);
/// A second link at `to` that leads to the same place as the link `from`, or to the same nowhere.
[[nodiscard]] ErrorNumber copy_link(const std::string& from, const std::string& to);

/// Hides an existing file from plain listings where the system has an attribute for that.
/// True if the file exists.
[[nodiscard]] bool hide_file(const std::string& path);

/// Appends the names in a directory in the order in which the system lists them, without "." and
/// "..". A directory that is not there or may not be read has no names,
/// and that is no error.
[[nodiscard]] ErrorNumber list_directory(const std::string& path, std::vector<std::string>& names);

/// Shell wildcard match of one name: "*", "?", "[...]", and a backslash that takes the next
/// character as it is. Bytes are compared, whatever the locale.
[[nodiscard]] bool name_matches(const std::string& pattern, const std::string& name);

enum class CopyEnd {
    Complete, ///< every byte is in the target
    SourceUnreadable, ///< the source could not be opened or read to its end
    TargetFailed, ///< the target could not be opened or written
};
/// Copies a file's bytes by blocks, inside the kernel where it can. The target is created or
/// emptied first, also when the source cannot be read; if both are the same file it is left as it
/// is.
[[nodiscard]] CopyEnd copy_contents(const std::string& from, const std::string& to);
/// Adds what a file has from byte `offset` on to the end of another one, in the same way. The
/// target is created if it is missing; the two must not be the same file.
[[nodiscard]] CopyEnd append_contents(
    const std::string& from, std::uint64_t offset, const std::string& to);

} // namespace Tavro::Platform
