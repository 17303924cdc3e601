// SPDX-License-Identifier: Apache-2.0
#include "tests/support/Surroundings.h"

namespace Testing {

// No user is above the permissions that the tests set.
void become_ordinary_user() { }

// A mode has the one bit that forbids writing, and that not to every user.
bool modes_close_files() { return false; }

bool case_tells_names_apart() { return false; }

bool directories_are_like_files() { return false; }

bool mount_small_disk(const std::string&, unsigned long) { return false; }

} // namespace Testing
