// SPDX-License-Identifier: Apache-2.0
#include "geometry/basicmorpher/BasicMorpher.h"
#include "geometry/basicmorpher/CellParts.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <utility>
#include <vector>

namespace BasicMorpher {

namespace {

bool AllCornersOnSurface(const Face& face)
{
    for (unsigned int i = 0; i < face.m_vecEdges.size(); ++i) {
        if (!face.GetVert(i)->m_bOnSurface)
            return false;
    }
    return true;
}

/// The faces that can be reached from one without crossing a surface edge.
FaceSet FloodBetweenSurfaceEdges(FaceIt start, const EdgeUses& uses)
{
    FaceSet group { start };
    SmallArray<FaceIt, 16> reached;
    reached.push_back(start);
    for (std::uint32_t i = 0; i < reached.size(); ++i) {
        for (const EdgeIt edge : reached[i]->m_vecEdges) {
            if (IsSurfaceEdge(*edge))
                continue;
            for (const EdgeUse& use : uses.On(edge)) {
                if (group.insert(use.m_itFace))
                    reached.push_back(use.m_itFace);
            }
        }
    }
    return group;
}

void CheckClosed(const FaceSet& faces)
{
    EdgeUses(faces).CountEach([](EdgeIt, std::ptrdiff_t count) {
        if (count != 2) {
            const std::string message
                = "SplitCell: Split cell not correctly connected (" + std::to_string(count) + ").";
            throw BasicMorpherException(message.c_str());
        }
    });
}

} // namespace

std::span<const EdgeUse> EdgeUses::On(EdgeIt edge) const
{
    const EdgeUse* const first = std::lower_bound(m_uses.begin(), m_uses.end(), edge,
        [](const EdgeUse& use, EdgeIt sought) { return use.m_itEdge < sought; });
    const EdgeUse* last = first;
    while (last != m_uses.end() && last->m_itEdge == edge)
        ++last;
    if (first == last)
        throw BasicMorpherException("GetSurfaceSeparatedFaceSets: Encountered edge not in cell's "
                                    "edge to face map.");
    return { first, last };
}

bool NeedsClosing(const FaceSet& group)
{
    if (group.empty())
        throw BasicMorpherException(
            "GetSurfaceSeparatedFaceSets: Should not have zero faces in face set.");
    if (group.size() == 1) {
        if (!AllCornersOnSurface(*group[0]))
            throw BasicMorpherException(
                "GetSurfaceSeparatedFaceSets: Single face, face set not a surface face.");
        return false;
    }
    if (group.size() == 2)
        throw BasicMorpherException(
            "GetSurfaceSeparatedFaceSets: Should not have only two faces in face set.");
    return true;
}

// NOLINTNEXTLINE(readability-convert-member-functions-to-static): called on a complex as all others
void BasicMorpher::GetSurfaceSeparatedFaceSets(CellIt cell, std::vector<FaceSet>& sets) const
{
    sets.clear();
    sets.reserve(4); // one for each corner of a tetrahedron
    const EdgeUses uses(cell->m_vecFaces);
    FaceSet visited;
    for (const FaceIt start : cell->m_vecFaces) {
        if (visited.contains(start))
            continue;
        FaceSet group = FloodBetweenSurfaceEdges(start, uses);
        for (const FaceIt face : group)
            (void)visited.insert(face); // groups do not overlap
        if (NeedsClosing(group))
            sets.push_back(std::move(group));
    }
}

// NOLINTNEXTLINE(readability-convert-member-functions-to-static): called on a complex as all others
void BasicMorpher::GetFaceSetRawEdges(const FaceSet& faces, EdgeSet& edges) const
{
    edges.clear();
    EdgeUses(faces).CountEach([&edges](EdgeIt edge, std::ptrdiff_t count) {
        if (count == 1) {
            if (!IsSurfaceEdge(*edge))
                throw BasicMorpherException("GetFaceSetRawEdges: Raw edge not a surface edge.");
            (void)edges.insert(edge); // each comes once
        } else if (count == 2) {
            if (IsSurfaceEdge(*edge))
                throw BasicMorpherException("GetFaceSetRawEdges: Non-raw edge is a surface edge.");
        } else {
            const std::string message
                = "GetFaceSetRawEdges: Unexpected connectivity (" + std::to_string(count) + ")";
            throw BasicMorpherException(message.c_str());
        }
    });
}

void BasicMorpher::SplitCell(CellIt cell)
{
    const CellParts parts(*cell);
    if (!parts.AreRegular()) {
        SplitIrregularCell(cell);
        return;
    }
    const std::span<const CellParts::Part> found = parts.Parts();
    if (found.size() < 2)
        return;
    std::array<FaceSet, CellParts::kMaxParts> sets;
    std::array<bool, CellParts::kMaxParts> closed {};
    for (std::size_t i = 0; i < found.size(); ++i) {
        GenerateRawEdgeFaces(found[i].m_rim, m_vecCaps);
        sets[i] = parts.FacesOf(found[i]);
        closed[i] = parts.AreCaps(found[i], m_vecCaps);
        for (const FaceIt cap : m_vecCaps)
            (void)sets[i].insert(cap); // one that is there already does not close the part
    }
    for (std::size_t i = 0; i < found.size(); ++i) {
        if (!closed[i])
            CheckClosed(sets[i]);
        AddCell(Cell({ sets[i].begin(), sets[i].size() }));
    }
    RemoveCell(cell);
    ++m_counters.m_splitCells;
}

void BasicMorpher::SplitIrregularCell(CellIt cell)
{
    GetSurfaceSeparatedFaceSets(cell, m_vecSets);
    if (m_vecSets.size() < 2)
        return;
    for (FaceSet& set : m_vecSets) {
        EdgeSet rawEdges;
        GetFaceSetRawEdges(set, rawEdges);
        GenerateRawEdgeFaces(rawEdges, m_vecCaps);
        for (const FaceIt cap : m_vecCaps)
            (void)set.insert(cap); // one that is there already shows in the count of its edges
    }
    for (const FaceSet& set : m_vecSets) {
        CheckClosed(set);
        AddCell(Cell({ set.begin(), set.size() }));
    }
    RemoveCell(cell);
    ++m_counters.m_splitCells;
}

} // namespace BasicMorpher
