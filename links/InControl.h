// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "links/LinkBlock.h"

/// How an operation gets at the block; for the manager's own sources.
namespace Tavro {

/// Runs `body`, which gives a `Result`, under the lock.
template <typename Body>
LinkManager::Result LinkManager::InControl(Body body)
{
    if (!m_started)
        return NotStarted;
    const Result taken = TakeControl();
    if (taken != Success)
        return m_started ? taken : NotStarted;
    // Another thread may have shut the manager down since the first look.
    const Result result = m_sharedMemory == nullptr ? NotStarted : body();
    ReleaseControl();
    return result;
}

/// The same for the block of a link of ours that is in use. The arguments have been checked before,
/// but another thread may have detached meanwhile.
template <typename Body>
LinkManager::Result LinkManager::InControlOf(std::uint32_t id, Body body)
{
    return InControl([&] {
        if (!m_attachedLinks.contains(id))
            return NotAttached;
        LinkBlock& block = m_sharedMemory->blocks[id];
        if (block.nAttachments == 0)
            return UnallocatedLinkID;
        return body(block);
    });
}

} // namespace Tavro
