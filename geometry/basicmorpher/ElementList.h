// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <array>
#include <bit>
#include <compare>
#include <cstddef>
#include <cstdint>
#include <iterator>
#include <memory>
#include <mutex>
#include <new>
#include <type_traits>
#include <utility>
#include <vector>

/// The containers of the cell complex.
namespace BasicMorpher {

template <typename T>
class ElementIt;
template <typename T>
class ElementList;

/// Slots for elements of one list, filled from the first on and never twice.
template <typename T>
struct ElementChunk {
    static constexpr std::uint32_t kSlotBits = 13;
    static constexpr std::uint32_t kSlots = 1U << kSlotBits;
    static constexpr std::uint32_t kWordBits = 64;
    static constexpr std::uint32_t kNoChunk = 0xFFFFFFFF;

    [[nodiscard]] T* Element(std::uint32_t slot)
    {
        return std::launder(reinterpret_cast<T*>(m_storage + std::size_t { slot } * sizeof(T)));
    }

    std::uint32_t m_uiFormer = kNoChunk; ///< the chunk that its list filled before
    std::array<std::uint64_t, kSlots / kWordBits> m_alive {}; ///< a bit for each slot
    alignas(T) std::byte m_storage[std::size_t { kSlots } * sizeof(T)];
};

/// All chunks of the process by number. They are numbered in common so that an iterator of 32 bits
/// finds its element alone, without its list. Threads: lists of different threads do not disturb
/// each other.
template <typename T>
class ElementChunks {
public:
    using Chunk = ElementChunk<T>;
    /// One less than would fit: the greatest handle means "none".
    static constexpr std::uint32_t kChunks = (1U << (32 - Chunk::kSlotBits)) - 1;

    [[nodiscard]] static Chunk& At(std::uint32_t number) { return *s_chunks[number]; }
    /// A new chunk; its number is above the former one's, so that the order of handles is that of
    /// creation. Errors: `std::bad_alloc`, also if there is no such number.
    [[nodiscard]] static std::uint32_t Take(std::uint32_t former)
    {
        auto chunk = std::make_unique_for_overwrite<Chunk>();
        chunk->m_uiFormer = former;
        const std::scoped_lock lock(s_mutex);
        for (std::uint32_t i = former + 1; i < kChunks; ++i) { // from 0 if there is no former one
            if (s_chunks[i] == nullptr) {
                s_chunks[i] = chunk.release();
                return i;
            }
        }
        throw std::bad_alloc();
    }
    /// Frees the chunk and returns its former one. Its elements must be destroyed.
    static std::uint32_t GiveBack(std::uint32_t number)
    {
        const std::scoped_lock lock(s_mutex);
        const std::unique_ptr<Chunk> chunk(std::exchange(s_chunks[number], nullptr));
        return chunk->m_uiFormer;
    }

private:
    static inline std::mutex s_mutex;
    static inline Chunk* s_chunks[kChunks + 1] {}; // that of "none" is never there
};

/// Refers to an element of an `ElementList` as long as the element is in it, or to none: that is
/// the end of every list, and what a new iterator is. Iterators of one list are ordered by the
/// creation of their elements, "none" comes last. Walking goes from an element to the next older.
template <typename T>
class ElementIt {
public:
    using iterator_category = std::forward_iterator_tag;
    using value_type = T;
    using difference_type = std::ptrdiff_t;
    using pointer = T*;
    using reference = T&;

    ElementIt() = default;

    [[nodiscard]] T& operator*() const
    {
        return *ElementChunks<T>::At(m_uiHandle >> Chunk::kSlotBits)
                    .Element(m_uiHandle & (Chunk::kSlots - 1));
    }
    [[nodiscard]] T* operator->() const { return &**this; }
    ElementIt& operator++()
    {
        StepToOlder();
        return *this;
    }
    ElementIt operator++(int)
    {
        const ElementIt former = *this;
        StepToOlder();
        return former;
    }
    [[nodiscard]] friend bool operator==(ElementIt p, ElementIt q) = default;
    [[nodiscard]] friend std::strong_ordering operator<=>(ElementIt p, ElementIt q)
    {
        return p.m_uiHandle <=> q.m_uiHandle;
    }

    /// Different for each element of a list, and rising in order of creation.
    [[nodiscard]] std::uint32_t Handle() const { return m_uiHandle; }

private:
    friend class ElementList<T>;
    using Chunk = ElementChunk<T>;

    static constexpr std::uint32_t kNone = 0xFFFFFFFF;

    explicit ElementIt(std::uint32_t handle)
        : m_uiHandle(handle)
    {
    }

    void StepToOlder()
    {
        std::uint32_t number = m_uiHandle >> Chunk::kSlotBits;
        const std::uint32_t slot = m_uiHandle & (Chunk::kSlots - 1);
        std::uint32_t word = slot / Chunk::kWordBits;
        const std::uint64_t older = (std::uint64_t { 1 } << (slot % Chunk::kWordBits)) - 1;
        std::uint64_t alive = ElementChunks<T>::At(number).m_alive[word] & older;
        while (alive == 0) {
            if (word == 0) {
                number = ElementChunks<T>::At(number).m_uiFormer;
                word = Chunk::kSlots / Chunk::kWordBits;
                if (number == Chunk::kNoChunk) {
                    m_uiHandle = kNone;
                    return;
                }
            }
            --word;
            alive = ElementChunks<T>::At(number).m_alive[word];
        }
        const auto bit = static_cast<std::uint32_t>(63 - std::countl_zero(alive));
        m_uiHandle = (number << Chunk::kSlotBits) + word * Chunk::kWordBits + bit;
    }

    std::uint32_t m_uiHandle = kNone;
};

/// Elements that stay where they are, each put before all older ones, so that a walk never meets
/// what was made on its way. The place of a removed element is not used again: order and identity
/// need no memory then, and few elements are ever removed.
template <typename T>
class ElementList {
public:
    using iterator = ElementIt<T>;

    ElementList() = default;
    ~ElementList()
    {
        while (m_uiChunk != Chunk::kNoChunk) {
            if constexpr (!std::is_trivially_destructible_v<T>) {
                Chunk& chunk = ElementChunks<T>::At(m_uiChunk);
                for (std::uint32_t slot = 0; slot < m_uiSlot; ++slot)
                    std::destroy_at(chunk.Element(slot));
            }
            m_uiChunk = ElementChunks<T>::GiveBack(m_uiChunk);
            m_uiSlot = Chunk::kSlots; // all former ones are full
        }
    }
    ElementList(const ElementList&) = delete;
    ElementList& operator=(const ElementList&) = delete;
    ElementList(ElementList&&) = delete;
    ElementList& operator=(ElementList&&) = delete;

    [[nodiscard]] std::size_t size() const { return m_size; }
    [[nodiscard]] bool empty() const { return m_size == 0; }
    /// Whether an element that was put into this list is still there; false for none.
    [[nodiscard]] bool contains(iterator it) const
    {
        if (it == end())
            return false;
        const std::uint32_t slot = it.m_uiHandle & (Chunk::kSlots - 1);
        const Chunk& chunk = ElementChunks<T>::At(it.m_uiHandle >> Chunk::kSlotBits);
        return (chunk.m_alive[slot / Chunk::kWordBits] & Bit(slot)) != 0;
    }
    /// The youngest element.
    [[nodiscard]] iterator begin() const { return m_itBegin; }
    [[nodiscard]] iterator end() const { return {}; }
    [[nodiscard]] T& front() const { return *m_itBegin; }

    template <typename... Args>
    iterator emplace_front(Args&&... args)
    {
        if (m_uiSlot == Chunk::kSlots) {
            m_uiChunk = ElementChunks<T>::Take(m_uiChunk);
            m_uiSlot = 0;
        }
        Chunk& chunk = ElementChunks<T>::At(m_uiChunk);
        std::byte* const place = chunk.m_storage + std::size_t { m_uiSlot } * sizeof(T);
        ::new (static_cast<void*>(place)) T(std::forward<Args>(args)...);
        chunk.m_alive[m_uiSlot / Chunk::kWordBits] |= Bit(m_uiSlot);
        m_itBegin = iterator((m_uiChunk << Chunk::kSlotBits) + m_uiSlot);
        ++m_uiSlot;
        ++m_size;
        return m_itBegin;
    }
    /// Of an element of this list. Iterators to others stay valid; one that still refers to it
    /// meets an element as new, not freed memory.
    void erase(iterator it)
    {
        if (it == m_itBegin)
            ++m_itBegin;
        *it = T();
        const std::uint32_t slot = it.m_uiHandle & (Chunk::kSlots - 1);
        ElementChunks<T>::At(it.m_uiHandle >> Chunk::kSlotBits).m_alive[slot / Chunk::kWordBits]
            &= ~Bit(slot);
        --m_size;
    }

private:
    using Chunk = ElementChunk<T>;

    [[nodiscard]] static std::uint64_t Bit(std::uint32_t slot)
    {
        return std::uint64_t { 1 } << (slot % Chunk::kWordBits);
    }

    iterator m_itBegin;
    std::uint32_t m_uiChunk = Chunk::kNoChunk; ///< the one being filled
    std::uint32_t m_uiSlot = Chunk::kSlots; ///< the next one of it
    std::size_t m_size = 0;
};

} // namespace BasicMorpher
