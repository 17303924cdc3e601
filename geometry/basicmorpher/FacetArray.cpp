// SPDX-License-Identifier: Apache-2.0
#include "geometry/basicmorpher/FacetArray.h"

#include <algorithm>
#include <new>

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
    void* const memory = ::operator new(sizeof(Block) + (former + count) * sizeof(Facet*));
    auto* const block = ::new (memory) Block { 1, static_cast<std::uint32_t>(former + count) };
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
