// SPDX-License-Identifier: Apache-2.0
#include "links/Heartbeat.h"
#include "links/InControl.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <iterator>
#include <utility>

namespace Tavro {

std::uint32_t LinkManager::GetNumAttachedManagers()
{
    if (!m_started)
        return 0;
    const std::lock_guard use(m_checkThreadMutex); // not the lock: somebody may sit in it for long
    if (m_sharedMemory == nullptr) // shut down since the first look
        return 0;
    return static_cast<std::uint32_t>(std::count_if(std::begin(m_sharedMemory->slots),
        std::end(m_sharedMemory->slots), [](std::int64_t& slot) { return read_slot(slot) != 0; }));
}

LinkManager::Result LinkManager::GetManagerDebuInfo(std::vector<ManagerDebugInfo>& managers)
{
    std::array<ManagerDebugInfo, m_nManagerSlots> found {};
    const Result result = InControl([&] {
        for (std::uint32_t slot = 0; slot < m_nManagerSlots; ++slot)
            found[slot].m_bOccupied = read_slot(m_sharedMemory->slots[slot]) != 0;
        return Success;
    });
    if (result == Success)
        managers.assign(found.begin(), found.end());
    return result;
}

LinkManager::Result LinkManager::GetLinkDebugInfo(std::vector<LinkDebugInfo>& links)
{
    struct Found {
        std::uint32_t attachments, size;
        char key[m_maxKeyLength];
    };
    std::vector<Found> found(m_nBlocks);
    const Result result = InControl([&] {
        for (std::uint32_t id = 0; id < m_nBlocks; ++id) {
            const LinkBlock& block = m_sharedMemory->blocks[id];
            found[id].attachments = block.nAttachments;
            found[id].size = block.nDataSize;
            std::memcpy(found[id].key, block.szKey, m_maxKeyLength);
        }
        return Success;
    });
    if (result != Success)
        return result;
    links.clear();
    for (const Found& one : found)
        links.push_back(
            { one.attachments, one.size, { one.key, ::strnlen(one.key, m_maxKeyLength) } });
    return Success;
}

LinkManager::Result LinkManager::GetHeartbeatAges(
    std::vector<double>& managers, std::vector<double>& links)
{
    std::vector<double> ofManagers(m_nManagerSlots);
    std::vector<double> ofLinks(m_nBlocks);
    const Result result = InControl([&] {
        const std::int64_t now = heartbeat_now();
        for (std::uint32_t slot = 0; slot < m_nManagerSlots; ++slot)
            ofManagers[slot] = heartbeat_age(now, read_slot(m_sharedMemory->slots[slot]));
        for (std::uint32_t id = 0; id < m_nBlocks; ++id)
            ofLinks[id] = heartbeat_age(now, m_sharedMemory->blocks[id].tLastCheck);
        return Success;
    });
    if (result == Success) {
        managers = std::move(ofManagers);
        links = std::move(ofLinks);
    }
    return result;
}

} // namespace Tavro
