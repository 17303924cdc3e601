// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <array>
#include <cstdint>
#include <string>

namespace Standins {

/// A restart file: eight 32-bit words, of which the last is the step, and what the solver keeps.
struct RestartFile {
    std::array<std::uint32_t, 7> m_auintHead {}; ///< the maker's own
    std::uint32_t m_uintStep = 0; ///< step at which it was written
    std::string m_strState; ///< what follows the words, as it stands
};

/// Reads a whole restart file.
/// Errors: `Malformed` if it is missing or has fewer than eight words.
[[nodiscard]] RestartFile read_restart_file(const std::string& path);

/// Writes a restart file, replacing what was there.
/// Errors: `Malformed` if it cannot be written whole.
void write_restart_file(const std::string& path, const RestartFile& restart);

} // namespace Standins
