// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "geometry/ValueTypes.h"
#include "geometry/VectorMath.h"

#include <bit>
#include <cstdint>
#include <vector>

namespace Tavro {

/// Finds the number of a point by its exact position: -0 and 0 are one place, a NaN is never found.
/// The positions stay with the caller, so that an entry takes eight bytes. Nothing is ever removed.
class PositionIndex {
public:
    static constexpr std::uint32_t kAbsent = 0xFFFFFFFF;

    /// Mixes all bits into the upper half and takes that; the constants are odd numbers with evenly
    /// spread bits.
    [[nodiscard]] static std::uint32_t Hash(const Vector<double, 3>& position)
    {
        std::uint64_t hash = 0;
        for (std::size_t axis = 0; axis < 3; ++axis) {
            hash ^= std::bit_cast<std::uint64_t>(position[axis] + 0.0); // -0 becomes 0
            hash *= 0x9E3779B97F4A7C15;
            hash ^= hash >> 29;
        }
        hash *= 0xBF58476D1CE4E5B9;
        return static_cast<std::uint32_t>(hash >> 32);
    }

    /// `positionOf(number)` gives the position of an entry.
    template <typename PositionOf>
    [[nodiscard]] std::uint32_t Find(
        const Vector<double, 3>& position, const PositionOf& positionOf) const
    {
        return Find(position, Hash(position), positionOf);
    }
    /// The same, if the hash is known.
    template <typename PositionOf>
    [[nodiscard]] std::uint32_t Find(
        const Vector<double, 3>& position, std::uint32_t hash, const PositionOf& positionOf) const
    {
        if (m_slots.empty())
            return kAbsent;
        for (std::size_t i = hash & Mask(); m_slots[i].m_uiNumber != kAbsent;
             i = (i + 1) & Mask()) {
            if (m_slots[i].m_uiHash == hash
                && SamePosition(positionOf(m_slots[i].m_uiNumber), position))
                return m_slots[i].m_uiNumber;
        }
        return kAbsent;
    }
    /// A position that is not in it yet; any number but `kAbsent`.
    void Insert(const Vector<double, 3>& position, std::uint32_t number)
    {
        if (2 * (m_entries + 1) > m_slots.size())
            Grow();
        Place({ number, Hash(position) });
        ++m_entries;
    }

private:
    struct Slot {
        std::uint32_t m_uiNumber = kAbsent;
        std::uint32_t m_uiHash = 0;
    };

    static constexpr std::size_t kLeastSlots = 64;

    [[nodiscard]] std::size_t Mask() const { return m_slots.size() - 1; }
    void Place(const Slot& entry)
    {
        std::size_t i = entry.m_uiHash & Mask();
        while (m_slots[i].m_uiNumber != kAbsent)
            i = (i + 1) & Mask();
        m_slots[i] = entry;
    }
    void Grow()
    {
        std::vector<Slot> former(m_slots.empty() ? kLeastSlots : 2 * m_slots.size());
        former.swap(m_slots);
        for (const Slot& entry : former) {
            if (entry.m_uiNumber != kAbsent)
                Place(entry);
        }
    }

    std::vector<Slot> m_slots; ///< a power of two of them, at most half full
    std::size_t m_entries = 0;
};

} // namespace Tavro
