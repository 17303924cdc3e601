// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <functional>

namespace Testing {

/// Asks again and again until the answer is true. False if it is not within a minute.
[[nodiscard]] bool wait_until(const std::function<bool()>& condition);

} // namespace Testing
