// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstddef>

namespace Testing {

/// How often this thread has taken memory by `new`, in programs that are built with
/// Allocations.cpp.
[[nodiscard]] std::size_t allocations();

} // namespace Testing
