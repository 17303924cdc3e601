// SPDX-License-Identifier: Apache-2.0
#include "geometry/basicmorpher/BasicMorpher.h"
#include "geometry/basicmorpher/Splitting.h"

#include <algorithm>
#include <utility>

namespace BasicMorpher {

namespace {

/// Swaps the halves if need be, so that the first one is at the first end of the edge.
/// False if they are not its halves.
bool order_halves(const Edge& edge, EdgeIt& half0, EdgeIt& half1)
{
    if (!half0->Has(edge.m_itVert0) || !half1->Has(edge.m_itVert1))
        std::swap(half0, half1);
    if (!half0->Has(edge.m_itVert0) || !half1->Has(edge.m_itVert1))
        return false;
    const VertIt middle = half0->OtherEnd(edge.m_itVert0);
    return middle == half1->OtherEnd(edge.m_itVert1) && !edge.Has(middle);
}

} // namespace

template <typename KeepWhile>
void BasicMorpher::ReplaceEdge(EdgeIt edge, EdgeIt half0, EdgeIt half1, const KeepWhile& keepWhile)
{
    if (!order_halves(*edge, half0, half1)) {
        throw BasicMorpherException(
            "Attempted to replace overlapping edge with edges that do not overlap.");
    }
    // A copy: the last face that goes takes the edge with it.
    const auto formerFaces = edge->m_vecFaces;
    SmallArray<FaceIt, 6> replaced;
    for (const FaceIt former : formerFaces) {
        Face replacement;
        const auto& ring = former->m_vecEdges;
        for (std::size_t i = 0; i < ring.size(); ++i) {
            if (ring[i] != edge) {
                replacement.m_vecEdges.push_back(ring[i]);
                continue;
            }
            const EdgeIt next = ring[i + 1 == ring.size() ? 0 : i + 1];
            const bool forwards = next->Has(edge->m_itVert1);
            replacement.m_vecEdges.push_back(forwards ? half0 : half1);
            replacement.m_vecEdges.push_back(forwards ? half1 : half0);
        }
        if (replacement.m_vecEdges.size() != ring.size() + 1)
            throw BasicMorpherException("Face did not contain edge marked adjacent to it.");

        if (keepWhile(replacement)) {
            (void)edge->m_vecFaces.Delete(former);
            half0->m_vecFaces.push_back(former);
            half1->m_vecFaces.push_back(former);
            for (const EdgeIt side : former->m_vecEdges) {
                // Those to come are replaced in their faces in the order of their arrays. Other
                // arrays are not looked at before the face moves to their ends as a new one.
                if (IsCrossed(*side) && side->m_vecFaces.Delete(former))
                    side->m_vecFaces.push_back(former);
            }
            former->m_vecEdges = std::move(replacement.m_vecEdges);
            continue;
        }
        const FaceIt added = m_lstFaces.emplace_front(std::move(replacement));
        for (const EdgeIt side : added->m_vecEdges) {
            // Losing the former face first, arrays hardly ever outgrow the memory that they have.
            (void)side->m_vecFaces.Delete(former); // the halves never had it
            side->m_vecFaces.push_back(added);
        }
        for (const CellIt cell : former->m_vecCells) {
            added->m_vecCells.push_back(cell);
            (void)cell->m_vecFaces.Delete(former);
            cell->m_vecFaces.push_back(added);
        }
        former->m_vecCells.clear();
        former->m_vecEdges.clear();
        former->m_vecEdges.push_back(edge); // the only one that still knows it
        replaced.push_back(former);
    }
    for (const FaceIt former : replaced)
        RemoveFace(former);
    if (replaced.empty() && !formerFaces.empty())
        RemoveEdge(edge); // else it went with the last of them
}

void BasicMorpher::ReplaceOverlappingEdge(EdgeIt edge, EdgeIt half0, EdgeIt half1)
{
    ReplaceEdge(edge, half0, half1, [](const Face&) { return false; });
}

void BasicMorpher::ReplaceCrossedEdge(EdgeIt edge, EdgeIt half0, EdgeIt half1)
{
    edge->m_vIntersection = kNoIntersection; // it is not one of those to come
    ReplaceEdge(edge, half0, half1, [](const Face& face) {
        return std::any_of(face.m_vecEdges.begin(), face.m_vecEdges.end(),
            [](EdgeIt side) { return IsCrossed(*side); });
    });
}

void BasicMorpher::ReplaceOverlappingFace(FaceIt face, std::span<const FaceIt> faces)
{
    for (const CellIt cell : face->m_vecCells) {
        for (const FaceIt part : faces) {
            cell->m_vecFaces.push_back(part);
            part->m_vecCells.push_back(cell);
        }
    }
    for (const CellIt cell : face->m_vecCells)
        cell->m_vecFaces.Delete(face);
    face->m_vecCells.clear();
    RemoveFace(face);
}

} // namespace BasicMorpher
