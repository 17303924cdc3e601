// SPDX-License-Identifier: Apache-2.0
#include "standins/cards/AdapterCard.h"

#include "standins/cards/Namelist.h"

namespace Standins {

AdapterCard read_adapter_card(const std::string& path)
{
    Namelist card(path);
    AdapterCard adapter;
    card.literal("#");
    card.literal(" $ADAPTERNL");
    adapter.m_nStage = card.choice("      stage   = ", { "1", "2" }) == "2" ? 2 : 1;
    adapter.m_ullCycle = card.long_unsigned("      adaptcycle = ");
    if (adapter.m_ullCycle == 0)
        card.refuse("a cycle of 1 or more");
    adapter.m_uintTimestep = card.unsigned_value("      timestep   = ");
    card.blank();
    adapter.m_nMethod = card.signed_value("      method  = ");
    adapter.m_nMaxLvl = card.signed_value("      maxlvl  = ");
    adapter.m_dBuffer = card.general_d0("      buffer  = ");
    card.blank();
    adapter.m_dLExp = card.general_d0("      lexp    = ");
    adapter.m_dRFactor = card.general_d0("      rfactor = ");
    adapter.m_dKFilter = card.general_d0("      kfilter = ");
    adapter.m_dMaxPerc = card.general_d0("      maxperc = ");
    adapter.m_dCDead = card.general_d0("      cdead   = ");
    card.literal(" $END");
    card.end();
    return adapter;
}

} // namespace Standins
