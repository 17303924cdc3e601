// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>
#include <ctime>

/// Stamps are whole seconds since 1970.
namespace Tavro {

[[nodiscard]] inline std::int64_t heartbeat_now() { return std::time(nullptr); }

/// Seconds from stamp to now; negative for a stamp in the future. In doubles, so that no garbage
/// found in a block can overflow.
[[nodiscard]] inline double heartbeat_age(std::int64_t now, std::int64_t stamp)
{
    return static_cast<double>(now) - static_cast<double>(stamp);
}

/// Whether the owner of a stamp of that age is taken to be alive. A stamp ahead of the clock was
/// written under another clock and tells nothing.
[[nodiscard]] inline bool is_alive(double age) { return age >= -0.1 && age <= 30.0; }

} // namespace Tavro
