// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "geometry/basicmorpher/CreationSet.h"
#include "geometry/basicmorpher/Elements.h"

#include <array>
#include <cstddef>
#include <utility>
#include <vector>

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

/// How often each edge is used by a set of faces, in the order of the edges' creation.
[[nodiscard]] std::vector<std::pair<EdgeIt, std::size_t>> CountEdgeUses(const FaceSet& faces);

/// Which faces of a cell lie on each of its edges.
class EdgeFaces {
public:
    explicit EdgeFaces(const Cell& cell);

    /// In the order of the faces' creation.
    /// Errors: `BasicMorpherException` if no face of the cell has the edge.
    [[nodiscard]] FaceSet On(EdgeIt edge) const;

private:
    std::vector<std::pair<EdgeIt, FaceIt>> m_uses; ///< sorted
};

/// Whether a group of faces that surface edges bound has to be closed to a cell: a single one is
/// part of the surface already.
/// Errors: `BasicMorpherException` if it is neither.
[[nodiscard]] bool NeedsClosing(const FaceSet& group);

} // namespace BasicMorpher
