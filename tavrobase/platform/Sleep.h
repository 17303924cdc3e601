// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>

namespace Tavro::Platform {

/// Sleeps for the whole time, also when signals arrive meanwhile.
void sleep_milliseconds(std::uint64_t milliseconds);

} // namespace Tavro::Platform
