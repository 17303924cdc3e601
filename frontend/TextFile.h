// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "frontend/Diagnostics.h"

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace Frontend {

/// A kind of file that is read whole, and how large such a file may be: far more than anybody has
/// a use for, and less than a machine has memory.
struct FileKind {
    const char* name; ///< as what is expected
    unsigned int most; ///< MiB
};
inline constexpr FileKind kReadableCase { "a readable case", 256 };
inline constexpr FileKind kBinaryCase { "a binary case file", 4096 };
inline constexpr FileKind kAirfoilTable { "an airfoil table", 16 };
inline constexpr FileKind kBodyFile { "an STL or OBJ file", 8192 };

/// All bytes of a file; nothing, and an error, if it cannot be read or is larger than its kind may
/// be. What has no size of its own, such as a pipe or a device, may have 256 MiB at most.
[[nodiscard]] std::optional<std::string> read_text(
    const std::string& path, const FileKind& kind, Diagnostics& diagnostics);

/// What keeps a path from being a file of that kind with bytes of its own, as a sentence; empty if
/// it is one. A device or a pipe may never come to an end.
[[nodiscard]] std::string lack_of_file(
    const std::string& path, const std::string& name, const FileKind& kind);

/// Whether an output may be written: it does not exist, or `force` is given and it is none of the
/// inputs, by whatever name. Else an error.
[[nodiscard]] bool may_write(const std::string& path, bool force, Diagnostics& diagnostics,
    const std::vector<std::string>& inputs = {});

/// Makes a file of these bytes: completely or, with an error that has the system's reason, not at
/// all.
[[nodiscard]] bool write_bytes(
    const std::string& path, std::string_view bytes, Diagnostics& diagnostics);

/// Directory of a path, with "/" at its end; empty if the path has none.
[[nodiscard]] std::string directory_of(const std::string& path);
/// The same of a file that names others: where those are found. It is empty, as for the working
/// directory, if the file is a pipe or a device, around which nothing lies.
[[nodiscard]] std::string directory_around(const std::string& file);
/// A path as seen from a directory: absolute ones stay.
[[nodiscard]] std::string path_from(const std::string& directory, const std::string& path);
/// A path whose "~" at the beginning, alone or before a "/", a shell has left: it becomes the value
/// of HOME, if that has one. Any other "~" is part of a name, such as that of an editor's copy.
[[nodiscard]] std::string from_home(const std::string& path);

/// Whether a path ends so; `ending` is in small letters, the path may have capitals.
[[nodiscard]] bool has_ending(const std::string& path, const std::string& ending);

[[nodiscard]] bool is_directory(const std::string& path);
[[nodiscard]] bool exists(const std::string& path);

} // namespace Frontend
