// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

/// A TOML text in pieces that can be understood one by one, so that a fault in one of them does not
/// hide those of the others.
namespace Frontend {

/// The head of a table, or a key with its value.
struct Statement {
    std::size_t first = 0; ///< line of the text, from 0
    std::size_t end = 0; ///< line behind it
    bool head = false;
};

/// The lines of a text without their ends.
[[nodiscard]] std::vector<std::string> lines_of(const std::string& text);

/// A place in a text, from 0.
struct TextPlace {
    std::size_t line = 0;
    std::size_t column = 0;
};
/// Where a key has so many dots that its tables would be nested deeper than can be worked with.
[[nodiscard]] std::optional<TextPlace> too_deep_key(const std::string& text);

/// All statements of a text, right or wrong. A list or a line of text that is not closed ends where
/// the next statement seems to begin.
[[nodiscard]] std::vector<Statement> statements_of(const std::vector<std::string>& lines);

/// What a head that lacks brackets was probably meant to be; empty if it has no name.
[[nodiscard]] std::string mended_head(const std::string& line);

/// The key of a statement with its "=", as it stands in the line; empty if there is none.
[[nodiscard]] std::string key_part(const std::string& line);

} // namespace Frontend
