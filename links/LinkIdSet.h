// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <array>
#include <atomic>
#include <bit>
#include <cstddef>
#include <cstdint>

namespace Tavro {

/// An ordered set of link numbers below 128, one bit each.
/// Threads: membership may be asked while another thread changes the set; changes need a lock.
class LinkIdSet {
public:
    [[nodiscard]] bool contains(std::uint32_t id) const
    {
        return (word(id).load(std::memory_order_relaxed) & bit(id)) != 0;
    }
    void insert(std::uint32_t id) { word(id).fetch_or(bit(id), std::memory_order_relaxed); }
    void erase(std::uint32_t id) { word(id).fetch_and(~bit(id), std::memory_order_relaxed); }

    /// Calls `visit(id)` in ascending order for the members at the time of the call; it may change
    /// the set.
    template <typename Visit>
    void for_each(Visit visit) const
    {
        for (std::uint32_t index = 0; index < m_words.size(); ++index)
            for (auto rest = m_words[index].load(std::memory_order_relaxed); rest != 0;
                 rest &= rest - 1)
                visit(index * kBits + static_cast<std::uint32_t>(std::countr_zero(rest)));
    }

private:
    using Word = std::atomic<std::uint64_t>;
    static constexpr std::uint32_t kBits = 64;

    [[nodiscard]] static std::uint64_t bit(std::uint32_t id) { return 1ULL << (id % kBits); }
    [[nodiscard]] Word& word(std::uint32_t id) { return m_words[id / kBits]; }
    [[nodiscard]] const Word& word(std::uint32_t id) const { return m_words[id / kBits]; }

    std::array<Word, 2> m_words {};
};

} // namespace Tavro
