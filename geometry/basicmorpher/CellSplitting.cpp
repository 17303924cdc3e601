// SPDX-License-Identifier: Apache-2.0
#include "geometry/basicmorpher/BasicMorpher.h"

#include <algorithm>
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
FaceSet FloodBetweenSurfaceEdges(FaceIt start, const EdgeFaces& edgeFaces)
{
    FaceSet group;
    std::vector<FaceIt> stack { start };
    while (!stack.empty()) {
        const FaceIt face = stack.back();
        stack.pop_back();
        group.insert(face);
        for (const EdgeIt edge : face->m_vecEdges) {
            if (IsSurfaceEdge(*edge))
                continue;
            for (const FaceIt other : edgeFaces.On(edge)) {
                if (!group.contains(other))
                    stack.push_back(other);
            }
        }
    }
    return group;
}

void CheckClosed(const FaceSet& faces)
{
    for (const auto& [edge, count] : CountEdgeUses(faces)) {
        if (count != 2) {
            const std::string message
                = "SplitCell: Split cell not correctly connected (" + std::to_string(count) + ").";
            throw BasicMorpherException(message.c_str());
        }
    }
}

} // namespace

std::vector<std::pair<EdgeIt, std::size_t>> CountEdgeUses(const FaceSet& faces)
{
    std::vector<EdgeIt> edges;
    for (const FaceIt face : faces)
        edges.insert(edges.end(), face->m_vecEdges.begin(), face->m_vecEdges.end());
    std::sort(edges.begin(), edges.end());
    std::vector<std::pair<EdgeIt, std::size_t>> counts;
    for (const EdgeIt edge : edges) {
        if (counts.empty() || counts.back().first != edge)
            counts.emplace_back(edge, 0);
        ++counts.back().second;
    }
    return counts;
}

EdgeFaces::EdgeFaces(const Cell& cell)
{
    for (const FaceIt face : cell.m_vecFaces) {
        for (const EdgeIt edge : face->m_vecEdges)
            m_uses.emplace_back(edge, face);
    }
    std::sort(m_uses.begin(), m_uses.end());
}

FaceSet EdgeFaces::On(EdgeIt edge) const
{
    FaceSet faces;
    auto use = std::lower_bound(m_uses.begin(), m_uses.end(), edge,
        [](const auto& entry, EdgeIt sought) { return entry.first < sought; });
    for (; use != m_uses.end() && use->first == edge; ++use)
        faces.insert(use->second);
    if (faces.empty())
        throw BasicMorpherException("GetSurfaceSeparatedFaceSets: Encountered edge not in cell's "
                                    "edge to face map.");
    return faces;
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

void BasicMorpher::GetSurfaceSeparatedFaceSets(CellIt cell, std::vector<FaceSet>& sets) const
{
    sets.clear();
    const EdgeFaces edgeFaces(*cell);
    FaceSet visited;
    for (const FaceIt start : cell->m_vecFaces) {
        if (visited.contains(start))
            continue;
        FaceSet group = FloodBetweenSurfaceEdges(start, edgeFaces);
        for (const FaceIt face : group)
            visited.insert(face);
        if (NeedsClosing(group))
            sets.push_back(std::move(group));
    }
}

void BasicMorpher::GetFaceSetRawEdges(const FaceSet& faces, EdgeSet& edges) const
{
    edges.clear();
    for (const auto& [edge, count] : CountEdgeUses(faces)) {
        if (count == 1) {
            if (!IsSurfaceEdge(*edge))
                throw BasicMorpherException("GetFaceSetRawEdges: Raw edge not a surface edge.");
            edges.insert(edge);
        } else if (count == 2) {
            if (IsSurfaceEdge(*edge))
                throw BasicMorpherException("GetFaceSetRawEdges: Non-raw edge is a surface edge.");
        } else {
            const std::string message
                = "GetFaceSetRawEdges: Unexpected connectivity (" + std::to_string(count) + ")";
            throw BasicMorpherException(message.c_str());
        }
    }
}

void BasicMorpher::SplitCell(CellIt cell)
{
    std::vector<FaceSet> sets;
    GetSurfaceSeparatedFaceSets(cell, sets);
    if (sets.size() < 2)
        return;
    for (FaceSet& set : sets) {
        EdgeSet rawEdges;
        GetFaceSetRawEdges(set, rawEdges);
        std::vector<FaceIt> caps;
        GenerateRawEdgeFaces(rawEdges, caps);
        for (const FaceIt cap : caps)
            set.insert(cap);
    }
    for (const FaceSet& set : sets) {
        CheckClosed(set);
        AddCell(Cell({ set.begin(), set.size() }));
    }
    RemoveCell(cell);
    ++m_counters.m_splitCells;
}

} // namespace BasicMorpher
