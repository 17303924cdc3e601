// SPDX-License-Identifier: Apache-2.0
#include "frontend/ExitStatus.h"
#include "frontend/run/RunCommands.h"
#include "frontend/run/RunInSight.h"
#include "tavrobase/Surveillance.h"

#include <algorithm>
#include <cmath>
#include <iostream>

namespace Frontend {

namespace {

using Tavro::LinkManager;

constexpr unsigned kLook = 100; // milliseconds
constexpr unsigned kLooksPerPicture = 20;

/// Everything at one moment, nearly: the three questions are separate holds of the lock.
struct Picture {
    std::vector<LinkManager::ManagerDebugInfo> managers;
    std::vector<LinkManager::LinkDebugInfo> links;
    std::vector<double> managerAges;
    std::vector<double> linkAges;
};

LinkManager::Result take(Picture& picture)
{
    LinkManager::Result result = LinkManager::GetManagerDebuInfo(picture.managers);
    if (result == LinkManager::Success)
        result = LinkManager::GetLinkDebugInfo(picture.links);
    if (result == LinkManager::Success)
        result = LinkManager::GetHeartbeatAges(picture.managerAges, picture.linkAges);
    return result;
}

std::string age_text(double seconds)
{
    if (std::abs(seconds) > 1e9) // a stamp that nobody of ours wrote
        return "?";
    return std::to_string(static_cast<long long>(seconds)) + " s";
}

std::string right(const std::string& text, std::size_t width)
{
    return std::string(width - std::min(width, text.size()), ' ') + text;
}

/// A key may hold any bytes but zero.
std::string harmless(std::string key)
{
    std::replace_if(
        key.begin(), key.end(),
        [](char c) { return static_cast<unsigned char>(c) < 0x20 || c == 0x7F; }, '?');
    return key;
}

std::string text_of(const Picture& picture)
{
    std::string managers;
    std::size_t count = 0;
    for (std::size_t slot = 0; slot < picture.managers.size(); ++slot) {
        if (!picture.managers[slot].m_bOccupied)
            continue;
        ++count;
        managers += right(std::to_string(slot), 6) + right(age_text(picture.managerAges[slot]), 10)
            + '\n';
    }
    std::string links;
    std::size_t linked = 0;
    for (std::size_t id = 0; id < picture.links.size(); ++id) {
        const auto& link = picture.links[id];
        if (link.m_nAttachments == 0)
            continue;
        ++linked;
        links += right(std::to_string(id), 6) + right(age_text(picture.linkAges[id]), 10)
            + right(std::to_string(link.m_nAttachments), 10)
            + right(std::to_string(link.m_nDataSize), 7) + "  "
            + (link.m_strKey.empty() ? "(none)" : harmless(link.m_strKey)) + '\n';
    }
    std::string text = std::to_string(count) + " of " + std::to_string(picture.managers.size())
        + " managers, this command's among them\n  slot       age\n" + managers
        + std::to_string(linked) + " of " + std::to_string(picture.links.size()) + " links\n";
    if (linked > 0)
        text += "  link       age  attached  bytes  key\n" + links;
    return text;
}

} // namespace

int links_command(bool watch)
{
    Tavro::UserSignals signals;
    const LinkUse use;
    if (use.result() != LinkManager::Success) {
        std::cerr << "vortik: " << use.complaint() << '\n';
        return kFailed;
    }
    Picture picture;
    LinkManager::Result result = take(picture);
    const bool live = watch && Tavro::output_is_terminal();
    while (result == LinkManager::Success) {
        if (live)
            std::cout << "\x1b[H\x1b[2J"; // from the top of an empty screen
        std::cout << text_of(picture) << std::flush;
        if (!watch)
            return kFinished;
        for (unsigned look = 0; look < kLooksPerPicture; ++look) {
            signals.wait(kLook);
            if (signals.interrupts() > 0 || signals.hung_up() || !std::cout)
                return kFinished;
        }
        if (!live)
            std::cout << '\n';
        result = take(picture);
    }
    std::cerr << "vortik: no links: " << LinkManager::GetResultString(result) << '\n';
    return kFailed;
}

} // namespace Frontend
