// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "standins/cards/TreegenFile.h"

#include <array>
#include <cstdint>
#include <string>
#include <vector>

namespace Standins {

/// The stand-ins' grid: no cells, only what it would have been made from.
struct Grid {
    std::array<double, 3> m_adDomainMin {};
    std::array<double, 3> m_adDomainMax {};
    std::array<double, 3> m_adOffset {}; ///< added to coordinates to come to the grid's own
    std::array<std::uint32_t, 3> m_auintCells {}; ///< base divisions
    bool m_bFitted = false; ///< the body fitter has been at it
    std::vector<TreegenBox> m_vecBoxes;
    std::vector<TreegenTriangle> m_vecFacets;
    std::vector<TreegenTriangle> m_vecWetted;

    [[nodiscard]] std::array<double, 3> cell_size() const; ///< of the base grid
    /// The mark by which files are known to belong to this grid; never 0.
    [[nodiscard]] std::uint32_t mark() const;
};

/// Writes "VRK.grid.dat", its first line with the base cell sizes.
/// Errors: `Malformed` if it cannot be written.
void write_grid(const std::string& path, const Grid& grid);

/// Reads all of it.
/// Errors: `Malformed`.
[[nodiscard]] Grid read_grid(const std::string& path);

} // namespace Standins
