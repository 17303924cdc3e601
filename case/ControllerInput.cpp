// SPDX-License-Identifier: Apache-2.0
#include "case/ControllerInput.h"

namespace VRK {

// User-provided, so that `ControllerInput {}` costs no more than its initialisers say and leaves
// the unset members to the memory checkers.
ControllerInput::ControllerInput() = default;

} // namespace VRK
