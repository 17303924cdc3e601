// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "tests/links/support/ChaosBoard.h"

#include <cstdint>

namespace Testing {

/// Uses links at random until it is killed or asked to stop; in a process of its own.
[[noreturn]] void run_chaos_worker(ChaosBoard& board, int index, std::uint64_t seed);

/// Owns the counters and says at the end what is left; in a process of its own, never killed.
[[noreturn]] void run_chaos_keeper(ChaosBoard& board);

} // namespace Testing
