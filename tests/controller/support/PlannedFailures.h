// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <atomic>

/// For the calls of the system that the linker puts in the place of the real ones, in
/// `posix/WrappedCalls.cpp` and `windows/WrappedCalls.cpp`.
namespace Testing {

/// Counts a call. Whether it is the one that is to fail by that variable of the environment.
[[nodiscard]] bool is_to_fail(std::atomic<int>& calls, const char* variable);

/// To be called under the lock of the links, so that no change is missed.
void note_published_step();

} // namespace Testing
