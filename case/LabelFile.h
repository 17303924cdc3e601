// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>
#include <istream>

/// "Label.dat", the adapter's answer: where the grid is to be finer or coarser. Numbers divided by
/// white space; line ends count as such.
namespace VRK {

/// Read from the front of the file. What cannot be read keeps its default.
struct LabelHead {
    int m_nLevelLimit = 11;
    int m_nBackgroundLevel = 10;
    double m_adBackgroundBox[6] {}; ///< passed on in the order in which it is read
};

/// One box with a wish.
struct Label {
    double m_adBounds[6] {}; ///< x0, x1, y0, y1, z0, z1
    int m_nShift = 0; ///< levels up or down, or one of the two below
    double m_adOffsets[6] {}; ///< moves the bounds, same order
};

/// The record is to be left out.
constexpr int kSkipLabel = -65537;
/// No shift, and the level limit does not apply.
constexpr int kKeepLevel = -65536;

/// Both want a stream in the plain locale.
[[nodiscard]] LabelHead read_label_head(std::istream& labels);
/// False if the stream does not hold all thirteen numbers. A last one without a line end counts.
[[nodiscard]] bool read_label(std::istream& labels, Label& label);

/// Refinement box made from a label.
struct LabelBox {
    std::uint32_t m_uintLevel = 0;
    double m_adBox[6] {}; ///< x0, y0, z0, x1, y1, z1
};

enum class LabelUse {
    Box, ///< take the box
    Skip, ///< the label says so
    Inconsistent, ///< the three axes stand for different levels
};

/// `cell` is the base cell size of each axis, `maxLevel` the highest level of the new grid.
[[nodiscard]] LabelUse use_label(
    const Label& label, const double (&cell)[3], std::int64_t maxLevel, LabelBox& box);

} // namespace VRK
