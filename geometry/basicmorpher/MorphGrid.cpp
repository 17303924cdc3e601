// SPDX-License-Identifier: Apache-2.0
#include "geometry/VectorMath.h"
#include "geometry/basicmorpher/BasicMorpher.h"

#include <algorithm>
#include <cmath>
#include <iterator>
#include <vector>

namespace BasicMorpher {

namespace {

using Tavro::kNone;

struct Move {
    VertIt m_itVert;
    Position m_vTarget;
};

double Distance(const Position& p, const Position& q)
{
    const Position apart = Tavro::Subtract(p, q);
    return std::sqrt(Tavro::Dot(apart, apart));
}

/// Takes the crossings near the vertex off its edges. False if there are none, else the nearest
/// one is the target.
bool TakeNearCrossings(const Vert& vert, double tolerance, Position& target)
{
    double best = kNone<double>;
    for (const EdgeIt edge : vert.m_vecEdges) {
        if (!IsCrossed(*edge))
            continue;
        const double distance = Distance(edge->m_vIntersection, vert.m_vPosition);
        if (!(distance < tolerance))
            continue;
        if (distance < best) {
            best = distance;
            target = edge->m_vIntersection;
        }
        edge->m_vIntersection = kNoIntersection;
    }
    return best < kNone<double>;
}

/// An edge of a snapped vertex is not split: what is left on it must snap to its other end.
void TakeFarCrossings(VertIt vert, double tolerance)
{
    for (const EdgeIt edge : vert->m_vecEdges) {
        if (!IsCrossed(*edge))
            continue;
        const Position& other = edge->OtherEnd(vert)->m_vPosition;
        if (!(Distance(edge->m_vIntersection, other) < tolerance))
            edge->m_vIntersection = kNoIntersection;
    }
}

/// Moves no vertex yet: distances are measured from where they were.
std::vector<Move> SnapVerts(BasicMorpher& morpher)
{
    const double tolerance = morpher.m_dMinEdgeLength * 0.3334;
    std::vector<Move> moves;
    for (VertIt vert = morpher.m_lstVerts.begin(); vert != morpher.m_lstVerts.end(); ++vert) {
        Position target {};
        if (!TakeNearCrossings(*vert, tolerance, target))
            continue;
        moves.push_back({ vert, target });
        vert->m_bOnSurface = true;
        TakeFarCrossings(vert, tolerance);
    }
    morpher.m_counters.m_snappedVerts += moves.size();
    return moves;
}

/// False if there was no edge to split.
bool SplitEdges(BasicMorpher& morpher)
{
    bool any = false;
    EdgeIt next;
    for (EdgeIt edge = morpher.m_lstEdges.begin(); edge != morpher.m_lstEdges.end(); edge = next) {
        next = std::next(edge);
        if (!IsCrossed(*edge))
            continue;
        Vert middle(edge->m_vIntersection);
        middle.m_bUnreached = true;
        middle.m_bOnSurface = true;
        middle.m_bSplit = true;
        const VertIt vert = morpher.AddVert(middle);
        const EdgeIt first = morpher.AddEdge(Edge(edge->m_itVert0, vert));
        const EdgeIt second = morpher.AddEdge(Edge(vert, edge->m_itVert1));
        morpher.ReplaceCrossedEdge(edge, first, second);
        ++morpher.m_counters.m_splitEdges;
        any = true;
    }
    return any;
}

bool HasSplitCorner(const Face& face)
{
    for (unsigned int i = 0; i < face.m_vecEdges.size(); ++i) {
        if (face.GetVert(i)->m_bSplit)
            return true;
    }
    return false;
}

/// The youngest face, if neither it nor any older one has a split corner or is new; else none.
FaceIt LastWholeFace(const BasicMorpher& morpher)
{
    for (const Vert& vert : morpher.m_lstVerts) {
        if (vert.m_bSplit)
            return {};
    }
    for (const Face& face : morpher.m_lstFaces) {
        if (face.m_bNew)
            return {};
    }
    return morpher.m_lstFaces.begin();
}

bool IsYounger(FaceIt face, FaceIt lastWhole) { return lastWhole == FaceIt() || lastWhole < face; }

/// Looks at the faces that are younger than the last whole one. False if there was none to split.
bool SplitFaces(BasicMorpher& morpher, FaceIt lastWhole)
{
    bool any = false;
    FaceIt next;
    for (FaceIt face = morpher.m_lstFaces.begin(); face != morpher.m_lstFaces.end(); face = next) {
        next = std::next(face);
        if (!IsYounger(face, lastWhole))
            break;
        if (!HasSplitCorner(*face))
            continue;
        SplitSlots slots {};
        morpher.CaracterizeSplitFace(face, slots);
        if (morpher.SplitCaracterizedFace(face, slots))
            any = true;
    }
    return any;
}

bool HasNewFace(const Cell& cell, FaceIt lastWhole)
{
    return std::any_of(cell.m_vecFaces.begin(), cell.m_vecFaces.end(),
        [lastWhole](FaceIt face) { return IsYounger(face, lastWhole) && face->m_bNew; });
}

void SplitCells(BasicMorpher& morpher, FaceIt lastWhole)
{
    CellIt next;
    for (CellIt cell = morpher.m_lstCells.begin(); cell != morpher.m_lstCells.end(); cell = next) {
        next = std::next(cell);
        if (HasNewFace(*cell, lastWhole))
            morpher.SplitCell(cell);
    }
}

} // namespace

void BasicMorpher::MorphGrid()
{
    const std::vector<Move> moves = SnapVerts(*this);
    // Splitting leaves only younger faces behind: the millions far from the surface are passed
    // over.
    const FaceIt lastWhole = LastWholeFace(*this);
    if (SplitEdges(*this) && SplitFaces(*this, lastWhole))
        SplitCells(*this, lastWhole);
    for (const Move& move : moves)
        move.m_itVert->m_vPosition = move.m_vTarget;
}

} // namespace BasicMorpher
