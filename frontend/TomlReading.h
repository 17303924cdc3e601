// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "frontend/Diagnostics.h"
#include "frontend/Tree.h"

#include <optional>
#include <string>

namespace Frontend {

/// The tree of a TOML text. `name` stands for the text in what is said of it. Nothing if the text
/// is no TOML; of that the first fault alone is reported, because what follows it cannot be
/// understood.
[[nodiscard]] std::optional<Value> parse_toml(
    const std::string& text, const std::string& name, Diagnostics& diagnostics);

/// The same of a file. A file that cannot be read is an error, too.
[[nodiscard]] std::optional<Value> read_toml(const std::string& path, Diagnostics& diagnostics);

} // namespace Frontend
