// SPDX-License-Identifier: Apache-2.0
#include "geometry/VectorMath.h"
#include "geometry/basicmorpher/BasicMorpher.h"

#include <array>
#include <cstddef>
#include <utility>
#include <vector>

namespace BasicMorpher {

namespace {

using Tavro::LexicographicallyLess;
using Tavro::SamePosition;
using Triangle = std::array<EdgeIt, 3>;
using Ring = std::array<EdgeIt, 4>;

bool ShareVert(EdgeIt one, EdgeIt other)
{
    return one->Has(other->m_itVert0) || one->Has(other->m_itVert1);
}

FaceIt FindOrAddFace(BasicMorpher& morpher, const Triangle& edges)
{
    const FaceIt found = morpher.FindFace(edges);
    return found != FaceIt() ? found : morpher.AddFace(Face(edges));
}

/// By the first end, then by the second.
bool Less(const Edge& one, const Edge& other)
{
    const Position& first = one.m_itVert0->m_vPosition;
    const Position& otherFirst = other.m_itVert0->m_vPosition;
    if (!SamePosition(first, otherFirst))
        return LexicographicallyLess(first, otherFirst);
    return LexicographicallyLess(one.m_itVert1->m_vPosition, other.m_itVert1->m_vPosition);
}

/// Bubbles until a pass makes no swap, so that any order of what compares as equal stays.
void SortDescending(Ring& edges)
{
    bool swapped = true;
    while (swapped) {
        swapped = false;
        for (std::size_t i = 0; i + 1 < edges.size(); ++i) {
            if (Less(*edges[i], *edges[i + 1])) {
                std::swap(edges[i], edges[i + 1]);
                swapped = true;
            }
        }
    }
}

/// Starts at the first of the sorted edges and goes on along the greater one beside it.
Ring RingOf(Ring edges)
{
    SortDescending(edges);
    SmallArray<EdgeIt, 3> beside;
    SmallArray<EdgeIt, 3> opposite;
    for (std::size_t i = 1; i < edges.size(); ++i)
        (ShareVert(edges[0], edges[i]) ? beside : opposite).push_back(edges[i]);
    if (beside.size() != 2 || !ShareVert(opposite[0], beside[0])
        || !ShareVert(opposite[0], beside[1]))
        throw BasicMorpherException("GenerateRawEdgeFaces: Invalid four sided face.");
    return { edges[0], beside[0], opposite[0], beside[1] };
}

struct Diagonal {
    EdgeIt m_itEdge;
    bool m_bFromFirstCorner; ///< joins corners 0 and 2, else 1 and 3
};

/// One that is there already, else the one through the least corner: the cells on both sides of a
/// cap choose alike, since nothing but positions counts.
Diagonal DiagonalOf(BasicMorpher& morpher, const Ring& ring)
{
    const Face face(ring);
    const std::array<VertIt, 4> v { face.GetVert(0), face.GetVert(1), face.GetVert(2),
        face.GetVert(3) };
    if (const EdgeIt found = morpher.FindEdge(v[0], v[2]); found != EdgeIt())
        return { found, true };
    if (const EdgeIt found = morpher.FindEdge(v[1], v[3]); found != EdgeIt())
        return { found, false };
    const auto less = [&v](std::size_t i, std::size_t j) {
        return LexicographicallyLess(v[i]->m_vPosition, v[j]->m_vPosition);
    };
    if ((less(0, 1) && less(0, 2) && less(0, 3)) || (less(2, 0) && less(2, 1) && less(2, 3)))
        return { morpher.AddEdge(Edge(v[0], v[2])), true };
    return { morpher.AddEdge(Edge(v[1], v[3])), false };
}

} // namespace

void BasicMorpher::GenerateRawEdgeFaces(const EdgeSet& edges, std::vector<FaceIt>& faces)
{
    faces.clear();
    if (edges.size() == 3) {
        const Triangle triangle { edges[0], edges[1], edges[2] };
        if (!ShareVert(triangle[0], triangle[1]) || !ShareVert(triangle[1], triangle[2])
            || !ShareVert(triangle[2], triangle[0]))
            throw BasicMorpherException("GenerateRawEdgeFaces: Invalid three sided face.");
        faces.push_back(FindOrAddFace(*this, triangle));
        return;
    }
    if (edges.size() != 4)
        throw BasicMorpherException("GenerateRawEdgeFaces: Number of raw edges not three or four.");
    const Ring ring = RingOf({ edges[0], edges[1], edges[2], edges[3] });
    const auto [diagonal, fromFirstCorner] = DiagonalOf(*this, ring);
    if (fromFirstCorner) {
        faces.push_back(FindOrAddFace(*this, { ring[0], ring[1], diagonal }));
        faces.push_back(FindOrAddFace(*this, { diagonal, ring[2], ring[3] }));
    } else {
        faces.push_back(FindOrAddFace(*this, { ring[3], ring[0], diagonal }));
        faces.push_back(FindOrAddFace(*this, { diagonal, ring[1], ring[2] }));
    }
}

} // namespace BasicMorpher
