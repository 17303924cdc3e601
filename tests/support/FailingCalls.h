// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstddef>

/// For the inside of `run_isolated`.
namespace Testing {

/// From now on the kernel answers a system call of this process with an error instead of carrying
/// it out. With an `argument` of 0 to 5 only calls in which that argument has the value (in its low
/// 32 bits) fail. False where the system does not permit that: say so and skip.
[[nodiscard]] bool fail_system_call(long number, int error, int argument = -1, unsigned value = 0);

/// The same for reading, and for bringing what was written to the disk.
[[nodiscard]] bool fail_reading(int error);
[[nodiscard]] bool fail_flushing(int error);

/// From now on a file of this process that would grow beyond so many bytes fails to be written.
/// False where the system knows no such limit.
[[nodiscard]] bool limit_file_size(std::size_t bytes);

/// From now on no thread can be made. Other processes can, and the leak checker's helper too.
[[nodiscard]] bool fail_new_threads();

} // namespace Testing
