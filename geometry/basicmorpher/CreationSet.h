// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "geometry/basicmorpher/SmallArray.h"

#include <algorithm>
#include <cstdint>
#include <initializer_list>

namespace BasicMorpher {

/// Set of iterators, ordered by the creation of their elements. It needs no memory of its own up
/// to `InlineCapacity` of them.
template <typename It, std::uint32_t InlineCapacity>
class CreationSet {
public:
    CreationSet() = default;
    CreationSet(std::initializer_list<It> elements)
    {
        for (const It element : elements)
            (void)insert(element); // a set has it once
    }

    [[nodiscard]] std::uint32_t size() const { return m_elements.size(); }
    [[nodiscard]] bool empty() const { return m_elements.empty(); }
    [[nodiscard]] const It* begin() const { return m_elements.begin(); }
    [[nodiscard]] const It* end() const { return m_elements.end(); }
    /// The i-th in set order.
    [[nodiscard]] It operator[](std::uint32_t i) const { return m_elements[i]; }
    [[nodiscard]] bool contains(It element) const
    {
        return std::binary_search(begin(), end(), element);
    }
    [[nodiscard]] friend bool operator==(const CreationSet& one, const CreationSet& other)
    {
        return std::equal(one.begin(), one.end(), other.begin(), other.end());
    }

    /// False if it is in the set already.
    [[nodiscard]] bool insert(It element)
    {
        std::uint32_t place = size();
        while (place > 0 && element < m_elements[place - 1])
            --place;
        if (place > 0 && m_elements[place - 1] == element)
            return false;
        m_elements.push_back(element);
        std::rotate(m_elements.begin() + place, m_elements.end() - 1, m_elements.end());
        return true;
    }
    void clear() { m_elements.clear(); }

private:
    SmallArray<It, InlineCapacity> m_elements;
};

} // namespace BasicMorpher
