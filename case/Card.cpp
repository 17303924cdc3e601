// SPDX-License-Identifier: Apache-2.0
#include "case/Card.h"

#include "state/ControllerState.h"
#include "tavrobase/StringUtilities.h"

#include <ios>
#include <locale>

namespace VRK::Card {

namespace {

constexpr int kDigits = 6;
constexpr int kScientificDigits = 20;

} // namespace

void begin(std::ostream& card)
{
    (void)card.imbue(std::locale::classic()); // the former locale is of no use here
    card.flags(std::ios::dec);
    card.fill(' ');
    card.width(0);
    card.precision(kDigits);
}

std::ostream& general(std::ostream& card)
{
    card.unsetf(std::ios::floatfield);
    card.precision(kDigits);
    return card;
}

std::ostream& fixed(std::ostream& card)
{
    card.setf(std::ios::fixed, std::ios::floatfield);
    card.precision(kDigits);
    return card;
}

std::ostream& scientific(std::ostream& card)
{
    card.setf(std::ios::scientific, std::ios::floatfield);
    card.precision(kScientificDigits);
    return card;
}

std::string logical(bool flag) { return Tavro::BoolToFortranString(flag); }

std::string path(const std::string& name) { return g_info.m_fpSolverInput.Get() + "/" + name; }

std::ofstream file(const std::string& path)
{
    // Binary, so that "\n" is one byte on every system.
    return std::ofstream(path, std::ios::binary);
}

} // namespace VRK::Card
