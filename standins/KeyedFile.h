// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string>
#include <utility>
#include <vector>

namespace Standins {

using KeyedLines = std::vector<std::pair<std::string, std::string>>;

/// Writes a file of the stand-ins' own: "# " and the title, then a line "key = value" for each.
/// Errors: `Refusal` if it cannot be written whole.
void write_keyed_file(const std::string& path, const std::string& title, const KeyedLines& lines);

/// Reads a whole file of that form with exactly these keys in this order; gives the values.
/// Errors: `Malformed`.
[[nodiscard]] std::vector<std::string> read_keyed_file(
    const std::string& path, const std::string& title, const std::vector<std::string>& keys);

} // namespace Standins
