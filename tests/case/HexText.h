// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string>

namespace Testing {

/// Bytes from annotated hexadecimal text: `1F` is a byte, `00x6` six of them; blanks and line ends
/// separate, and ";" opens a comment to the end of the line.
/// Errors: `std::invalid_argument` with the offending word.
[[nodiscard]] std::string bytes_of_hex(const std::string& text);

} // namespace Testing
