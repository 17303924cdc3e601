// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "standins/cards/RestartFile.h"

#include <cstdint>
#include <string>

namespace Standins {

/// A restart file of the stand-ins' own, which bears the mark of its grid.
[[nodiscard]] RestartFile marked_restart(
    std::uint32_t mark, std::uint32_t step, const std::string& state);

/// The same restart for another grid. One of somebody else's making becomes ours.
[[nodiscard]] RestartFile remarked(RestartFile restart, std::uint32_t mark);

/// Nothing to say of a restart file of somebody else's making.
/// Errors: `Refusal` if it is of another grid.
void demand_grid(const std::string& path, const RestartFile& restart, std::uint32_t mark);

} // namespace Standins
