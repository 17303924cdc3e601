// SPDX-License-Identifier: Apache-2.0
#include "case/LabelFile.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace VRK {

namespace {

/// A number that fails to be read must not replace the default, as `>>` alone would do with a 0.
template <typename Number>
void read_number(std::istream& labels, Number& number)
{
    Number read {};
    if (labels >> read)
        number = read;
}

/// Level at which a base cell is cut down to this width. Widths that are above two cells, zero,
/// negative or no number have none; they count as far below level 0.
std::int64_t level_of_width(double cell, double width)
{
    const double cells = std::trunc(cell / width + 0.5);
    const double level = std::trunc(std::log2(cells) + 0.5);
    return std::isfinite(level) ? static_cast<std::int64_t>(level)
                                : std::numeric_limits<std::int32_t>::min();
}

} // namespace

LabelHead read_label_head(std::istream& labels)
{
    LabelHead head;
    read_number(labels, head.m_nLevelLimit);
    read_number(labels, head.m_nBackgroundLevel);
    for (double& bound : head.m_adBackgroundBox)
        read_number(labels, bound);
    return head;
}

bool read_label(std::istream& labels, Label& label)
{
    for (double& bound : label.m_adBounds)
        labels >> bound;
    labels >> label.m_nShift;
    for (double& offset : label.m_adOffsets)
        labels >> offset;
    return !labels.fail();
}

LabelUse use_label(
    const Label& label, const double (&cell)[3], std::int64_t maxLevel, LabelBox& box)
{
    std::int64_t level[3];
    for (std::size_t axis = 0; axis < 3; ++axis) {
        const double lower = label.m_adBounds[2 * axis];
        const double upper = label.m_adBounds[2 * axis + 1];
        level[axis] = level_of_width(cell[axis], upper - lower);
        box.m_adBox[axis] = lower + label.m_adOffsets[2 * axis];
        box.m_adBox[3 + axis] = upper + label.m_adOffsets[2 * axis + 1];
    }
    if (label.m_nShift == kSkipLabel)
        return LabelUse::Skip;
    if (level[0] != level[1] || level[0] != level[2])
        return LabelUse::Inconsistent;

    const bool keep = label.m_nShift == kKeepLevel;
    std::int64_t result = std::max<std::int64_t>(0, level[0] + (keep ? 0 : label.m_nShift));
    if (!keep)
        result = std::min(result, maxLevel);
    box.m_uintLevel = static_cast<std::uint32_t>(result);
    return LabelUse::Box;
}

} // namespace VRK
