// SPDX-License-Identifier: Apache-2.0
#pragma once

/// What other processes have in the links of this place, or have left there.
namespace Testing {

struct Leftovers {
    int slots = 0; ///< beside the one of this process
    int attachments = 0; ///< of all links
};

/// To be asked while this process has no link of its own.
[[nodiscard]] Leftovers leftovers();

/// Takes them away, as the next check but one for the dead would. Nobody else may be at work.
void forget_the_dead();

} // namespace Testing
