// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string>

namespace Testing {

/// The text with "#" for the source line at the end of each report of a caught error or a broken
/// assertion: that number changes with every edit. A line 0 is no source line and stays.
[[nodiscard]] std::string without_line_numbers(const std::string& reports);

} // namespace Testing
