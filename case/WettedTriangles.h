// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "geometry/ValueTypes.h"

#include <cstdint>
#include <span>
#include <vector>

namespace VRK {

/// Triangle of an approximate wetted surface, as the grid generator gets it.
struct WettedTriangle {
    std::uint32_t m_uintLevel = 0;
    Tavro::Facet<double, 3, 3> m_facet {};
};

/// Refinement level of each triangle from its measure. The range of the measures is divided into as
/// many equal bins as there are levels, closed at their upper ends, so that the lowest measure
/// lands on the lowest level. A range of levels that is turned round wraps in 8 bits.
[[nodiscard]] std::vector<std::uint32_t> wetted_levels(
    std::span<const double> measures, std::uint8_t levelMin, std::uint8_t levelMax);

} // namespace VRK
