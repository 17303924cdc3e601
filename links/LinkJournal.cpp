// SPDX-License-Identifier: Apache-2.0
#include "links/LinkJournal.h"

#include "links/LinkBlock.h"

#include <cstring>

namespace Tavro {

struct LinkJournal::Entry {
    std::uint32_t pending; ///< 1 while the rest counts
    std::uint32_t id;
    std::uint64_t size;
    std::uint64_t block; ///< identity of the block; one that has lost its name may still be in use
    char before[LinkManager::m_dataSize];

    void open() { set_pending(1); }
    void close() { set_pending(0); }

private:
    void set_pending(std::uint32_t value)
    {
        keep_store_order();
        std::atomic_ref(pending).store(value, std::memory_order_release);
        keep_store_order();
    }
};

LinkJournal::Entry& LinkJournal::entry()
{
    static_assert(sizeof(Entry) <= Platform::NamedLock::kMemoBytes);
    return *static_cast<Entry*>(LinkManager::m_semaphore.memo());
}

void LinkJournal::write(std::uint32_t id, const char* data, std::uint64_t size)
{
    if (size == 0)
        return;
    char* const record = LinkManager::m_sharedMemory->blocks[id].data;
    Entry& journal = entry();
    // It may still stand for a block that has lost its name. Killed while filling it, we would
    // leave a mixture of the two that counts.
    if (journal.pending != 0)
        journal.close();
    journal.id = id;
    journal.size = size;
    journal.block = LinkManager::m_fd.identity();
    std::memcpy(journal.before, record, size);
    journal.open();
    std::memcpy(record, data, size);
    journal.close();
}

void LinkJournal::recover()
{
    Entry& journal = entry();
    if (journal.pending == 0 || LinkManager::m_sharedMemory == nullptr
        || journal.block != LinkManager::m_fd.identity())
        return;
    if (journal.id < LinkManager::m_nBlocks && journal.size <= LinkManager::m_dataSize)
        std::memcpy(
            LinkManager::m_sharedMemory->blocks[journal.id].data, journal.before, journal.size);
    journal.close();
}

void LinkJournal::discard() { entry().close(); }

} // namespace Tavro
