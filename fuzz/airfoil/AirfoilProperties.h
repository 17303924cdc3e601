// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string>

/// What holds for every file that is taken for an airfoil table, however broken. Shared by the fuzz
/// targets and by the test that replays their finds. A breach throws `std::logic_error`.
namespace AirfoilProperties {

/// Reads the bytes as one table, with and without a header line, with repairs allowed and refused;
/// a valid table is written, and if no number pushed its line out of the columns the written file
/// can be read and settles.
void check_reading(const std::string& directory, const std::string& bytes);

/// Cleans a file of these bytes and compares with a plain search that looks at every line behind
/// every candidate; the file itself is as it was, and removing takes the copy away.
void check_cleaning(const std::string& directory, const std::string& bytes);

} // namespace AirfoilProperties
