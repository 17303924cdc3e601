// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string>
#include <vector>

namespace Testing {

/// A page of docs/formats, taken apart so that a test can hold it against the code.
class FormatPage {
public:
    /// Errors: `std::runtime_error` if the page is missing.
    explicit FormatPage(const std::string& name);

    using Row = std::vector<std::string>;
    /// Cells of the table in the section with this heading, without its head and rule; blanks
    /// around a cell are gone, code marks are not.
    /// Errors: `std::runtime_error` if there is no such table, or it is empty.
    [[nodiscard]] std::vector<Row> table(const std::string& heading) const;
    /// Text of the first fenced block in the section.
    /// Errors: `std::runtime_error` if there is none.
    [[nodiscard]] std::string example(const std::string& heading) const;

private:
    [[nodiscard]] std::vector<std::string> section(const std::string& heading) const;

    std::string m_name;
    std::vector<std::string> m_lines;
};

/// The text between the first pair of backticks or double quotes marks; the whole cell if there is
/// none.
[[nodiscard]] std::string unquoted(const std::string& cell);

/// Path of a file of the source tree.
[[nodiscard]] std::string source_path(const std::string& name);

} // namespace Testing
