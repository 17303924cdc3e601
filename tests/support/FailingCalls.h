// SPDX-License-Identifier: Apache-2.0
#pragma once

/// For the inside of `run_isolated`.
namespace Testing {

/// From now on the kernel answers a system call of this process with an error instead of carrying
/// it out. With an `argument` of 0 to 5 only calls in which that argument has the value (in its low
/// 32 bits) fail. False where the system does not permit that: say so and skip.
[[nodiscard]] bool fail_system_call(long number, int error, int argument = -1, unsigned value = 0);

/// From now on no thread can be made. Other processes can, and the leak checker's helper too.
[[nodiscard]] bool fail_new_threads();

} // namespace Testing
