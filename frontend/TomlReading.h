// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "frontend/Diagnostics.h"
#include "frontend/Tree.h"

#include <optional>
#include <string>

namespace Frontend {

/// The tree of a TOML text. `name` stands for the text in what is said of it. All that is no TOML
/// is reported; what can be understood beside it is in the tree. Nothing if that is too much.
[[nodiscard]] std::optional<Value> parse_toml(
    const std::string& text, const std::string& name, Diagnostics& diagnostics);

} // namespace Frontend
