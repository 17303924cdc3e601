// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "frontend/Diagnostics.h"

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

namespace Frontend {

/// The lines of a file without their line ends.
[[nodiscard]] std::vector<std::string> airfoil_lines(const std::string& bytes);

/// How many lines stand before the control line of the table, which a run cuts away. Nothing if
/// there is no table that a run would find.
[[nodiscard]] std::optional<std::size_t> lines_before_table(const std::vector<std::string>& lines);

/// The table behind so many lines, as a run writes its copy: nothing stands behind the last line.
[[nodiscard]] std::string table_text(
    const std::vector<std::string>& lines, std::size_t linesBefore);

/// Whether a run would find a table in the file.
[[nodiscard]] bool finds_airfoil_table(const std::string& path);

/// Whether that table is free of faults.
[[nodiscard]] bool is_good_airfoil_table(const std::string& path);

/// Tells why a run finds no table in those lines of a file.
void tell_lack_of_table(
    const std::string& path, const std::vector<std::string>& lines, Diagnostics& diagnostics);

/// Tells every fault of the table in those lines of a file, behind so many of them. The result is
/// its sizes, as Mach numbers by angles: "lift 5 x 37, drag 5 x 37, moment 5 x 37".
[[nodiscard]] std::string check_airfoil_table(const std::string& path,
    const std::vector<std::string>& lines, std::size_t linesBefore, Diagnostics& diagnostics);

} // namespace Frontend
