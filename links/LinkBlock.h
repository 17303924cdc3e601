// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "links/LinkManager.h"

#include <atomic>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <type_traits>

/// The block of memory that separately built programs share: every offset is an interface. No
/// header, no version; its size is all that tells it.
namespace Tavro {

struct LinkManager::LinkBlock {
    std::uint32_t nAttachments : 8; ///< 0: the block is free
    std::uint32_t nDataSize : 16; ///< bytes of `data` that count
    std::uint32_t nUnused : 8;
    std::uint32_t padding;
    std::int64_t tLastCheck; ///< heartbeat, seconds since 1970
    char szKey[m_maxKeyLength]; ///< ends with a zero
    char data[m_dataSize];
    char tail[4];
};

struct LinkManager::SharedBlock {
    std::int64_t slots[m_nManagerSlots]; ///< 0: free; else the owner's heartbeat
    LinkBlock blocks[m_nBlocks];
};

struct LinkManager::LayoutPin {
    static_assert(std::endian::native == std::endian::little, "the block is little-endian");
    static_assert(
        std::is_trivially_copyable_v<SharedBlock> && std::is_standard_layout_v<SharedBlock>);
    static_assert(offsetof(LinkBlock, padding) == 4 && offsetof(LinkBlock, tLastCheck) == 8);
    static_assert(offsetof(LinkBlock, szKey) == 16 && offsetof(LinkBlock, data) == 516);
    static_assert(offsetof(LinkBlock, tail) == 4612 && sizeof(LinkBlock) == 4616);
    static_assert(offsetof(SharedBlock, blocks) == 400 && sizeof(SharedBlock) == 462000);
};

/// Stores on both sides of it reach the block in their order. That matters to nobody but the one
/// who comes after a process that was killed between them.
inline void keep_store_order() { std::atomic_signal_fence(std::memory_order_seq_cst); }

/// Slots are counted without the lock as well.
[[nodiscard]] inline std::int64_t read_slot(std::int64_t& slot)
{
    return std::atomic_ref(slot).load(std::memory_order_relaxed);
}
inline void write_slot(std::int64_t& slot, std::int64_t heartbeat)
{
    std::atomic_ref(slot).store(heartbeat, std::memory_order_relaxed);
}

} // namespace Tavro
