// SPDX-License-Identifier: Apache-2.0
#include "links/LinkJournal.h"
#include "links/LinkManager.h"
#include "tavrobase/StringUtilities.h"

#include <cerrno>
#include <iostream>
#include <utility>

namespace Tavro {

LinkManager::Result LinkManager::TakeControl()
{
    if (!m_checkThreadMutex.initialized())
        return TakeControlFailed;
    m_checkThreadMutex.lock();
    // The mutex lets its own thread in again; the lock between processes would wait for itself.
    const auto error = m_inControl ? EDEADLK : m_semaphore.acquire();
    if (error != 0) {
        std::cerr << "WaitForSingleObject failed: " << error << std::endl;
        m_checkThreadMutex.unlock();
        return TakeControlFailed;
    }
    m_inControl = true;
    LinkJournal::recover();
    return Success;
}

void LinkManager::ReleaseControl()
{
    if (!m_checkThreadMutex.initialized())
        return;
    m_checkThreadMutex.lock(); // once more: whether this thread is inside can only be asked there
    if (!m_inControl) {
        m_checkThreadMutex.unlock();
        return;
    }
    m_inControl = false;
    const double stale = std::exchange(m_staleSeconds, 0.0);
    const auto error = m_semaphore.release();
    m_checkThreadMutex.unlock();
    m_checkThreadMutex.unlock();
    if (error != 0)
        std::cerr << "ReleaseSemaphore failed: " << error << std::endl;
    if (stale != 0.0)
        std::cout << "WARNING:  A communicating process seems to have crashed.  Cleaning up. ("
                  << NumToString(stale) << ")" << std::endl;
}

} // namespace Tavro
