// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "geometry/ValueTypes.h"
#include "geometry/basicmorpher/ElementList.h"
#include "geometry/basicmorpher/FacetArray.h"
#include "geometry/basicmorpher/SmallArray.h"

#include <span>

/// What a cell complex is made of. Elements refer to each other by iterators; arrays hold them in
/// the order in which they were added. Arrays are as long inside as they nearly always get.
namespace BasicMorpher {

struct Vert;
struct Edge;
struct Face;
struct Cell;

using Position = Tavro::Vector<double, 3>;
using VertIt = ElementIt<Vert>;
using EdgeIt = ElementIt<Edge>;
using FaceIt = ElementIt<Face>;
using CellIt = ElementIt<Cell>;

struct Vert {
    Vert() = default;
    explicit Vert(const Position& position)
        : m_vPosition(position)
    {
    }

    Position m_vPosition {};
    SmallArray<EdgeIt, 15> m_vecEdges; ///< those that end here
    bool m_bUnreached : 1 = true; ///< not known to be reached from outside
    bool m_bOnSurface : 1 = false;
    bool m_bSplit : 1 = false; ///< made by splitting an edge
};

/// What `Edge::m_vIntersection` holds if there is none. While crossings are sought, y and z hold
/// the least and the greatest parameter; so these two start as far off as they can.
inline constexpr Position kNoIntersection { Tavro::kNone<double>, Tavro::kNone<double>,
    -Tavro::kNone<double> };

struct Edge {
    Edge() = default;
    Edge(VertIt vert0, VertIt vert1)
        : m_itVert0(vert0)
        , m_itVert1(vert1)
    {
    }

    [[nodiscard]] bool Has(VertIt vert) const { return m_itVert0 == vert || m_itVert1 == vert; }
    /// The end that is not this one, which must be an end.
    [[nodiscard]] VertIt OtherEnd(VertIt vert) const
    {
        return m_itVert0 == vert ? m_itVert1 : m_itVert0;
    }

    VertIt m_itVert0;
    VertIt m_itVert1;
    Position m_vIntersection = kNoIntersection; ///< a crossing point, unless x says none
    SmallArray<FaceIt, 6> m_vecFaces; ///< those that use it
};

struct Face {
    Face() = default;
    explicit Face(std::span<const EdgeIt> ring)
        : m_vecEdges(ring)
    {
    }

    /// The corner of edge i: its end that the next edge of the ring does not share.
    /// Errors: `std::out_of_range` if there is no such edge.
    [[nodiscard]] VertIt GetVert(unsigned int i) const
    {
        const Edge& edge = *m_vecEdges.at(i);
        const Edge& next = *m_vecEdges[i + 1 == m_vecEdges.size() ? 0 : i + 1];
        return next.Has(edge.m_itVert1) ? edge.m_itVert0 : edge.m_itVert1;
    }

    SmallArray<EdgeIt, 4> m_vecEdges; ///< a ring: each shares a vertex with the next
    SmallArray<CellIt, 3> m_vecCells; ///< those that use it
    bool m_bNew : 1 = false; ///< made by splitting a face
};

struct Cell {
    Cell() = default;
    explicit Cell(std::span<const FaceIt> faces)
        : m_vecFaces(faces)
    {
    }

    SmallArray<FaceIt, 6> m_vecFaces;
    bool m_bFlag : 1 = false; ///< free for the use of one pass
    FacetArray m_vecTriangles; ///< the facets that may pass through it
};

// Complexes have tens of millions of each.
static_assert(sizeof(VertIt) == 4);
static_assert(sizeof(Vert) == 96 && sizeof(Edge) == 64 && sizeof(Face) == 48 && sizeof(Cell) == 48);

} // namespace BasicMorpher
