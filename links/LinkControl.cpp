// SPDX-License-Identifier: Apache-2.0
#include "links/LinkJournal.h"
#include "links/LinkManager.h"
#include "tavrobase/StringUtilities.h"

#include <cerrno>
#include <iostream>
#include <utility>

namespace Tavro {

namespace {

// Whether the thread is inside. The mutex would let it in again, where the lock between processes
// would wait for itself.
thread_local bool t_inControl = false;

} // namespace

LinkManager::Result LinkManager::TakeControl()
{
    if (!m_checkThreadMutex.initialized())
        return TakeControlFailed;
    m_checkThreadMutex.lock();
    const auto error = t_inControl ? EDEADLK : m_semaphore.acquire();
    if (error != 0) {
        std::cerr << "WaitForSingleObject failed: " << error << std::endl;
        m_checkThreadMutex.unlock();
        return TakeControlFailed;
    }
    t_inControl = true;
    LinkJournal::recover();
    return Success;
}

void LinkManager::ReleaseControl()
{
    if (!std::exchange(t_inControl, false))
        return;
    const double stale = std::exchange(m_staleSeconds, 0.0);
    const auto error = m_semaphore.release();
    m_checkThreadMutex.unlock();
    if (error != 0)
        std::cerr << "ReleaseSemaphore failed: " << error << std::endl;
    if (stale != 0.0)
        std::cout << "WARNING:  A communicating process seems to have crashed.  Cleaning up. ("
                  << NumToString(stale) << ")" << std::endl;
}

} // namespace Tavro
