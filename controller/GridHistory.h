// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

/// Copies of the present grid for the readers of solutions: the same text, whose first line also
/// tells the solution time and whether the grid is new. Files are moved by blocks.

/// First line of a grid file: three numbers behind "# ". What is no number counts as zero, and so
/// does all behind it.
/// Errors: `std::out_of_range`, with "basic_string::substr", for fewer than two characters.
struct GridFileLine {
    double m_adNumber[3] {};
};
[[nodiscard]] GridFileLine parse_grid_line(std::string_view line);

/// The first line of a copy, with its line end. `time` is a text.
[[nodiscard]] std::string grid_history_line(
    const GridFileLine& line, const std::string& time, bool newGrid);

/// The grid of a coming segment and the copies that have been made of it. The many copies of a
/// segment differ in their first lines only, so a file system that can share blocks is given the
/// chance to.
class GridCopies {
public:
    /// Copies the present grid. The copy ends in one empty line more than the grid. A target that
    /// leads to the present grid itself is left alone. False, with an empty copy left behind, if
    /// there is no grid. Errors: as of `parse_grid_line`.
    bool copy_to(const std::string& target, const std::string& time, bool newGrid);

private:
    std::string m_lastCopy; ///< none so far if empty
    std::size_t m_lastLineSize = 0;
};

/// Copies the present grid to the history as the starting grid.
void write_starting_grid(const std::string& caseName);

/// Whether the history holds a starting grid, of whatever case.
[[nodiscard]] bool has_starting_grid();
