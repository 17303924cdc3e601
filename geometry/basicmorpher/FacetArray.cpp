// SPDX-License-Identifier: Apache-2.0
#include "geometry/basicmorpher/FacetArray.h"

#include <algorithm>
#include <limits>
#include <new>
#include <stdexcept>

namespace BasicMorpher {

void FacetArray::Append(const FacetArray& other)
{
    if (empty())
        *this = other;
    else
        Append(FacetArray(other).begin(), other.size());
}

void FacetArray::Append(Facet* const* facets, std::size_t count)
{
    std::copy_n(facets, count, Grow(count));
}

Facet** FacetArray::Grow(std::size_t count)
{
    if (count == 0)
        return nullptr;
    const std::size_t former = size();
    const std::size_t needed = former + count;
    constexpr std::size_t kMost = std::numeric_limits<std::uint32_t>::max();
    if (needed > kMost)
        throw std::length_error("The array would get too long.");
    const auto newSize = static_cast<std::uint32_t>(needed);
    const bool isOwn = m_pBlock != nullptr && m_pBlock->m_uiOwners == 1;
    if (isOwn && newSize <= m_pBlock->m_uiCapacity) {
        m_pBlock->m_uiSize = newSize;
        return m_pBlock->Facets() + former;
    }
    // One that is appended to again gets room to spare; most are made whole and then shared.
    const std::size_t capacity = isOwn ? std::min(needed + needed / 2, kMost) : needed;
    void* const memory = ::operator new(sizeof(Block) + capacity * sizeof(Facet*));
    auto* const block = ::new (memory) Block { 1, newSize, static_cast<std::uint32_t>(capacity) };
    Facet** const place = std::copy_n(begin(), former, block->Facets());
    Release();
    m_pBlock = block;
    return place;
}

void FacetArray::Release()
{
    if (m_pBlock != nullptr && --m_pBlock->m_uiOwners == 0)
        ::operator delete(m_pBlock);
}

} // namespace BasicMorpher
