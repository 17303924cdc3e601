// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <chrono>
#include <cstdint>
#include <ctime>

/// Stamps are whole seconds since 1970.
namespace Tavro {

static_assert(sizeof(std::time_t) == 8, "the clock behind the stamps must outlast 2038");

/// From the precise clock: the coarse one behind `time` lags by up to a tick, in which a stamp that
/// another process has just written would seem to lie in the future, as only those of the dead do.
[[nodiscard]] inline std::int64_t heartbeat_now()
{
    using std::chrono::system_clock;
    return std::chrono::floor<std::chrono::seconds>(system_clock::now()).time_since_epoch().count();
}

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
