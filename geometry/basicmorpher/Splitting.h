// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "geometry/basicmorpher/CreationSet.h"
#include "geometry/basicmorpher/Elements.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <span>

/// What the cutting of a complex passes between its steps.
namespace BasicMorpher {

/// Ordered by creation.
using FaceSet = CreationSet<FaceIt, 16>;
/// Ordered by creation.
using EdgeSet = CreationSet<EdgeIt, 8>;

/// Corner, split vertex of the side after it, and so on around a triangle; none where a side is
/// whole.
using SplitSlots = std::array<VertIt, 6>;

/// Both ends lie on the surface.
[[nodiscard]] inline bool IsSurfaceEdge(const Edge& edge)
{
    return edge.m_itVert0->m_bOnSurface && edge.m_itVert1->m_bOnSurface;
}

/// It has a crossing point.
[[nodiscard]] inline bool IsCrossed(const Edge& edge)
{
    return edge.m_vIntersection[0] != Tavro::kNone<double>;
}

/// One face of a set on one of its edges.
struct EdgeUse {
    EdgeUse(EdgeIt edge, FaceIt face)
        : m_itEdge(edge)
        , m_itFace(face)
    {
    }

    EdgeIt m_itEdge;
    FaceIt m_itFace;

    /// By edge, then by face.
    [[nodiscard]] friend bool operator<(const EdgeUse& one, const EdgeUse& other)
    {
        return one.Key() < other.Key();
    }

private:
    [[nodiscard]] std::uint64_t Key() const
    {
        return std::uint64_t { m_itEdge.Handle() } << 32 | m_itFace.Handle();
    }
};

/// All faces of a set on all their edges: the uses of one edge follow each other, and edges and
/// faces stand in the order of their creation.
class EdgeUses {
public:
    template <typename Faces>
    explicit EdgeUses(const Faces& faces)
    {
        for (const FaceIt face : faces) {
            for (const EdgeIt edge : face->m_vecEdges)
                m_uses.push_back({ edge, face });
        }
        std::sort(m_uses.begin(), m_uses.end());
    }

    /// Errors: `BasicMorpherException` if no face of the cell that this was made of has the edge.
    [[nodiscard]] std::span<const EdgeUse> On(EdgeIt edge) const;
    /// Calls `visit(edge, count)` for each edge with the number of its uses.
    template <typename Visit>
    void CountEach(const Visit& visit) const
    {
        for (const EdgeUse* use = m_uses.begin(); use != m_uses.end();) {
            const EdgeUse* const first = use;
            while (use != m_uses.end() && use->m_itEdge == first->m_itEdge)
                ++use;
            visit(first->m_itEdge, use - first);
        }
    }

private:
    SmallArray<EdgeUse, 64> m_uses;
};

/// Whether a group of faces that surface edges bound has to be closed to a cell: a single one is
/// part of the surface already.
/// Errors: `BasicMorpherException` if it is neither.
[[nodiscard]] bool NeedsClosing(const FaceSet& group);

} // namespace BasicMorpher
