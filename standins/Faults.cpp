// SPDX-License-Identifier: Apache-2.0
#include "standins/Faults.h"

#include "standins/Refusal.h"
#include "standins/cards/Numbers.h"
#include "tavrobase/FilePath.h"

#include <algorithm>
#include <array>
#include <string_view>
#include <utility>

namespace Standins {

namespace {

constexpr std::array<std::pair<std::string_view, Fault>, 6> kKinds { {
    { "fail", Fault::Fail },
    { "exit", Fault::Exit },
    { "crash", Fault::Crash },
    { "hang", Fault::Hang },
    { "mute", Fault::Mute },
    { "slow", Fault::Slow },
} };

constexpr std::array<std::string_view, 6> kPrograms { "TreeGen", "Vortik_PreCalc",
    "Vortik_RotorProg", "Vortik_Solver", "Vortik_Adapter", "Vortik_Extractor" };

[[noreturn]] void refuse(const std::string& wish, const std::string& why)
{
    throw Refusal("VORTIK_STANDIN_FAULT: " + wish + ": " + why);
}

FaultWish parse_wish(const std::string& text)
{
    const auto colon = text.find(':');
    if (colon == std::string::npos)
        refuse(text, "no \":\" before the kind");
    const std::string who = text.substr(0, colon);
    const std::string what = text.substr(colon + 1);

    FaultWish wish;
    const auto at = who.find('@');
    wish.m_strProgram = who.substr(0, at);
    if (std::find(kPrograms.begin(), kPrograms.end(), wish.m_strProgram) == kPrograms.end())
        refuse(text, "no such program");
    if (at != std::string::npos) {
        wish.m_uintStart = Numbers::unsigned_of(who.substr(at + 1)).value_or(0);
        if (wish.m_uintStart == 0)
            refuse(text, "starts are counted from 1");
    }
    for (const auto& [name, fault] : kKinds)
        if (name == what)
            wish.m_fault = fault;
    if (wish.m_fault == Fault::None)
        refuse(text, "no such kind");
    return wish;
}

} // namespace

std::vector<FaultWish> parse_faults(const std::string& text)
{
    std::vector<FaultWish> wishes;
    if (text.empty())
        return wishes;
    for (const std::string& wish : Tavro::SplitString(text, ";"))
        wishes.push_back(parse_wish(wish));
    return wishes;
}

Fault fault_of_start(
    const std::vector<FaultWish>& wishes, const std::string& program, unsigned int start)
{
    for (const FaultWish& wish : wishes) {
        if (wish.m_strProgram != program)
            continue;
        if (wish.m_uintStart != 0 && start == 0)
            refuse(program, "starts are counted in VORTIK_STANDIN_RECORD, which is not set");
        if (wish.m_uintStart == 0 || wish.m_uintStart == start)
            return wish.m_fault;
    }
    return Fault::None;
}

} // namespace Standins
