// SPDX-License-Identifier: Apache-2.0
#include "tests/support/FailingCalls.h"

namespace Testing {

// A process has no say in what the kernel answers it.
bool fail_system_call(long, int, int, unsigned) { return false; }

bool fail_reading(int) { return false; }

bool fail_flushing(int) { return false; }

bool limit_file_size(std::size_t) { return false; }

bool fail_new_threads() { return false; }

} // namespace Testing
