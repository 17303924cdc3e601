// SPDX-License-Identifier: Apache-2.0
#include "tests/support/Waiting.h"

#include <chrono>
#include <thread>

namespace Testing {

bool wait_until(const std::function<bool()>& condition)
{
    const auto deadline = std::chrono::steady_clock::now() + std::chrono::minutes(1);
    while (!condition()) {
        if (std::chrono::steady_clock::now() > deadline)
            return false;
        std::this_thread::sleep_for(std::chrono::milliseconds(1));
    }
    return true;
}

} // namespace Testing
