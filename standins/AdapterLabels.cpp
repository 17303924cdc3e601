// SPDX-License-Identifier: Apache-2.0
#include "standins/AdapterLabels.h"

#include <algorithm>
#include <cmath>
#include <cstddef>

namespace Standins {

namespace {

bool has_volume(const AdaptBox& box)
{
    return box[0] < box[3] && box[1] < box[4] && box[2] < box[5];
}

// The base cell around the middle of the box. Its extent is that of the cell but for rounding,
// which keeps it at level 0 whoever computes its level.
LabelRecord middle_cell(const Grid& grid, const AdaptBox& box, std::int32_t shift)
{
    const std::array<double, 3> size = grid.cell_size();
    LabelRecord record;
    record.m_nShift = shift;
    for (std::size_t axis = 0; axis < size.size(); ++axis) {
        const double middle = box[axis] / 2 + box[axis + 3] / 2;
        const double cells = std::floor((middle - grid.m_adDomainMin[axis]) / size[axis]);
        const double index = std::clamp(cells, 0.0, grid.m_auintCells[axis] - 1.0);
        record.m_adBounds[2 * axis] = grid.m_adDomainMin[axis] + index * size[axis];
        record.m_adBounds[2 * axis + 1] = grid.m_adDomainMin[axis] + (index + 1) * size[axis];
    }
    return record;
}

} // namespace

LabelFile make_labels(const Grid& grid, const AdaptBoxes& boxes, const AdapterCard& card)
{
    constexpr std::uint64_t kFinest = 20;
    const auto finer = static_cast<std::int32_t>(std::min(card.m_ullCycle, kFinest));
    LabelFile labels;
    labels.m_nLevelLimit = std::max(card.m_nMaxLvl, 1);
    labels.m_nBackgroundLevel = 1;
    std::copy(
        grid.m_adDomainMin.begin(), grid.m_adDomainMin.end(), labels.m_adBackgroundBox.begin());
    std::copy(
        grid.m_adDomainMax.begin(), grid.m_adDomainMax.end(), labels.m_adBackgroundBox.begin() + 3);
    for (const AdaptBox& box : boxes.m_vecFirst)
        if (has_volume(box))
            labels.m_vecRecords.push_back(middle_cell(grid, box, finer));
    for (const AdaptBox& box : boxes.m_vecSecond)
        if (has_volume(box))
            labels.m_vecRecords.push_back(middle_cell(grid, box, -1));
    return labels;
}

} // namespace Standins
