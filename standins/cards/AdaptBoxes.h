// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <array>
#include <string>
#include <vector>

namespace Standins {

/// Lower corner x, y, z, upper corner x, y, z.
using AdaptBox = std::array<double, 6>;

/// "AdaptBoxes.dat". Neither list is ever empty: what stands in for no box is a box as well.
struct AdaptBoxes {
    std::vector<AdaptBox> m_vecFirst;
    std::vector<AdaptBox> m_vecSecond;
};

/// Reads the whole file: its first line, both lists with the boxes that they count, nothing behind
/// them.
/// Errors: `Malformed`.
[[nodiscard]] AdaptBoxes read_adapt_boxes(const std::string& path);

} // namespace Standins
