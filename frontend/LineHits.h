// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "frontend/BodyFile.h"

#include <array>
#include <cstddef>
#include <vector>

namespace Frontend {

/// Where a straight line through a point on a surface meets the rest of it, on both sides of the
/// point: 0 is ahead, 1 behind.
struct LineHits {
    std::array<std::size_t, 2> count {};
    std::array<double, 2> nearest {}; ///< distance in lengths of the direction; infinite if none
    std::array<std::size_t, 2> facet {}; ///< that is met there, if any is
};

/// Triangles in a tree of boxes, so that a line does not have to be tried with each of them.
class LineTree {
public:
    /// The triangles must outlive the tree, and their coordinates be finite.
    explicit LineTree(const Facets& facets);

    /// Without the triangle `at`, on which the point lies.
    [[nodiscard]] LineHits hits(const Tavro::Vector<double, 3>& from,
        const Tavro::Vector<double, 3>& direction, std::size_t at) const;

private:
    struct Node {
        Tavro::BoundingBox<double, 3> box;
        std::size_t first = 0; ///< in the order; of an inner node that of its second half's node
        std::size_t count = 0; ///< of a leaf
    };
    [[nodiscard]] std::size_t add(std::size_t first, std::size_t end);

    const Facets& m_facets;
    std::vector<std::size_t> m_order;
    std::vector<Node> m_nodes; ///< a node's first half follows it
};

} // namespace Frontend
