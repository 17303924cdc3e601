// SPDX-License-Identifier: Apache-2.0
#include "tests/support/PrivateObjects.h"

namespace Testing {

std::string use_private_objects() { return "every process sees the objects of its session"; }

bool objects_are_private() { return false; }

void remove_private_objects() { }

std::string private_object_names() { return {}; }

} // namespace Testing
