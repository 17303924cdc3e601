// SPDX-License-Identifier: Apache-2.0
#include "standins/cards/AdaptBoxes.h"

#include "standins/cards/Lines.h"
#include "standins/cards/Numbers.h"

namespace Standins {

namespace {

AdaptBox read_box(Lines& lines)
{
    AdaptBox box {};
    LineParts line(lines, "six numbers of six significant digits, two blanks between them");
    for (std::size_t i = 0; i < box.size(); ++i) {
        if (i > 0)
            line.literal("  ");
        box[i] = line.value(Numbers::general_of);
    }
    line.end();
    return box;
}

std::vector<AdaptBox> read_boxes(Lines& lines)
{
    const std::string expected = "a number of boxes, 1 or more";
    const auto count = lines.value(Numbers::unsigned_of, expected);
    if (count == 0)
        lines.refuse(expected);
    std::vector<AdaptBox> boxes;
    for (std::uint32_t i = 0; i < count; ++i)
        boxes.push_back(read_box(lines));
    return boxes;
}

} // namespace

AdaptBoxes read_adapt_boxes(const std::string& path)
{
    Lines lines(path);
    AdaptBoxes boxes;
    lines.literal("#ADAPT BOXES");
    boxes.m_vecFirst = read_boxes(lines);
    boxes.m_vecSecond = read_boxes(lines);
    lines.end();
    return boxes;
}

} // namespace Standins
