// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstddef>

namespace Testing {

/// A program that links this sees how much memory is asked for at once.
void forget_largest_request();
/// Bytes, since the last `forget_largest_request`.
[[nodiscard]] std::size_t largest_request();

} // namespace Testing
