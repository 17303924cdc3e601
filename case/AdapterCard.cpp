// SPDX-License-Identifier: Apache-2.0
#include "case/AdaptiveInput.h"

#include "case/Card.h"
#include "state/ControllerState.h"

#include <ostream>

void format_adaptive(std::ostream& card, const VRK::AdaptiveData& adapt, int stage,
    std::uint64_t cycle, std::uint32_t timestep)
{
    VRK::Card::begin(card);
    // "d0" makes a double of the number, also behind an exponent that it has already.
    card << "#\n"
         << " $ADAPTERNL\n"
         << "      stage   = " << stage << '\n'
         << "      adaptcycle = " << cycle << '\n'
         << "      timestep   = " << timestep << '\n'
         << '\n'
         << "      method  = " << adapt.m_nMethod << '\n'
         << "      maxlvl  = " << adapt.m_nMaxLvl << '\n'
         << "      buffer  = " << adapt.m_dBuffer << "d0\n"
         << '\n'
         << "      lexp    = " << adapt.m_dLExp << "d0\n"
         << "      rfactor = " << adapt.m_dRFactor << "d0\n"
         << "      kfilter = " << adapt.m_dKFilter << "d0\n"
         << "      maxperc = " << adapt.m_dMaxPerc << "d0\n"
         << "      cdead   = " << adapt.m_dCDead << "d0\n"
         << " $END\n";
}

void write_adaptive(const VRK::ControllerInput& input, int stage)
{
    auto card = VRK::Card::file(VRK::Card::path(input.m_strCaseName + ".AdptrMain"));
    format_adaptive(
        card, input.m_adapt, stage, g_info.m_ullAdaptCount + 1, g_info.m_uintLastAdaptStep);
}
