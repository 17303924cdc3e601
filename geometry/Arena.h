// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstddef>
#include <memory>
#include <new>
#include <utility>
#include <vector>

namespace Tavro {

/// Objects of one type that stay where they are, made by the thousand without an allocation for
/// each. The memory goes when the arena goes; objects still alive then are not destroyed.
template <typename T>
class Arena {
public:
    template <typename... Args>
    [[nodiscard]] T* Create(Args&&... args)
    {
        Slot* const slot = Take();
        try {
            return ::new (static_cast<void*>(slot->m_object)) T(std::forward<Args>(args)...);
        } catch (...) {
            GiveBack(slot);
            throw;
        }
    }
    /// Of an object of this arena; null is no error.
    void Destroy(T* object)
    {
        if (object == nullptr)
            return;
        object->~T();
        GiveBack(static_cast<Slot*>(static_cast<void*>(object)));
    }

private:
    union Slot {
        Slot* m_pNext;
        alignas(T) std::byte m_object[sizeof(T)];
    };

    static constexpr std::size_t kSlotsPerBlock = 1024;

    Slot* Take()
    {
        if (m_pFree != nullptr)
            return std::exchange(m_pFree, m_pFree->m_pNext);
        if (m_used == kSlotsPerBlock) {
            m_blocks.push_back(std::make_unique_for_overwrite<Slot[]>(kSlotsPerBlock));
            m_used = 0;
        }
        return &m_blocks.back()[m_used++];
    }
    void GiveBack(Slot* slot)
    {
        slot->m_pNext = m_pFree;
        m_pFree = slot;
    }

    std::vector<std::unique_ptr<Slot[]>> m_blocks;
    std::size_t m_used = kSlotsPerBlock; ///< slots of the last block that were ever taken
    Slot* m_pFree = nullptr;
};

} // namespace Tavro
