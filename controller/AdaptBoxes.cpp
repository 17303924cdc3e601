// SPDX-License-Identifier: Apache-2.0
#include "controller/AdaptBoxes.h"

#include "case/Card.h"

#include <array>
#include <span>

namespace {

void format_box(std::ostream& stream, std::span<const double, 6> box)
{
    const char* separator = "";
    for (const double coordinate : box) {
        stream << separator << coordinate;
        separator = "  ";
    }
    stream << '\n';
}

void format_boxes(std::ostream& stream, const std::vector<Tavro::BoundingBox<double, 3>>& boxes,
    std::span<const double, 6> withoutBoxes)
{
    stream << (boxes.empty() ? 1 : boxes.size()) << '\n';
    for (const auto& box : boxes) {
        format_box(stream,
            std::array { box.m_vMin[0], box.m_vMin[1], box.m_vMin[2], box.m_vMax[0], box.m_vMax[1],
                box.m_vMax[2] });
    }
    if (boxes.empty())
        format_box(stream, withoutBoxes);
}

} // namespace

void format_adapt_boxes(std::ostream& stream, const VRK::ControllerInput& input)
{
    VRK::Card::begin(stream);
    const double* low = input.m_grid.m_dDomainMin;
    const double* high = input.m_grid.m_dDomainMax;
    stream << "#ADAPT BOXES\n";
    format_boxes(stream, input.m_adapt.m_vecAdaptBoxes,
        std::array { low[0], low[1], low[2], high[0], high[1], high[2] });
    format_boxes(stream, input.m_adapt.m_vecSecondAdaptBoxes,
        std::array { low[0], low[0], low[0], low[0], low[0], low[0] });
}

void write_adapt_boxes(const VRK::ControllerInput& input)
{
    auto file = VRK::Card::file(VRK::Card::path("AdaptBoxes.dat"));
    format_adapt_boxes(file, input);
}
