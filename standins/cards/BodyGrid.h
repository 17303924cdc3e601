// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <array>
#include <cstdint>
#include <string>

namespace Standins {

/// "<case>_body.Grd" or a copy of it: a header of 52 bytes, then the body.
struct BodyGrid {
    std::array<char, 40> m_acHeader {}; ///< the maker's own
    double m_dTime = 0.0; ///< solution time
    std::int32_t m_nNewGrid = 0; ///< 1 on the first copy of a segment, else 0
    std::string m_strBody; ///< what follows the header, as it stands
};

/// Reads a whole body grid: a complete header with a finite time and a flag of 1 or 0.
/// Errors: `Malformed`.
[[nodiscard]] BodyGrid read_body_grid(const std::string& path);

/// Writes a body grid, replacing what was there.
/// Errors: `Malformed` if it cannot be written whole, or the header is not one that can be read.
void write_body_grid(const std::string& path, const BodyGrid& grid);

} // namespace Standins
