// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "case/ControllerInput.h"

#include <cstdint>

namespace Testing {

/// A record with bytes of any kind in every field that the case file has, and lists of up to three
/// elements; texts may hold whatever is awkward to write down.
[[nodiscard]] VRK::ControllerInput random_case(std::uint32_t seed);

} // namespace Testing
