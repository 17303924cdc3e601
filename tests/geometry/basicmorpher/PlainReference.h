// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "geometry/ValueTypes.h"

#include <array>
#include <limits>
#include <list>
#include <map>
#include <set>
#include <stdexcept>
#include <utility>
#include <vector>

/// The cutting of a cell complex written down as plainly as it can be said: standard containers, no
/// scratch memory, no short cuts. What the product does quickly is compared with this. Only the
/// exact predicate is shared; it has tests of its own.
namespace Testing::Plain {

using Position = Tavro::Vector<double, 3>;
using Facet = Tavro::Facet<double, 3, 3>;
inline constexpr double kMost = std::numeric_limits<double>::max();

struct Vert;
struct Edge;
struct Face;
struct Cell;
using VertIt = std::list<Vert>::iterator;
using EdgeIt = std::list<Edge>::iterator;
using FaceIt = std::list<Face>::iterator;
using CellIt = std::list<Cell>::iterator;

struct Before {
    bool operator()(const Position& p, const Position& q) const;
};

struct Vert {
    Position m_position {};
    int m_number = 0;
    bool m_unreached = true;
    bool m_onSurface = false;
    bool m_split = false;
    std::vector<EdgeIt> m_edges {};
};

struct Edge {
    [[nodiscard]] bool Has(VertIt vert) const { return m_vert0 == vert || m_vert1 == vert; }
    [[nodiscard]] VertIt Other(VertIt vert) const { return m_vert0 == vert ? m_vert1 : m_vert0; }
    [[nodiscard]] bool IsSurface() const { return m_vert0->m_onSurface && m_vert1->m_onSurface; }

    VertIt m_vert0;
    VertIt m_vert1;
    int m_number = 0;
    Position m_intersection { kMost, kMost, -kMost };
    std::vector<FaceIt> m_faces {};
};

struct Face {
    [[nodiscard]] VertIt Corner(std::size_t i) const;

    std::vector<EdgeIt> m_edges;
    int m_number = 0;
    bool m_new = false;
    std::vector<CellIt> m_cells {};
};

struct Cell {
    std::vector<FaceIt> m_faces;
    std::vector<const Facet*> m_facets {};
};

struct ByCreation {
    template <typename It>
    bool operator()(It p, It q) const
    {
        return p->m_number < q->m_number;
    }
};
using FaceSet = std::set<FaceIt, ByCreation>;
using EdgeSet = std::set<EdgeIt, ByCreation>;

/// What the product throws as its own exception, with the same text.
struct Failure : std::runtime_error {
    using std::runtime_error::runtime_error;
};

/// An edge and a triangle as they are tested: grown by the tolerance.
struct Grown {
    Grown(const Position& p, const Position& q, const Facet& facet, double tolerance);
    [[nodiscard]] bool Meet() const;
    /// On some axis all of the edge is below or above all of the triangle.
    [[nodiscard]] bool AreApart() const;

    Position m_p {}, m_q {}, m_a {}, m_b {}, m_c {};
};

double intersect_edge_tri(
    const Position& p, const Position& q, const Facet& facet, double tolerance);

class Complex {
public:
    /// Of the crossing test; the process has one.
    explicit Complex(double tolerance)
        : m_tolerance(tolerance)
    {
    }

    /// Corners around the bottom, then around the top; six tetrahedra if there are facets.
    void AddBox(const std::array<Position, 8>& corners, const std::vector<const Facet*>& facets);
    /// Oldest face first.
    std::list<Facet> GenerateApproximateSurface();

    std::list<Vert> m_verts;
    std::list<Edge> m_edges;
    std::list<Face> m_faces;
    std::list<Cell> m_cells;
    std::map<std::size_t, int> m_cellsBySets; ///< how many cells fell into so many sets

private:
    using Slots = std::array<VertIt, 6>;

    EdgeIt AddEdge(VertIt vert0, VertIt vert1);
    FaceIt AddFace(const std::vector<EdgeIt>& ring);
    CellIt AddCell(const std::vector<FaceIt>& faces);
    VertIt AddVert(const Position& position);
    VertIt FindOrAddVert(const Position& position);
    EdgeIt FindEdge(VertIt vert0, VertIt vert1);
    EdgeIt FindOrAddEdge(VertIt vert0, VertIt vert1);
    FaceIt FindFace(const std::vector<EdgeIt>& ring);
    FaceIt FindOrAddFace(const std::vector<EdgeIt>& ring);
    CellIt FindCell(const std::vector<FaceIt>& faces);
    void FindOrAddCell(
        const std::vector<std::vector<EdgeIt>>& rings, const std::vector<const Facet*>& facets);
    void AddTetrahedron(
        const std::array<Position, 4>& corners, const std::vector<const Facet*>& facets);
    void AddHexahedron(const std::array<Position, 8>& corners);
    void RemoveVert(VertIt vert);
    void RemoveEdge(EdgeIt edge);
    void RemoveFace(FaceIt face);
    void RemoveCell(CellIt cell);
    void ReplaceEdge(EdgeIt edge, EdgeIt half0, EdgeIt half1);
    void ReplaceFace(FaceIt face, const std::vector<FaceIt>& parts);

    void SeekCrossings();
    void Flood();
    void PlaceCrossings();
    std::vector<std::pair<VertIt, Position>> Snap();
    bool SplitEdges();
    bool SplitFaces();
    void MorphGrid();
    Slots Caracterize(FaceIt face);
    bool SplitFace(FaceIt face, const Slots& slots);
    static std::vector<FaceSet> SeparatedSets(CellIt cell);
    static EdgeSet RawEdges(const FaceSet& faces);
    std::vector<FaceIt> CapFaces(const EdgeSet& rim);
    void SplitCell(CellIt cell);

    double m_tolerance;
    double m_minEdgeLength = kMost;
    int m_created = 0;
    std::map<Position, VertIt, Before> m_byPosition;
};

} // namespace Testing::Plain
