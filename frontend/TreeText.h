// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "frontend/Tree.h"

#include <string>

namespace Frontend {

/// The tree as TOML, with its comments. Texts must be Unicode.
[[nodiscard]] std::string toml_text(const Value& tree);

/// The tree as JSON; numbers that JSON has not are the texts "nan", "inf" and "-inf".
[[nodiscard]] std::string json_text(const Value& tree);

/// A value as TOML writes it behind a key.
[[nodiscard]] std::string toml_value(const Value& value);

} // namespace Frontend
