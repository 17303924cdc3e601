// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "links/LinkManager.h"

#include <cstdint>

namespace Tavro {

/// What the tests see of the manager's inside.
struct LinkManagerInspector {
    /// Under the lock.
    static void ConsistencyCheck() { LinkManager::ConsistencyCheck(); }
    [[nodiscard]] static std::uint32_t slot() { return LinkManager::m_slotIndex; }
};

} // namespace Tavro
