// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "geometry/ValueTypes.h"
#include "tavrobase/Exception.h"

#include <cstddef>
#include <cstdint>
#include <set>
#include <span>
#include <vector>

namespace Tavro {

/// Polygons over shared vertices, with optional values for each vertex and each facet.
///
/// A channel is one value for each vertex, or for each facet, under a number; a freed number is
/// given out again, the lowest first. Values of vertices and facets appended later are false, 0,
/// 0.0 or the zero vector, provided that `m_bHasVertexData` or `m_bHasFacetData` is set.
template <typename T, std::size_t N>
class FacetSurface {
public:
    /// Values of the channels of one kind, channel by channel. A freed channel is empty.
    template <typename Value>
    using Channels = std::vector<std::vector<Value>>;
    using FreeChannels = std::set<unsigned char>;

    /// Appends a point; its number counts from 0.
    std::uint32_t AddVertex(const Vector<T, N>& position)
    {
        m_vecVertices.push_back(position);
        m_bBoxValid = false;
        if (m_bHasVertexData)
            AddVertexData();
        return static_cast<std::uint32_t>(m_vecVertices.size() - 1);
    }
    /// Appends a polygon of three or more vertex numbers in order; its number counts from 0.
    std::uint32_t AddFacet(std::span<const std::uint32_t> vertices)
    {
        m_vecFacetVertices.insert(m_vecFacetVertices.end(), vertices.begin(), vertices.end());
        m_vecFacetOffsets.push_back(static_cast<std::uint32_t>(m_vecFacetVertices.size()));
        if (m_bHasFacetData)
            AddFacetData();
        return static_cast<std::uint32_t>(NumberOfFacets() - 1);
    }
    std::uint32_t AddFacet(std::uint32_t v0, std::uint32_t v1, std::uint32_t v2)
    {
        const std::uint32_t vertices[] { v0, v1, v2 };
        return AddFacet(vertices);
    }

    [[nodiscard]] std::size_t NumberOfFacets() const
    {
        return m_vecFacetOffsets.empty() ? 0 : m_vecFacetOffsets.size() - 1;
    }
    /// Vertex numbers of a facet in order; none if the arrays do not hold such a facet.
    [[nodiscard]] std::span<const std::uint32_t> FacetVertices(std::size_t facet) const
    {
        if (facet >= NumberOfFacets())
            return {};
        const std::size_t begin = m_vecFacetOffsets[facet];
        const std::size_t end = m_vecFacetOffsets[facet + 1];
        if (begin > end || end > m_vecFacetVertices.size())
            return {};
        return std::span(m_vecFacetVertices).subspan(begin, end - begin);
    }
    /// Box of all vertices, from the cache if it holds; sentinels without vertices.
    [[nodiscard]] const BoundingBox<T, N>& GetBox()
    {
        if (m_bBoxValid)
            return m_Box;
        for (std::size_t i = 0; i < N; ++i) {
            m_Box.m_vMin[i] = kNone<T>;
            m_Box.m_vMax[i] = -kNone<T>;
        }
        for (const Vector<T, N>& vertex : m_vecVertices)
            m_Box += BoundingBox<T, N> { vertex, vertex };
        m_bBoxValid = true;
        return m_Box;
    }

    /// These give a new channel with a zero for each vertex or facet that exists.
    /// Errors: `BadParameter` if all 256 numbers of the kind are taken.
    [[nodiscard]] unsigned char AllocateVertexBoolData()
    {
        return Allocate(m_vecVertexBoolData, m_setFreeVertexBoolData, m_vecVertices.size());
    }
    [[nodiscard]] unsigned char AllocateVertexUIntData()
    {
        return Allocate(m_vecVertexUIntData, m_setFreeVertexUIntData, m_vecVertices.size());
    }
    [[nodiscard]] unsigned char AllocateVertexDoubleData()
    {
        return Allocate(m_vecVertexDoubleData, m_setFreeVertexDoubleData, m_vecVertices.size());
    }
    [[nodiscard]] unsigned char AllocateVertexVectorData()
    {
        return Allocate(m_vecVertexVectorData, m_setFreeVertexVectorData, m_vecVertices.size());
    }
    [[nodiscard]] unsigned char AllocateFacetBoolData()
    {
        return Allocate(m_vecFacetBoolData, m_setFreeFacetBoolData, NumberOfFacets());
    }
    [[nodiscard]] unsigned char AllocateFacetUIntData()
    {
        return Allocate(m_vecFacetUIntData, m_setFreeFacetUIntData, NumberOfFacets());
    }
    [[nodiscard]] unsigned char AllocateFacetDoubleData()
    {
        return Allocate(m_vecFacetDoubleData, m_setFreeFacetDoubleData, NumberOfFacets());
    }
    [[nodiscard]] unsigned char AllocateFacetVectorData()
    {
        return Allocate(m_vecFacetVectorData, m_setFreeFacetVectorData, NumberOfFacets());
    }

    /// These drop the values of a channel; a number that no channel has is no error.
    void FreeVertexBoolData(unsigned char k)
    {
        Free(m_vecVertexBoolData, m_setFreeVertexBoolData, k);
    }
    void FreeVertexUIntData(unsigned char k)
    {
        Free(m_vecVertexUIntData, m_setFreeVertexUIntData, k);
    }
    void FreeVertexDoubleData(unsigned char k)
    {
        Free(m_vecVertexDoubleData, m_setFreeVertexDoubleData, k);
    }
    void FreeVertexVectorData(unsigned char k)
    {
        Free(m_vecVertexVectorData, m_setFreeVertexVectorData, k);
    }
    void FreeFacetBoolData(unsigned char k) { Free(m_vecFacetBoolData, m_setFreeFacetBoolData, k); }
    void FreeFacetUIntData(unsigned char k) { Free(m_vecFacetUIntData, m_setFreeFacetUIntData, k); }
    void FreeFacetDoubleData(unsigned char k)
    {
        Free(m_vecFacetDoubleData, m_setFreeFacetDoubleData, k);
    }
    void FreeFacetVectorData(unsigned char k)
    {
        Free(m_vecFacetVectorData, m_setFreeFacetVectorData, k);
    }

    /// Appends a zero to each vertex channel that exists.
    void AddVertexData()
    {
        Extend(m_vecVertexBoolData, m_setFreeVertexBoolData);
        Extend(m_vecVertexUIntData, m_setFreeVertexUIntData);
        Extend(m_vecVertexDoubleData, m_setFreeVertexDoubleData);
        Extend(m_vecVertexVectorData, m_setFreeVertexVectorData);
    }
    /// Appends a zero to each facet channel that exists.
    void AddFacetData()
    {
        Extend(m_vecFacetBoolData, m_setFreeFacetBoolData);
        Extend(m_vecFacetUIntData, m_setFreeFacetUIntData);
        Extend(m_vecFacetDoubleData, m_setFreeFacetDoubleData);
        Extend(m_vecFacetVectorData, m_setFreeFacetVectorData);
    }
    /// Frees all channels of vertices and facets; numbers start from 0 again.
    void DeleteElementData()
    {
        Clear(m_vecVertexBoolData, m_setFreeVertexBoolData);
        Clear(m_vecVertexUIntData, m_setFreeVertexUIntData);
        Clear(m_vecVertexDoubleData, m_setFreeVertexDoubleData);
        Clear(m_vecVertexVectorData, m_setFreeVertexVectorData);
        Clear(m_vecFacetBoolData, m_setFreeFacetBoolData);
        Clear(m_vecFacetUIntData, m_setFreeFacetUIntData);
        Clear(m_vecFacetDoubleData, m_setFreeFacetDoubleData);
        Clear(m_vecFacetVectorData, m_setFreeFacetVectorData);
    }

    std::vector<Vector<T, N>> m_vecVertices;
    std::vector<std::uint32_t> m_vecFacetVertices; ///< of all facets, back to back
    std::vector<std::uint32_t> m_vecFacetOffsets { 0 }; ///< start of each facet, and the end
    bool m_bBoxValid = false;
    BoundingBox<T, N> m_Box {};
    bool m_bHasVertexData = false; ///< appending a vertex extends the vertex channels
    bool m_bHasFacetData = false; ///< appending a facet extends the facet channels

    Channels<bool> m_vecVertexBoolData;
    Channels<unsigned int> m_vecVertexUIntData;
    Channels<T> m_vecVertexDoubleData;
    Channels<Vector<T, N>> m_vecVertexVectorData;
    Channels<bool> m_vecFacetBoolData;
    Channels<unsigned int> m_vecFacetUIntData;
    Channels<T> m_vecFacetDoubleData;
    Channels<Vector<T, N>> m_vecFacetVectorData;

    FreeChannels m_setFreeVertexBoolData;
    FreeChannels m_setFreeVertexUIntData;
    FreeChannels m_setFreeVertexDoubleData;
    FreeChannels m_setFreeVertexVectorData;
    FreeChannels m_setFreeFacetBoolData;
    FreeChannels m_setFreeFacetUIntData;
    FreeChannels m_setFreeFacetDoubleData;
    FreeChannels m_setFreeFacetVectorData;

private:
    static constexpr std::size_t kMaxChannels = 256; // a number is one byte

    template <typename Value>
    static unsigned char Allocate(Channels<Value>& channels, FreeChannels& free, std::size_t size)
    {
        if (free.empty()) {
            if (channels.size() == kMaxChannels)
                throw BadParameter("A surface has at most 256 data channels of one kind",
                    "geometry/FacetSurface", __LINE__);
            channels.emplace_back(size);
            return static_cast<unsigned char>(channels.size() - 1);
        }
        const unsigned char number = *free.begin();
        channels[number].assign(size, Value {});
        free.erase(free.begin());
        return number;
    }
    template <typename Value>
    static void Free(Channels<Value>& channels, FreeChannels& free, unsigned char number)
    {
        if (number < channels.size() && free.insert(number).second)
            std::vector<Value>().swap(channels[number]);
    }
    template <typename Value>
    static void Extend(Channels<Value>& channels, const FreeChannels& free)
    {
        for (std::size_t k = 0; k < channels.size(); ++k) {
            if (free.empty() || !free.contains(static_cast<unsigned char>(k)))
                channels[k].push_back(Value {});
        }
    }
    template <typename Value>
    static void Clear(Channels<Value>& channels, FreeChannels& free)
    {
        channels.clear();
        free.clear();
    }
};

} // namespace Tavro
