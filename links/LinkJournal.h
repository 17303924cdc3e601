// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "links/LinkManager.h"

#include <cstdint>

namespace Tavro {

/// The record as it was before a write that takes more than one store. It lies in the lock's own
/// memory, so that whoever gets the lock after a writer was killed can put the record back. All
/// other changes to the block become visible by a single store and need no journal.
/// Threads: under the lock only.
class LinkJournal {
public:
    /// Copies `size` bytes into the record of a link, all or nothing.
    static void write(std::uint32_t id, const char* data, std::uint64_t size);

    /// Undoes what a killed writer left half done. Cheap when there is nothing to do.
    static void recover();

    /// Forgets a half write: its block is about to be rebuilt from nothing.
    static void discard();

private:
    struct Entry;
    [[nodiscard]] static Entry& entry();
};

} // namespace Tavro
