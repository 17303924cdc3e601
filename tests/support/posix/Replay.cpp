// SPDX-License-Identifier: Apache-2.0
#include "tests/support/Replay.h"

namespace Testing {

bool is_replaying() { return false; }

} // namespace Testing
