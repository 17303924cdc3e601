// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "geometry/PositionIndex.h"
#include "geometry/VectorMath.h"
#include "geometry/basicmorpher/Elements.h"

#include <cstddef>
#include <cstdint>
#include <deque>
#include <vector>

namespace BasicMorpher {

/// Vertices by the exact position that they were entered under, wherever they are now. Nothing is
/// ever removed: an entry may refer to a vertex that is gone.
class VertMap {
public:
    [[nodiscard]] std::size_t size() const { return m_entries.size(); }
    [[nodiscard]] bool empty() const { return m_entries.empty(); }
    /// None if nothing was entered there.
    [[nodiscard]] VertIt Find(const Position& position) const
    {
        const std::uint32_t hash = Tavro::PositionIndex::Hash(position);
        if (!m_recent.empty()) {
            const Entry& recent = m_recent[hash % kRecent];
            if (Tavro::SamePosition(recent.m_vPosition, position) && recent.m_itVert != VertIt())
                return recent.m_itVert;
        }
        const std::uint32_t found = FindNumber(position, hash);
        if (found == Tavro::PositionIndex::kAbsent)
            return {};
        m_recent[hash % kRecent] = m_entries[found];
        return m_entries[found].m_itVert;
    }
    /// Replaces what was entered there before.
    void Enter(const Position& position, VertIt vert)
    {
        const std::uint32_t hash = Tavro::PositionIndex::Hash(position);
        std::uint32_t number = FindNumber(position, hash);
        if (number == Tavro::PositionIndex::kAbsent) {
            number = static_cast<std::uint32_t>(m_entries.size());
            m_entries.push_back({ position, vert });
            m_index.Insert(position, number);
            if (ComesBefore(position, m_entries[m_uiFirst].m_vPosition))
                m_uiFirst = number;
        }
        m_entries[number].m_itVert = vert;
        m_recent.resize(kRecent);
        m_recent[hash % kRecent] = { position, vert };
    }
    /// The entry of the lexicographically least position; there must be one. A position that holds
    /// a NaN is greater than all others.
    [[nodiscard]] VertIt First() const { return m_entries[m_uiFirst].m_itVert; }
    /// The first entry that `isThere(vert)` holds for; none if there is none.
    template <typename IsThere>
    [[nodiscard]] VertIt First(const IsThere& isThere) const
    {
        if (empty() || isThere(First()))
            return empty() ? VertIt() : First();
        const Entry* first = nullptr;
        for (const Entry& entry : m_entries) {
            if (isThere(entry.m_itVert)
                && (first == nullptr || ComesBefore(entry.m_vPosition, first->m_vPosition)))
                first = &entry;
        }
        return first == nullptr ? VertIt() : first->m_itVert;
    }

private:
    struct Entry {
        Position m_vPosition;
        VertIt m_itVert;
    };

    static constexpr std::size_t kRecent = 8192; // fits into the cache of a core

    [[nodiscard]] static bool ComesBefore(const Position& one, const Position& other)
    {
        const bool isNumber = Tavro::SamePosition(one, one); // as no NaN is
        if (isNumber != Tavro::SamePosition(other, other))
            return isNumber;
        return Tavro::LexicographicallyLess(one, other);
    }
    [[nodiscard]] std::uint32_t FindNumber(const Position& position, std::uint32_t hash) const
    {
        return m_index.Find(position, hash,
            [this](std::uint32_t i) -> const Position& { return m_entries[i].m_vPosition; });
    }

    std::deque<Entry> m_entries; // a growing vector would need twice the memory while it moves
    Tavro::PositionIndex m_index;
    std::uint32_t m_uiFirst = 0;
    /// By hash, the entry used last: cells beside each other are added one after the other, and
    /// share most of their corners. Empty, or `kRecent` of them.
    mutable std::vector<Entry> m_recent;
};

} // namespace BasicMorpher
