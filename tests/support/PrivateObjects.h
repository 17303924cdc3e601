// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string>

/// Shared memory and named semaphores that no other program sees, so that a test can neither
/// disturb nor be disturbed by a run of the user's.
namespace Testing {

/// Puts an empty directory of such objects under this process and those it starts from now on.
/// Empty, or why the system does not permit that. To be called while there is one thread.
[[nodiscard]] std::string use_private_objects();

/// Whether that has been done, and with success.
[[nodiscard]] bool objects_are_private();

/// Removes all objects. Only after `use_private_objects`.
void remove_private_objects();

/// Names of all objects there are, sorted: "sem.X" is a semaphore.
[[nodiscard]] std::string private_object_names();

} // namespace Testing
