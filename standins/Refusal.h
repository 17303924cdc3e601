// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <stdexcept>

namespace Standins {

/// What a program was given is not what its contract says; `what()` names the thing and the fault.
class Refusal : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

} // namespace Standins
