// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string>
#include <string_view>

namespace Standins {

/// All bytes of a file.
/// Errors: `Malformed` if it cannot be opened and read; a directory is none that can.
[[nodiscard]] std::string read_whole_file(const std::string& path);

/// A file of `head` and `body`, replacing what was there.
/// Errors: `Malformed` if it cannot be written whole.
void write_whole_file(const std::string& path, std::string_view head, std::string_view body = {});

} // namespace Standins
