// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "geometry/ValueTypes.h"

#include <concepts>
#include <cstddef>
#include <cstdint>
#include <initializer_list>
#include <iterator>
#include <ranges>
#include <type_traits>
#include <utility>

namespace BasicMorpher {

using Facet = Tavro::Facet<double, 3, 3>;

/// Array of facets that are not owned. Copies share one memory until one of them is appended to:
/// the cells of one leaf hold the same facets. Threads: copies of one array belong to one thread.
class FacetArray {
public:
    using value_type = Facet*;

    FacetArray() = default;
    FacetArray(std::initializer_list<Facet*> facets) { Append(facets.begin(), facets.size()); }
    /// Of any range of pointers to facets, such as a list or a vector.
    template <std::ranges::forward_range Range>
    requires(!std::same_as<std::remove_cvref_t<Range>,
                 FacetArray> && std::convertible_to<std::ranges::range_reference_t<Range>, Facet*>)
        FacetArray(const Range& facets) // NOLINT(google-explicit-constructor): a list is one
    {
        Facet** place = Grow(static_cast<std::size_t>(std::ranges::distance(facets)));
        for (Facet* facet : facets)
            *place++ = facet;
    }
    FacetArray(const FacetArray& other)
        : m_pBlock(other.m_pBlock)
    {
        if (m_pBlock != nullptr)
            ++m_pBlock->m_uiOwners;
    }
    FacetArray(FacetArray&& other) noexcept
        : m_pBlock(std::exchange(other.m_pBlock, nullptr))
    {
    }
    FacetArray& operator=(FacetArray other) noexcept
    {
        std::swap(m_pBlock, other.m_pBlock);
        return *this;
    }
    ~FacetArray() { Release(); }

    [[nodiscard]] std::size_t size() const { return m_pBlock != nullptr ? m_pBlock->m_uiSize : 0; }
    [[nodiscard]] bool empty() const { return m_pBlock == nullptr; }
    [[nodiscard]] Facet* const* begin() const
    {
        return m_pBlock != nullptr ? m_pBlock->Facets() : nullptr;
    }
    [[nodiscard]] Facet* const* end() const { return begin() + size(); }
    [[nodiscard]] Facet* operator[](std::size_t i) const { return begin()[i]; }

    /// Appends the facets of another array, also of this one; an empty one then shares its memory.
    void Append(const FacetArray& other);
    void push_back(Facet* facet) { Append(&facet, 1); }
    void clear() { *this = FacetArray(); }
    [[nodiscard]] bool SharesMemoryWith(const FacetArray& other) const
    {
        return m_pBlock == other.m_pBlock;
    }

private:
    struct alignas(Facet*) Block {
        [[nodiscard]] Facet** Facets() { return reinterpret_cast<Facet**>(this + 1); }

        std::uint32_t m_uiOwners;
        std::uint32_t m_uiSize; ///< never 0
        std::uint32_t m_uiCapacity;
    };

    void Append(Facet* const* facets, std::size_t count);
    /// Makes so many more in memory of its own, and returns where they go.
    Facet** Grow(std::size_t count);
    void Release();

    Block* m_pBlock = nullptr; ///< the facets lie behind it
};

} // namespace BasicMorpher
