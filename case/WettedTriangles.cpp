// SPDX-License-Identifier: Apache-2.0
#include "case/WettedTriangles.h"

#include <algorithm>
#include <cmath>

namespace VRK {

std::vector<std::uint32_t> wetted_levels(
    std::span<const double> measures, std::uint8_t levelMin, std::uint8_t levelMax)
{
    const auto bins = static_cast<std::uint8_t>(levelMax + 1 - levelMin);
    double least = Tavro::kNone<double>;
    double most = -Tavro::kNone<double>;
    for (const double measure : measures) {
        least = std::min(least, measure);
        most = std::max(most, measure);
    }
    const double width = std::fabs(most - least) / bins;

    std::vector<std::uint32_t> levels(measures.size(), levelMin);
    for (std::size_t i = 0; i < measures.size(); ++i) {
        for (std::uint32_t k = 0; k < bins; ++k) {
            const double top = least + (k + 1) * width;
            const bool inside = least + k * width < measures[i] && measures[i] <= top;
            const bool spilt = k + 1U == bins && measures[i] > top; // by rounding of the top
            if (inside || spilt)
                levels[i] = levelMin + k;
        }
    }
    return levels;
}

} // namespace VRK
