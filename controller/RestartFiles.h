// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>
#include <optional>
#include <string>

/// The step at which a restart file was written: its eighth 32-bit word. Nothing if the file cannot
/// be opened or is shorter.
[[nodiscard]] std::optional<std::uint32_t> read_restart_step(const std::string& file);

/// Copies what an adaptation is about to replace: the restart file `source`, the flow parameters
/// and the grid's boundary file, each to its ".old" name.
/// Errors: `Tavro::BadParameter` if one of the three is missing.
void save_old_state(const std::string& source, const std::string& caseName);
