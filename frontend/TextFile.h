// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "frontend/Diagnostics.h"

#include <optional>
#include <string>
#include <string_view>

namespace Frontend {

/// All bytes of a file; nothing, and an error, if it cannot be read.
[[nodiscard]] std::optional<std::string> read_text(
    const std::string& path, Diagnostics& diagnostics);

/// Whether an output may be written: it does not exist, or `force` is given. Else an error.
[[nodiscard]] bool may_write(const std::string& path, bool force, Diagnostics& diagnostics);

/// Makes a file of these bytes: completely or, with an error, not at all.
[[nodiscard]] bool write_bytes(
    const std::string& path, std::string_view bytes, Diagnostics& diagnostics);

/// Directory of a path, with "/" at its end; empty if the path has none.
[[nodiscard]] std::string directory_of(const std::string& path);
/// A path as seen from a directory: absolute ones stay.
[[nodiscard]] std::string path_from(const std::string& directory, const std::string& path);

/// Whether a path ends so; `ending` is in small letters, the path may have capitals.
[[nodiscard]] bool has_ending(const std::string& path, const std::string& ending);

[[nodiscard]] bool is_directory(const std::string& path);
[[nodiscard]] bool exists(const std::string& path);
/// Whether a file with bytes of its own is there: a device or a pipe may never come to an end.
[[nodiscard]] bool is_file(const std::string& path);

} // namespace Frontend
