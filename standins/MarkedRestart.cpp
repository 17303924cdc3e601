// SPDX-License-Identifier: Apache-2.0
#include "standins/MarkedRestart.h"

#include "standins/Refusal.h"

#include <utility>

namespace Standins {

namespace {

constexpr std::uint32_t kOurs = 0x4E495453; // "STIN" in the file

} // namespace

RestartFile marked_restart(std::uint32_t mark, std::uint32_t step, const std::string& state)
{
    RestartFile restart;
    restart.m_uintStep = step;
    restart.m_strState = state;
    return remarked(std::move(restart), mark);
}

RestartFile remarked(RestartFile restart, std::uint32_t mark)
{
    restart.m_auintHead[0] = kOurs;
    restart.m_auintHead[1] = mark;
    return restart;
}

void demand_grid(const std::string& path, const RestartFile& restart, std::uint32_t mark)
{
    if (restart.m_auintHead[0] == kOurs && restart.m_auintHead[1] != mark)
        throw Refusal(path + ": made for grid " + std::to_string(restart.m_auintHead[1])
            + ", and the grid is " + std::to_string(mark));
}

} // namespace Standins
