// SPDX-License-Identifier: Apache-2.0
#include "geometry/basicmorpher/BasicMorpher.h"

#include <array>
#include <cstdint>
#include <vector>

namespace BasicMorpher {

namespace {

// Places in the slots: corners and, after each, the split vertex of its side.
enum Slot : std::uint8_t { C0, S0, C1, S1, C2, S2, Unused };

bool IsNone(VertIt vert) { return vert == VertIt(); }

/// A split vertex may follow a corner only.
void PlaceSplitVert(VertIt vert, unsigned int& slot, SplitSlots& slots)
{
    if (slot == S0 || slot == S1 || slot == S2) {
        slots[slot] = vert;
        ++slot;
        return;
    }
    if (slot == C1 || slot == C2)
        throw BasicMorpherException(
            "CaracterizeSplitFace: Found edge vertex when expecting a corner vertex!");
    throw BasicMorpherException("CaracterizeSplitFace: Unexpected split vertex!");
}

/// A corner where a split vertex could stand leaves the side before it whole.
void PlaceCorner(VertIt vert, unsigned int& slot, SplitSlots& slots)
{
    if (slot == S0 || slot == S1) {
        slots[slot + 1] = vert;
        slot += 2;
        return;
    }
    if (slot == C1 || slot == C2) {
        slots[slot] = vert;
        ++slot;
        return;
    }
    throw BasicMorpherException("CaracterizeSplitFace: Unexpected corner vertex!");
}

void CheckSlots(const SplitSlots& slots)
{
    if (IsNone(slots[C0]) || IsNone(slots[C1]) || IsNone(slots[C2]))
        throw BasicMorpherException("CaracterizeSplitFace: Incorrect caracterization (1)!");
    const auto snappedCornerAt = [&slots](Slot side, Slot corner0, Slot corner1) {
        return !IsNone(slots[side])
            && (slots[corner0]->m_bOnSurface || slots[corner1]->m_bOnSurface);
    };
    if (snappedCornerAt(S0, C0, C1))
        throw BasicMorpherException("CaracterizeSplitFace: Incorrect caracterization (2)!");
    if (snappedCornerAt(S1, C1, C2))
        throw BasicMorpherException("CaracterizeSplitFace: Incorrect caracterization (3)!");
    if (snappedCornerAt(S2, C2, C0))
        throw BasicMorpherException("CaracterizeSplitFace: Incorrect caracterization (4)!");
    const auto offSurface
        = [&slots](Slot side) { return !IsNone(slots[side]) && !slots[side]->m_bOnSurface; };
    if (offSurface(S0))
        throw BasicMorpherException("CaracterizeSplitFace: Incorrect caracterization (5)!");
    if (offSurface(S1))
        throw BasicMorpherException("CaracterizeSplitFace: Incorrect caracterization (6)!");
    if (offSurface(S2))
        throw BasicMorpherException("CaracterizeSplitFace: Incorrect caracterization (7)!");
}

/// A polygon of three or four slots.
using Piece = std::array<Slot, 4>;
using Pieces = std::array<Piece, 4>;

constexpr Piece kNoPiece { Unused, Unused, Unused, Unused };

// By which sides are split: bit 0 for S0, bit 1 for S1, bit 2 for S2.
constexpr std::array<Pieces, 8> kPieces { {
    { kNoPiece, kNoPiece, kNoPiece, kNoPiece },
    { { { C0, S0, C2, Unused }, { S0, C1, C2, Unused }, kNoPiece, kNoPiece } },
    { { { C0, C1, S1, Unused }, { C0, S1, C2, Unused }, kNoPiece, kNoPiece } },
    { { { C0, S0, S1, C2 }, { S0, C1, S1, Unused }, kNoPiece, kNoPiece } },
    { { { C0, C1, S2, Unused }, { S2, C1, C2, Unused }, kNoPiece, kNoPiece } },
    { { { C0, S0, S2, Unused }, { S0, C1, C2, S2 }, kNoPiece, kNoPiece } },
    { { { S2, S1, C2, Unused }, { C0, C1, S1, S2 }, kNoPiece, kNoPiece } },
    { { { C0, S0, S2, Unused }, { S0, S1, S2, Unused }, { S0, C1, S1, Unused },
        { S2, S1, C2, Unused } } },
} };

} // namespace

// NOLINTNEXTLINE(readability-convert-member-functions-to-static): called on a complex as all others
void BasicMorpher::CaracterizeSplitFace(FaceIt face, SplitSlots& slots) const
{
    slots.fill(VertIt());
    const unsigned int count = face->m_vecEdges.size();
    unsigned int first = 0;
    while (first < count && face->GetVert(first)->m_bSplit)
        ++first;
    if (first < count)
        slots[C0] = face->GetVert(first);
    else
        first = 0;
    unsigned int slot = S0;
    for (unsigned int step = 1; step < count; ++step) {
        const VertIt vert = face->GetVert((first + step) % count);
        if (vert->m_bSplit)
            PlaceSplitVert(vert, slot, slots);
        else
            PlaceCorner(vert, slot, slots);
    }
    CheckSlots(slots);
}

bool BasicMorpher::SplitCaracterizedFace(FaceIt face, const SplitSlots& slots)
{
    const unsigned int sides = (IsNone(slots[S0]) ? 0U : 1U) + (IsNone(slots[S1]) ? 0U : 2U)
        + (IsNone(slots[S2]) ? 0U : 4U);
    if (sides == 0)
        return false;
    // The sides forget the face before they get its pieces, so that their arrays hardly ever
    // outgrow the memory that they have.
    for (const EdgeIt side : face->m_vecEdges)
        (void)side->m_vecFaces.Delete(face);
    SmallArray<FaceIt, 4> faces;
    for (const Piece& piece : kPieces[sides]) {
        if (piece == kNoPiece)
            break;
        const unsigned int count = piece[3] == Unused ? 3 : 4;
        SmallArray<EdgeIt, 4> ring;
        for (unsigned int i = 0; i < count; ++i)
            ring.push_back(FindOrAddEdge(slots[piece[i]], slots[piece[(i + 1) % count]]));
        faces.push_back(AddFace(Face({ ring.data(), ring.size() })));
    }
    for (const EdgeIt side : face->m_vecEdges) {
        if (side->m_vecFaces.empty())
            side->m_vecFaces.push_back(face); // no piece uses it: it goes with the face
    }
    ReplaceOverlappingFace(face, { faces.data(), faces.size() });
    for (const FaceIt added : faces)
        added->m_bNew = true;
    ++m_counters.m_splitFaces;
    return true;
}

} // namespace BasicMorpher
