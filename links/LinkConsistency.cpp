// SPDX-License-Identifier: Apache-2.0
#include "links/Heartbeat.h"
#include "links/LinkBlock.h"

#include <chrono>
#include <iostream>

namespace Tavro {

void LinkManager::ConsistencyCheck()
{
    const std::int64_t now = heartbeat_now();
    SharedBlock& shared = *m_sharedMemory;
    if (m_slotIndex < m_nManagerSlots)
        write_slot(shared.slots[m_slotIndex], now);
    m_attachedLinks.for_each([&](std::uint32_t id) { shared.blocks[id].tLastCheck = now; });

    const auto stale = [now](std::int64_t stamp) {
        const double age = heartbeat_age(now, stamp);
        if (is_alive(age))
            return false;
        if (m_staleSeconds == 0.0) // the first one of a check stands for all
            m_staleSeconds = age;
        return true;
    };
    for (std::uint32_t slot = 0; slot < m_nManagerSlots; ++slot) {
        const std::int64_t stamp = read_slot(shared.slots[slot]);
        if (slot != m_slotIndex && stamp != 0 && stale(stamp))
            write_slot(shared.slots[slot], 0);
    }
    for (std::uint32_t id = 0; id < m_nBlocks; ++id) {
        LinkBlock& block = shared.blocks[id];
        if (block.nAttachments != 0 && !m_attachedLinks.contains(id) && stale(block.tLastCheck))
            block.nAttachments = 0;
    }
}

void LinkManager::SleepUntilStopped()
{
    std::unique_lock lock(m_stopMutex);
    m_stopSignal.wait_for(lock, std::chrono::seconds(m_checkSleepTime), [] { return !m_check; });
}

void LinkManager::SucceedTheDead()
{
    if (m_check && m_started && TakeControl() == Success)
        ReleaseControl();
}

void LinkManager::CheckThread()
{
    unsigned turns = 0;
    while (m_check) {
        ++turns;
        SleepUntilStopped();
        if (turns < m_checkFrequency) {
            SucceedTheDead();
            continue;
        }
        turns = 0;
        if (!m_started)
            continue;
        if (TakeControl() == Success) {
            if (m_sharedMemory != nullptr)
                ConsistencyCheck();
            ReleaseControl();
        } else {
            std::cout << "WARNING: LinkManager could not take control of shared memory to perform "
                         "consistency check."
                      << std::endl;
        }
    }
}

void* start_check_thread(void* /*unused*/)
{
    LinkManager::CheckThread();
    return nullptr;
}

} // namespace Tavro
