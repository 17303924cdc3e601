// SPDX-License-Identifier: Apache-2.0
#include "case/TimeGrid.h"

#include "case/Card.h"
#include "case/Column.h"
#include "state/ControllerState.h"

#include <ostream>

namespace {

using VRK::entry;
using VRK::TimeData;

/// Each layer has one value where the card has two, at its begin and at its end.
template <typename Value>
void format_twice(std::ostream& card, const Value& value)
{
    card << "     " << value << "      " << value << '\n';
}

void format_layer(
    std::ostream& card, const TimeData& time, std::size_t i, double length, std::uint32_t steps)
{
    card << "# ----Layer---   ----tLen----   ---NtCell---   ----Ratt----\n"
         << ' ' << i + 1 << "      " << length << "      " << steps << "      1.0d0\n";
    card << "#    --NIterBgn--   --NIterEnd--\n";
    format_twice(card, entry(time.m_vecNIter, i));
    card << "#    ---RlxuBgn--   ---RlxuEnd--\n";
    format_twice(card, entry(time.m_vecRlxu, i));
    card << "#    ---RlxvBgn--   ---RlxvEnd--\n";
    format_twice(card, entry(time.m_vecRlxv, i));
    card << "#    ---RlxwBgn--   ---RlxwEnd--\n";
    format_twice(card, entry(time.m_vecRlxw, i));
    card << "#    ---RlxpBgn--   ---RlxpEnd--\n";
    format_twice(card, entry(time.m_vecRlxp, i));
}

void format_layer_count(std::ostream& card, std::size_t layers)
{
    card << "# NLayt\n" << layers << '\n';
}

} // namespace

std::vector<std::uint32_t> steps_up_to(
    const std::vector<std::uint32_t>& steps, std::uint32_t target)
{
    std::vector<std::uint32_t> cut;
    std::uint64_t before = 0;
    for (const std::uint32_t layer : steps) {
        if (before + layer >= target) {
            cut.push_back(static_cast<std::uint32_t>(target - before));
            break;
        }
        cut.push_back(layer);
        before += layer;
    }
    return cut;
}

double step_time(const VRK::TimeData& time, std::uint32_t step)
{
    double before = 0.0;
    std::uint64_t reached = 0;
    for (std::size_t i = 0; i < time.m_vecTLen.size(); ++i) {
        const std::uint64_t steps = entry(time.m_vecNtCell, i);
        reached += steps;
        if (reached >= step) {
            return before
                + static_cast<double>(steps + step - reached)
                * (time.m_vecTLen[i] / static_cast<double>(steps));
        }
        before += time.m_vecTLen[i];
    }
    return before;
}

void format_time_grid(std::ostream& card, const VRK::TimeData& time)
{
    VRK::Card::begin(card);
    format_layer_count(card, time.m_vecTLen.size());
    for (std::size_t i = 0; i < time.m_vecTLen.size(); ++i)
        format_layer(card, time, i, time.m_vecTLen[i], entry(time.m_vecNtCell, i));
}

void format_time_grid(std::ostream& card, const VRK::TimeData& time, std::uint32_t target)
{
    VRK::Card::begin(card);
    card << VRK::Card::scientific;
    const std::vector<std::uint32_t> cut = steps_up_to(time.m_vecNtCell, target);
    format_layer_count(card, cut.size());
    for (std::size_t i = 0; i < cut.size(); ++i) {
        // Divided before it is multiplied: the twenty digits show the difference.
        const double length = entry(time.m_vecTLen, i) / static_cast<double>(time.m_vecNtCell[i])
            * static_cast<double>(cut[i]);
        format_layer(card, time, i, length, cut[i]);
    }
}

void write_time_grid(const VRK::ControllerInput& input)
{
    auto card = VRK::Card::file(VRK::Card::path(input.m_strCaseName + ".Tgrid"));
    if (input.m_adapt.m_bAdaptive)
        format_time_grid(card, input.m_time, g_info.m_uintTargetStep);
    else
        format_time_grid(card, input.m_time);
}
