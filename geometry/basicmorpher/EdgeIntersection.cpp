// SPDX-License-Identifier: Apache-2.0
#include "geometry/basicmorpher/BasicMorpher.h"
#include "geometry/basicmorpher/EdgeCrossing.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <vector>

namespace BasicMorpher {

namespace {

using Tavro::kNone;

/// One for the whole process, from whichever morpher tests first: surfaces made by one process are
/// cut alike, whatever their cells.
double Tolerance(const BasicMorpher& morpher)
{
    static const double tolerance = morpher.m_dMinEdgeLength * 0.0005;
    return tolerance;
}

/// None if no cell is around the edge.
CellIt CellOfFewestFacets(const Edge& edge)
{
    CellIt least;
    std::size_t fewest = 4294967295;
    for (const FaceIt face : edge.m_vecFaces) {
        for (const CellIt cell : face->m_vecCells) {
            const std::size_t count = cell->m_vecTriangles.size();
            if (count >= fewest)
                continue;
            if (count == 0)
                return cell;
            fewest = count;
            least = cell;
        }
    }
    return least;
}

/// Facets made ready for the test, kept until others are asked for.
class ReadyFacets {
public:
    const std::vector<EdgeCrossing::GrownTriangle>& Of(const FacetArray& facets, double tolerance)
    {
        if (facets.SharesMemoryWith(m_facets))
            return m_ready;
        m_facets = facets;
        m_ready.clear();
        for (const Facet* facet : facets)
            m_ready.emplace_back((*facet)[0], (*facet)[1], (*facet)[2], tolerance);
        return m_ready;
    }

private:
    FacetArray m_facets;
    std::vector<EdgeCrossing::GrownTriangle> m_ready;
};

/// Edges that follow each other mostly meet the facets of a few cells beside each other.
class ReadyFacetsOfCells {
public:
    const std::vector<EdgeCrossing::GrownTriangle>& Of(const FacetArray& facets, double tolerance)
    {
        // The upper bits of a product with an odd number whose bits are evenly spread.
        const auto address = reinterpret_cast<std::uintptr_t>(facets.begin());
        return m_ready[std::uint64_t { address } * 0x9E3779B97F4A7C15 >> 58U].Of(facets, tolerance);
    }

private:
    std::array<ReadyFacets, 64> m_ready;
};

/// Leaves the least and the greatest parameter in y and z of the edges that are crossed.
void SeekCrossings(BasicMorpher& morpher)
{
    ReadyFacetsOfCells ready;
    for (Edge& edge : morpher.m_lstEdges) {
        const CellIt cell = CellOfFewestFacets(edge);
        if (cell == CellIt() || cell->m_vecTriangles.empty())
            continue;
        const FacetArray& facets = cell->m_vecTriangles;
        const double tolerance = Tolerance(morpher);
        const EdgeCrossing::GrownEdge grown(
            edge.m_itVert0->m_vPosition, edge.m_itVert1->m_vPosition, tolerance);
        Position& range = edge.m_vIntersection;
        for (const EdgeCrossing::GrownTriangle& triangle : ready.Of(facets, tolerance)) {
            const double t = EdgeCrossing::Parameter(grown, triangle);
            if (t >= 0.0) { // not so for a NaN, which would make the crossing point one
                range[1] = std::min(range[1], t);
                range[2] = std::max(range[2], t);
            }
        }
        morpher.m_counters.m_edgeTests += facets.size();
    }
}

/// Takes the lexicographically least vertex that is left for outside, and clears the mark of all
/// that can be reached from there along edges that are not crossed.
void FloodFromOutside(const BasicMorpher& morpher)
{
    const VertIt outside = morpher.m_mapVerts.First(
        [&morpher](VertIt vert) { return morpher.m_lstVerts.contains(vert); });
    if (outside == VertIt())
        return;
    std::vector<VertIt> stack { outside };
    stack.back()->m_bUnreached = false;
    while (!stack.empty()) {
        const VertIt vert = stack.back();
        stack.pop_back();
        for (const EdgeIt edge : vert->m_vecEdges) {
            if (edge->m_vIntersection[1] != kNone<double>)
                continue;
            const VertIt other = edge->OtherEnd(vert);
            if (other->m_bUnreached) {
                other->m_bUnreached = false;
                stack.push_back(other);
            }
        }
    }
}

/// Replaces the range of parameters by the crossing point that counts.
void PlaceCrossing(Edge& edge)
{
    const double least = edge.m_vIntersection[1];
    const double greatest = edge.m_vIntersection[2];
    if (least == kNone<double> || greatest == -kNone<double>)
        return;
    const bool unreached0 = edge.m_itVert0->m_bUnreached;
    const bool unreached1 = edge.m_itVert1->m_bUnreached;
    if (unreached0 && unreached1) {
        edge.m_vIntersection = kNoIntersection;
        return;
    }
    double t = (least + greatest) * 0.5;
    if (unreached0 != unreached1)
        t = unreached1 ? least : greatest;
    const Position& end0 = edge.m_itVert0->m_vPosition;
    const Position& end1 = edge.m_itVert1->m_vPosition;
    for (std::size_t axis = 0; axis < 3; ++axis)
        edge.m_vIntersection[axis] = end0[axis] + t * (end1[axis] - end0[axis]);
}

} // namespace

double BasicMorpher::IntersectEdgeTri(const Position& p, const Position& q, const Position& a,
    const Position& b, const Position& c) const
{
    const double tolerance = Tolerance(*this);
    return EdgeCrossing::Parameter(
        EdgeCrossing::GrownEdge(p, q, tolerance), EdgeCrossing::GrownTriangle(a, b, c, tolerance));
}

// NOLINTNEXTLINE(readability-convert-member-functions-to-static): called on a complex as all others
void BasicMorpher::GetIntersectingTrisForEdge(EdgeIt edge, FacetArray& facets) const
{
    const CellIt cell = edge == EdgeIt() ? CellIt() : CellOfFewestFacets(*edge);
    facets = cell == CellIt() ? FacetArray() : cell->m_vecTriangles;
}

void BasicMorpher::IntersectEdges()
{
    SeekCrossings(*this);
    FloodFromOutside(*this);
    for (Edge& edge : m_lstEdges)
        PlaceCrossing(edge);
}

} // namespace BasicMorpher
