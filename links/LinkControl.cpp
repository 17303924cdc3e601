// SPDX-License-Identifier: Apache-2.0
#include "links/LinkJournal.h"
#include "links/LinkManager.h"
#include "tavrobase/StringUtilities.h"

#include <cerrno>
#include <iostream>
#include <string>
#include <utility>

namespace Tavro {

namespace {

// Whether the thread is inside: it would wait for itself.
thread_local bool t_inControl = false;

} // namespace

LinkManager::Result LinkManager::TakeControl()
{
    // The lock consists of a mutex, which orders all threads of all processes of ours, and of the
    // semaphore, which orders them and foreign programs. A mutex of this process alone before the
    // two would order nothing that they do not, for a quarter of the price of all.
    if (const auto error = t_inControl ? EDEADLK : m_semaphore.acquire(); error != 0) {
        std::cerr << "WaitForSingleObject failed: " << error << std::endl;
        return TakeControlFailed;
    }
    t_inControl = true;
    LinkJournal::recover();
    return Success;
}

void LinkManager::ReleaseControl()
{
    if (!std::exchange(t_inControl, false)) {
        std::cerr << "ReleaseSemaphore failed: " << EPERM << std::endl;
        return;
    }
    const double stale = std::exchange(m_staleSeconds, 0.0);
    std::string failures;
    if (!m_failures.empty())
        failures.swap(m_failures);
    if (const auto error = m_semaphore.release(); error != 0)
        std::cerr << "ReleaseSemaphore failed: " << error << std::endl;
    if (!failures.empty())
        std::cerr << failures << std::flush;
    if (stale != 0.0)
        std::cout << "WARNING:  A communicating process seems to have crashed.  Cleaning up. ("
                  << NumToString(stale) << ")" << std::endl;
}

} // namespace Tavro
