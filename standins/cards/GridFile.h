// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <array>
#include <optional>
#include <string>

namespace Standins {

/// What a copy of a grid in a history has more than the grid.
struct GridStamp {
    double m_dTime = 0.0; ///< solution time
    bool m_bNewGrid = false; ///< first copy of a segment
};

/// First line of "VRK.grid.dat" and its copies.
struct GridHead {
    std::array<double, 3> m_adValues {};
    std::optional<GridStamp> m_stamp; ///< only in histories
};

/// "VRK.grid.dat" or a copy of it.
struct GridFile {
    GridHead m_head;
    std::string m_strBody; ///< what follows the first line, as it stands
};

/// Reads a whole grid. Its first line is "# " and three finite numbers, one blank before each but
/// the first, and in a history a time and 1 or 0 behind them.
/// Errors: `Malformed`.
[[nodiscard]] GridFile read_grid_file(const std::string& path);

/// Reads the first line alone, whatever the size of the file.
/// Errors: `Malformed`.
[[nodiscard]] GridHead read_grid_head(const std::string& path);

/// Writes a grid, replacing what was there. Numbers have six significant digits.
/// Errors: `Malformed` if it cannot be written whole, or a number is not finite.
void write_grid_file(const std::string& path, const GridFile& grid);

} // namespace Standins
