// SPDX-License-Identifier: Apache-2.0
#include "geometry/basicmorpher/BasicMorpher.h"

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

void BasicMorpher::ReplaceOverlappingEdge(EdgeIt edge, EdgeIt half0, EdgeIt half1)
{
    if (!order_halves(*edge, half0, half1)) {
        throw BasicMorpherException(
            "Attempted to replace overlapping edge with edges that do not overlap.");
    }
    // A copy: the last face that goes takes the edge with it.
    const auto formerFaces = edge->m_vecFaces;
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

        const FaceIt added = m_lstFaces.emplace_front(replacement);
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
    }
    for (const FaceIt former : formerFaces)
        RemoveFace(former);
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
