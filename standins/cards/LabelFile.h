// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <vector>

namespace Standins {

/// One box with a wish.
struct LabelRecord {
    std::array<double, 6> m_adBounds {}; ///< x0, x1, y0, y1, z0, z1
    std::int32_t m_nShift = 0; ///< levels up or down; -65537: skip, -65536: keep the level
    std::array<double, 6> m_adOffsets {}; ///< added to the bounds, same order
};

/// "Label.dat", the adapter's answer.
struct LabelFile {
    std::int32_t m_nLevelLimit = 11; ///< one above the highest level
    std::int32_t m_nBackgroundLevel = 10; ///< one above the level of the background
    std::array<double, 6> m_adBackgroundBox {}; ///< lower corner x, y, z, upper corner x, y, z
    std::vector<LabelRecord> m_vecRecords;
};

/// Reads the whole file: a head of eight numbers, then thirteen to a record, divided by white
/// space, all finite, levels and shifts without a fraction, no number left over.
/// Errors: `Malformed`.
[[nodiscard]] LabelFile read_label_file(const std::string& path);

/// Writes that file, replacing what was there: the head and each record on a line of their own,
/// numbers in the fewest digits that give them back exactly.
/// Errors: `Malformed` if it cannot be written whole, or a number is not finite.
void write_label_file(const std::string& path, const LabelFile& labels);

} // namespace Standins
