// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <chrono>
#include <cstdint>

/// What the controller asks of time.
struct Clock {
    std::int64_t (*m_seconds)(); ///< seconds since 1970
    /// Between two turns of the update thread.
    std::chrono::milliseconds m_turn { 3000 };
};

/// The clock of this process: the system's, unless another one is put here before the run starts.
[[nodiscard]] Clock& run_clock();
