// SPDX-License-Identifier: Apache-2.0
#include "tests/geometry/basicmorpher/CuttingSamples.h"

#include <gtest/gtest.h>

namespace {

using namespace Testing;

constexpr unsigned int kSplitVert = kSplit | kOnSurface;

// A ring is written as one letter for each corner: "c" plain, "C" on the surface, "s" split and on
// the surface, "x" split and not. Its corners lie at (0,0,0), (1,0,0), (2,1,0), (3,3,0) and so on,
// so that the x of its vertex names a slot.
struct RingSample {
    explicit RingSample(const std::string& ring)
    {
        std::vector<VertIt> corners;
        for (std::size_t i = 0; i < ring.size(); ++i) {
            const auto x = static_cast<double>(i);
            const unsigned int marks = ring[i] == 's' ? kSplitVert
                : ring[i] == 'x'                      ? unsigned { kSplit }
                : ring[i] == 'C'                      ? unsigned { kOnSurface }
                                                      : unsigned { kPlain };
            corners.push_back(add_vert(morpher, { x, x * (x - 1) / 2, 0 }, marks));
        }
        face = polygon(morpher, corners);
    }
    /// The numbers of the corners in the six slots, "-" for none; or what is thrown.
    std::string Characterised()
    {
        const std::string failure
            = failure_of([this] { morpher.CaracterizeSplitFace(face, slots); });
        if (failure != "no exception")
            return failure;
        std::string found;
        for (const VertIt vert : slots)
            found
                += vert == VertIt() ? "-" : std::to_string(static_cast<int>(vert->m_vPosition[0]));
        return found;
    }

    Morpher morpher;
    FaceIt face;
    SplitSlots slots {};
};

std::string characterised(const std::string& ring) { return RingSample(ring).Characterised(); }

TEST(CaracterizeSplitFace, CornersAndSplitVertsTakeTheirSlots)
{
    EXPECT_EQ(characterised("ccc"), "0-1-2-");
    EXPECT_EQ(characterised("cccs"), "0-1-23");
    EXPECT_EQ(characterised("ccsc"), "0-123-");
    EXPECT_EQ(characterised("ccscs"), "0-1234");
    EXPECT_EQ(characterised("cscc"), "012-3-");
    EXPECT_EQ(characterised("csccs"), "012-34");
    EXPECT_EQ(characterised("cscsc"), "01234-");
    EXPECT_EQ(characterised("cscscs"), "012345");
}

TEST(CaracterizeSplitFace, TheFirstSlotIsTheFirstCornerThatIsNotSplit)
{
    EXPECT_EQ(characterised("sccc"), "1-2-30");
    EXPECT_EQ(characterised("scscsc"), "123450");
}

TEST(CaracterizeSplitFace, WhatTheSlotsHeldIsForgotten)
{
    RingSample sample("ccc");
    sample.slots.fill(sample.face->GetVert(1));
    EXPECT_EQ(sample.Characterised(), "0-1-2-");
}

TEST(CaracterizeSplitFace, AFourthCornerThrows)
{
    // After c0, c1 and c2 by skipped sides the slot is 5, after a split side before c2 likewise.
    EXPECT_EQ(characterised("cccc"), "CaracterizeSplitFace: Unexpected corner vertex!");
    EXPECT_EQ(characterised("ccscc"), "CaracterizeSplitFace: Unexpected corner vertex!");
    // And 6 behind a third split vertex.
    EXPECT_EQ(characterised("cccsc"), "CaracterizeSplitFace: Unexpected corner vertex!");
}

TEST(CaracterizeSplitFace, TwoSplitVertsOnOneSideThrow)
{
    EXPECT_EQ(characterised("csscc"),
        "CaracterizeSplitFace: Found edge vertex when expecting a corner vertex!");
    EXPECT_EQ(characterised("ccssc"),
        "CaracterizeSplitFace: Found edge vertex when expecting a corner vertex!");
}

TEST(CaracterizeSplitFace, TwoSplitVertsOnTheLastSideThrow)
{
    EXPECT_EQ(characterised("cccss"), "CaracterizeSplitFace: Unexpected split vertex!");
}

// The walk starts at the second one: it takes the side of the first corner, the third has no place.
TEST(CaracterizeSplitFace, ARingOfSplitVertsOnlyThrows)
{
    EXPECT_EQ(characterised("sss"),
        "CaracterizeSplitFace: Found edge vertex when expecting a corner vertex!");
    EXPECT_EQ(characterised("ss"), "CaracterizeSplitFace: Incorrect caracterization (1)!");
}

TEST(CaracterizeSplitFace, FewerThanThreeCornersThrow)
{
    EXPECT_EQ(characterised("ccs"), "CaracterizeSplitFace: Incorrect caracterization (1)!");
    EXPECT_EQ(characterised("cscs"), "CaracterizeSplitFace: Incorrect caracterization (1)!");
}

TEST(CaracterizeSplitFace, ASplitSideWithASnappedCornerThrows)
{
    EXPECT_EQ(characterised("Cscc"), "CaracterizeSplitFace: Incorrect caracterization (2)!");
    EXPECT_EQ(characterised("csCc"), "CaracterizeSplitFace: Incorrect caracterization (2)!");
    EXPECT_EQ(characterised("cCsc"), "CaracterizeSplitFace: Incorrect caracterization (3)!");
    EXPECT_EQ(characterised("ccsC"), "CaracterizeSplitFace: Incorrect caracterization (3)!");
    EXPECT_EQ(characterised("ccCs"), "CaracterizeSplitFace: Incorrect caracterization (4)!");
    EXPECT_EQ(characterised("Cccs"), "CaracterizeSplitFace: Incorrect caracterization (4)!");
}

TEST(CaracterizeSplitFace, ASplitVertOffTheSurfaceThrows)
{
    EXPECT_EQ(characterised("cxcc"), "CaracterizeSplitFace: Incorrect caracterization (5)!");
    EXPECT_EQ(characterised("ccxc"), "CaracterizeSplitFace: Incorrect caracterization (6)!");
    EXPECT_EQ(characterised("cccx"), "CaracterizeSplitFace: Incorrect caracterization (7)!");
}

TEST(CaracterizeSplitFace, TheFirstFailureInOrderIsTheOneThrown)
{
    EXPECT_EQ(characterised("Cxcx"), "CaracterizeSplitFace: Incorrect caracterization (1)!");
    EXPECT_EQ(characterised("Cxcsc"), "CaracterizeSplitFace: Incorrect caracterization (2)!");
    EXPECT_EQ(characterised("cxCsc"), "CaracterizeSplitFace: Incorrect caracterization (2)!");
    EXPECT_EQ(characterised("cxcCs"), "CaracterizeSplitFace: Incorrect caracterization (4)!");
    EXPECT_EQ(characterised("cxcxcx"), "CaracterizeSplitFace: Incorrect caracterization (5)!");
}

TEST(CaracterizeSplitFace, ASnappedCornerOppositeASplitSideIsInOrder)
{
    EXPECT_EQ(characterised("Ccsc"), "0-123-");
}

// Pieces

/// The corners of the pieces by their numbers in the ring, piece by piece in the order they were
/// made; the face has one cell, which holds them in that order.
std::string pieces_of(const std::string& ring)
{
    RingSample sample(ring);
    const CellIt cell = cell_of(sample.morpher, { sample.face });
    if (sample.Characterised().size() != 6)
        return "not characterised";
    if (!sample.morpher.SplitCaracterizedFace(sample.face, sample.slots))
        return "unsplit";
    std::string pieces;
    for (const FaceIt piece : cell->m_vecFaces) {
        pieces += pieces.empty() ? "" : " ";
        for (unsigned int i = 0; i < piece->m_vecEdges.size(); ++i)
            pieces += std::to_string(static_cast<int>(piece->GetVert(i)->m_vPosition[0]));
        if (!piece->m_bNew || !piece->m_vecCells.contains(cell))
            pieces += "!";
    }
    if (sample.morpher.m_lstFaces.size() != cell->m_vecFaces.size())
        pieces += " and more";
    return pieces;
}

// Slots c0 s0 c1 s1 c2 s2 have the numbers that the ring gives: in "ccscs" s1 is 2, c2 3 and s2 4.
TEST(SplitCaracterizedFace, EachSetOfSplitSidesHasItsPieces)
{
    EXPECT_EQ(pieces_of("ccc"), "unsplit");
    EXPECT_EQ(pieces_of("cccs"), "013 312");
    EXPECT_EQ(pieces_of("ccsc"), "012 023");
    EXPECT_EQ(pieces_of("ccscs"), "423 0124");
    EXPECT_EQ(pieces_of("cscc"), "013 123");
    EXPECT_EQ(pieces_of("csccs"), "014 1234");
    EXPECT_EQ(pieces_of("cscsc"), "0134 123");
    EXPECT_EQ(pieces_of("cscscs"), "015 135 123 534");
}

TEST(SplitCaracterizedFace, WithoutASplitSideNothingChanges)
{
    RingSample sample("CCC");
    ASSERT_EQ(sample.Characterised(), "0-1-2-");
    EXPECT_FALSE(sample.morpher.SplitCaracterizedFace(sample.face, sample.slots));
    EXPECT_EQ(sample.morpher.m_lstFaces.begin(), sample.face);
    EXPECT_FALSE(sample.face->m_bNew);
    EXPECT_EQ(sample.morpher.m_counters.m_splitFaces, 0U);
}

TEST(SplitCaracterizedFace, SidesAreFoundAndCutsAreAddedOnce)
{
    RingSample sample("cscscs");
    ASSERT_EQ(sample.Characterised(), "012345");
    EXPECT_TRUE(sample.morpher.SplitCaracterizedFace(sample.face, sample.slots));
    EXPECT_EQ(sample.morpher.m_lstEdges.size(), 9U); // six halves and three cuts
    EXPECT_EQ(sample.morpher.m_lstEdges.begin()->m_vIntersection[0], Tavro::kNone<double>);
    EXPECT_EQ(sample.morpher.m_counters.m_splitFaces, 1U);
}

TEST(SplitCaracterizedFace, BothCellsOfTheFaceGetThePieces)
{
    RingSample sample("cscc");
    const CellIt one = cell_of(sample.morpher, { sample.face });
    const CellIt other = cell_of(sample.morpher, { sample.face });
    ASSERT_EQ(sample.Characterised(), "012-3-");
    EXPECT_TRUE(sample.morpher.SplitCaracterizedFace(sample.face, sample.slots));
    ASSERT_EQ(one->m_vecFaces.size(), 2U);
    EXPECT_TRUE(std::equal(one->m_vecFaces.begin(), one->m_vecFaces.end(),
        other->m_vecFaces.begin(), other->m_vecFaces.end()));
    EXPECT_EQ(one->m_vecFaces[0]->m_vecCells.size(), 2U);
}

// A face with snapped corners only has no split corner, so it is never looked at.
TEST(FaceSplitting, AFaceWithTwoSnappedCornersAndNoSplitVertIsNotReplaced)
{
    Morpher morpher;
    add_corner_tetrahedron(morpher, {});
    const FaceIt face = morpher.FindFace(std::vector<EdgeIt> {
        edge_at(morpher, kO, kX), edge_at(morpher, kX, kY), edge_at(morpher, kY, kO) });
    edge_at(morpher, kO, kX)->m_vIntersection = { 2, 0, 0 }; // O snaps
    edge_at(morpher, kX, kY)->m_vIntersection = { 2, 14, 0 }; // Y snaps
    edge_at(morpher, kX, kZ)->m_vIntersection = { 8, 0, 8 }; // splits two other faces
    morpher.MorphGrid();
    EXPECT_TRUE(morpher.FindVert(kO)->m_bOnSurface);
    EXPECT_TRUE(morpher.FindVert(kY)->m_bOnSurface);
    EXPECT_EQ(morpher.m_counters.m_splitFaces, 2U);
    EXPECT_EQ(morpher.FindFace(std::vector<EdgeIt> {
                  edge_at(morpher, kO, kX), edge_at(morpher, kX, kY), edge_at(morpher, kY, kO) }),
        face);
    EXPECT_FALSE(face->m_bNew);
    EXPECT_EQ(text(face), "(2, 0, 0) (16, 0, 0) (2, 14, 0)");
}

// Two corners in a row were marked as split before: no cut leaves them so.
TEST(FaceSplitting, AFaceThatCannotBeCharacterisedEndsTheCut)
{
    Morpher morpher;
    const VertIt a = add_vert(morpher, { 0, 0, 0 });
    const VertIt b = add_vert(morpher, { 16, 0, 0 }, kSplitVert);
    const VertIt c = add_vert(morpher, { 0, 16, 0 }, kSplitVert);
    polygon(morpher, { a, b, c });
    polygon(morpher, { a, add_vert(morpher, { -16, 0, 0 }), add_vert(morpher, { 0, -16, 0 }) });
    edge_at(morpher, { 0, -16, 0 }, { 0, 0, 0 })->m_vIntersection = { 0, -8, 0 };
    EXPECT_EQ(failure_of([&morpher] { morpher.MorphGrid(); }),
        "CaracterizeSplitFace: Found edge vertex when expecting a corner vertex!");
}

} // namespace
