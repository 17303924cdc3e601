// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <gtest/gtest.h>

#include <string>

namespace Testing {

/// Success if both are the same bytes; else the first difference by line, column and byte offset,
/// with both lines.
[[nodiscard]] testing::AssertionResult same_bytes(
    const std::string& expected, const std::string& actual);

} // namespace Testing
