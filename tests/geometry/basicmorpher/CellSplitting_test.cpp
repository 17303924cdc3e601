// SPDX-License-Identifier: Apache-2.0
#include "geometry/basicmorpher/CellParts.h"
#include "tests/geometry/Allocations.h"
#include "tests/geometry/basicmorpher/CuttingSamples.h"

#include <gtest/gtest.h>

namespace {

using namespace Testing;
using ::BasicMorpher::CellParts;

/// A tetrahedron with its tip t cut off at the surface corners p, q and r; its base is x, y, z.
/// The sides are cut into triangles (t, p, q)... at the tip and quadrangles (p, x, y, q)... below.
struct CutCorner {
    CutCorner()
    {
        p = add_vert(morpher, { 1, 0, 8 }, kOnSurface);
        q = add_vert(morpher, { 0, 1, 8 }, kOnSurface);
        r = add_vert(morpher, { -1, -1, 8 }, kOnSurface);
        tip = { Face({ t, p, q }), Face({ t, q, r }), Face({ t, r, p }) };
        rest = { Face({ p, x, y, q }), Face({ q, y, z, r }), Face({ r, z, x, p }),
            Face({ x, y, z }) };
    }
    FaceIt Face(const std::vector<VertIt>& corners) { return polygon(morpher, corners); }
    CellIt Cell()
    {
        return cell_of(morpher, { rest[0], tip[0], tip[1], rest[1], tip[2], rest[2], rest[3] });
    }

    Morpher morpher;
    VertIt t = add_vert(morpher, { 0, 0, 16 });
    VertIt x = add_vert(morpher, { 9, 0, 0 });
    VertIt y = add_vert(morpher, { 0, 9, 0 });
    VertIt z = add_vert(morpher, { -9, -9, 0 });
    VertIt p;
    VertIt q;
    VertIt r;
    std::vector<FaceIt> tip;
    std::vector<FaceIt> rest;
};

FaceSet set_of(const std::vector<FaceIt>& faces)
{
    FaceSet set;
    for (const FaceIt face : faces)
        (void)set.insert(face); // each is there once
    return set;
}

// Groups

TEST(FaceSets, SurfaceEdgesPartTheFacesOfACell)
{
    CutCorner c;
    std::vector<FaceSet> sets(5); // what it held goes
    c.morpher.GetSurfaceSeparatedFaceSets(c.Cell(), sets);
    ASSERT_EQ(sets.size(), 2U);
    // The group of the cell's first face comes first.
    EXPECT_EQ(sets[0], set_of(c.rest));
    EXPECT_EQ(sets[1], set_of(c.tip));
}

TEST(FaceSets, WithoutSurfaceEdgesAllFacesAreOneSet)
{
    CutCorner c;
    c.q->m_bOnSurface = 0;
    std::vector<FaceSet> sets;
    c.morpher.GetSurfaceSeparatedFaceSets(c.Cell(), sets);
    ASSERT_EQ(sets.size(), 1U);
    EXPECT_EQ(sets[0].size(), 7U);
}

TEST(FaceSets, AreInTheOrderOfCreation)
{
    CutCorner c;
    const FaceSet set { c.tip[2], c.tip[0], c.tip[1], c.tip[0] };
    ASSERT_EQ(set.size(), 3U);
    EXPECT_EQ(set[0], c.tip[0]);
    EXPECT_EQ(set[1], c.tip[1]);
    EXPECT_EQ(set[2], c.tip[2]);
    EXPECT_TRUE(set.contains(c.tip[1]));
    EXPECT_FALSE(set.contains(c.rest[0]));
}

TEST(FaceSets, ASingleSurfaceFaceIsDropped)
{
    CutCorner c;
    const CellIt cell = cell_of(
        c.morpher, { c.Face({ c.p, c.q, c.r }), c.rest[0], c.rest[1], c.rest[2], c.rest[3] });
    std::vector<FaceSet> sets;
    c.morpher.GetSurfaceSeparatedFaceSets(cell, sets);
    ASSERT_EQ(sets.size(), 1U);
    EXPECT_EQ(sets[0], set_of(c.rest));
}

TEST(FaceSets, ASingleFaceOffTheSurfaceThrows)
{
    CutCorner c;
    const CellIt cell = cell_of(c.morpher, { c.tip[0] });
    std::vector<FaceSet> sets;
    EXPECT_EQ(failure_of([&] { c.morpher.GetSurfaceSeparatedFaceSets(cell, sets); }),
        "GetSurfaceSeparatedFaceSets: Single face, face set not a surface face.");
}

TEST(FaceSets, TwoFacesInASetThrow)
{
    CutCorner c;
    const CellIt cell = cell_of(c.morpher, { c.tip[0], c.tip[1] });
    std::vector<FaceSet> sets;
    EXPECT_EQ(failure_of([&] { c.morpher.GetSurfaceSeparatedFaceSets(cell, sets); }),
        "GetSurfaceSeparatedFaceSets: Should not have only two faces in face set.");
}

// No flood leaves an empty set, as each starts with a face.
TEST(FaceSets, NoFaceInASetThrows)
{
    EXPECT_EQ(failure_of([] { (void)::BasicMorpher::NeedsClosing({}); }),
        "GetSurfaceSeparatedFaceSets: Should not have zero faces in face set.");
}

TEST(FaceSets, ThreeFacesNeedClosing)
{
    CutCorner c;
    EXPECT_TRUE(::BasicMorpher::NeedsClosing(set_of(c.tip)));
    EXPECT_FALSE(::BasicMorpher::NeedsClosing({ c.Face({ c.p, c.q, c.r }) }));
}

TEST(FaceSets, ACellWithoutFacesHasNone)
{
    Morpher morpher;
    std::vector<FaceSet> sets;
    morpher.GetSurfaceSeparatedFaceSets(cell_of(morpher, {}), sets);
    EXPECT_TRUE(sets.empty());
}

// No face of a cell has an edge that its map lacks.
TEST(FaceSets, AnEdgeThatTheCellLacksThrows)
{
    CutCorner c;
    const ::BasicMorpher::EdgeUses uses(set_of(c.tip));
    EXPECT_EQ(uses.On(c.morpher.FindEdge(c.t, c.p)).size(), 2U);
    EXPECT_EQ(failure_of([&] { (void)uses.On(c.morpher.FindEdge(c.x, c.y)); }),
        "GetSurfaceSeparatedFaceSets: Encountered edge not in cell's edge to face map.");
}

// Rims

TEST(RawEdges, AreThoseOfOneFaceOnly)
{
    CutCorner c;
    EdgeSet rim { c.morpher.FindEdge(c.x, c.y) }; // what it held goes
    c.morpher.GetFaceSetRawEdges(set_of(c.tip), rim);
    const EdgeSet expected { c.morpher.FindEdge(c.p, c.q), c.morpher.FindEdge(c.q, c.r),
        c.morpher.FindEdge(c.r, c.p) };
    EXPECT_EQ(rim, expected);
    c.morpher.GetFaceSetRawEdges(set_of(c.rest), rim);
    EXPECT_EQ(rim, expected);
}

TEST(RawEdges, OneThatIsNoSurfaceEdgeThrows)
{
    CutCorner c;
    EdgeSet rim;
    EXPECT_EQ(failure_of([&] { c.morpher.GetFaceSetRawEdges({ c.tip[0] }, rim); }),
        "GetFaceSetRawEdges: Raw edge not a surface edge.");
    c.p->m_bOnSurface = 0; // one end is not enough
    EXPECT_EQ(failure_of([&] { c.morpher.GetFaceSetRawEdges(set_of(c.tip), rim); }),
        "GetFaceSetRawEdges: Raw edge not a surface edge.");
}

TEST(RawEdges, ASurfaceEdgeWithinTheSetThrows)
{
    CutCorner c;
    c.t->m_bOnSurface = 1;
    EdgeSet rim;
    EXPECT_EQ(failure_of([&] { c.morpher.GetFaceSetRawEdges(set_of(c.tip), rim); }),
        "GetFaceSetRawEdges: Non-raw edge is a surface edge.");
}

// p-t is the first edge of the set by creation: tip's faces have it twice, and this one again.
TEST(RawEdges, AnEdgeOfThreeFacesThrows)
{
    CutCorner c;
    EdgeSet rim;
    FaceSet faces = set_of(c.tip);
    EXPECT_TRUE(faces.insert(c.Face({ c.t, c.p, c.x })));
    EXPECT_EQ(failure_of([&] { c.morpher.GetFaceSetRawEdges(faces, rim); }),
        "GetFaceSetRawEdges: Unexpected connectivity (3)");
}

// Cells

TEST(SplitCell, EachSetBecomesACellWithTheCap)
{
    CutCorner c;
    const CellIt cell = c.Cell();
    Facet facet = patch(0, { 0, 0, 0 }, 1);
    cell->m_vecTriangles = { &facet };
    c.morpher.SplitCell(cell);
    ASSERT_EQ(c.morpher.m_lstCells.size(), 2U);
    const FaceIt cap = c.morpher.FindFace(std::vector<EdgeIt> {
        c.morpher.FindEdge(c.p, c.q), c.morpher.FindEdge(c.q, c.r), c.morpher.FindEdge(c.r, c.p) });
    ASSERT_NE(cap, FaceIt());
    const auto second = c.morpher.m_lstCells.begin();
    const auto first = std::next(second);
    const FaceSet tip { c.tip[0], c.tip[1], c.tip[2], cap };
    const FaceSet rest { c.rest[0], c.rest[1], c.rest[2], c.rest[3], cap };
    // In set order, and without facets.
    EXPECT_TRUE(
        std::equal(first->m_vecFaces.begin(), first->m_vecFaces.end(), rest.begin(), rest.end()));
    EXPECT_TRUE(
        std::equal(second->m_vecFaces.begin(), second->m_vecFaces.end(), tip.begin(), tip.end()));
    EXPECT_TRUE(first->m_vecTriangles.empty());
    EXPECT_TRUE(second->m_vecTriangles.empty());
    EXPECT_EQ(cap->m_vecCells.size(), 2U);
    EXPECT_EQ(c.tip[0]->m_vecCells.size(), 1U);
    EXPECT_EQ(c.morpher.m_counters.m_splitCells, 1U);
    EXPECT_EQ(c.morpher.m_lstFaces.size(), 8U);
}

TEST(SplitCell, ACellOfOneSetStays)
{
    CutCorner c;
    c.q->m_bOnSurface = 0;
    const CellIt cell = c.Cell();
    c.morpher.SplitCell(cell);
    EXPECT_EQ(c.morpher.m_lstCells.begin(), cell);
    EXPECT_EQ(c.morpher.m_lstCells.size(), 1U);
    EXPECT_EQ(c.morpher.m_lstFaces.size(), 7U);
    EXPECT_EQ(c.morpher.m_counters.m_splitCells, 0U);
}

TEST(SplitCell, AFaceOnTheSurfaceAlreadyIsNoSecondSet)
{
    CutCorner c;
    const FaceIt cap = c.Face({ c.p, c.q, c.r });
    const CellIt cell = cell_of(c.morpher, { cap, c.rest[0], c.rest[1], c.rest[2], c.rest[3] });
    c.morpher.SplitCell(cell);
    EXPECT_EQ(c.morpher.m_lstCells.begin(), cell);
}

// A face on the three edges of the rim and on one more is found as the cap. That one more, x-t, is
// then used once.
TEST(SplitCell, ACapWithAFurtherEdgeThrows)
{
    CutCorner c;
    const std::vector<EdgeIt> edges { c.morpher.FindEdge(c.p, c.q), c.morpher.FindEdge(c.q, c.r),
        c.morpher.FindEdge(c.r, c.p), edge_between(c.morpher, c.x, c.t) };
    c.morpher.AddFace(::BasicMorpher::Face(edges));
    const CellIt cell = c.Cell();
    EXPECT_EQ(failure_of([&] { c.morpher.SplitCell(cell); }),
        "SplitCell: Split cell not correctly connected (1).");
    EXPECT_EQ(c.morpher.m_lstCells.size(), 1U);
}

// Without its base the lower part has a second rim, away from the surface.
TEST(SplitCell, AnOpenCellThrows)
{
    CutCorner c;
    const CellIt cell
        = cell_of(c.morpher, { c.tip[0], c.tip[1], c.tip[2], c.rest[0], c.rest[1], c.rest[2] });
    EXPECT_EQ(failure_of([&] { c.morpher.SplitCell(cell); }),
        "GetFaceSetRawEdges: Raw edge not a surface edge.");
}

// A tip of five sides has a rim of five edges.
TEST(SplitCell, ARimThatNoCapCanCloseThrows)
{
    Morpher morpher;
    const VertIt top = add_vert(morpher, { 0, 0, 9 });
    const VertIt bottom = add_vert(morpher, { 0, 0, -9 });
    std::vector<VertIt> rim;
    for (const Position& position : { Position { 4, 0, 0 }, Position { 1, 4, 0 },
             Position { -3, 2, 0 }, Position { -3, -2, 0 }, Position { 1, -4, 0 } })
        rim.push_back(add_vert(morpher, position, kOnSurface));
    std::vector<FaceIt> faces;
    for (std::size_t i = 0; i < rim.size(); ++i) {
        faces.push_back(polygon(morpher, { top, rim[i], rim[(i + 1) % rim.size()] }));
        faces.push_back(polygon(morpher, { bottom, rim[i], rim[(i + 1) % rim.size()] }));
    }
    const CellIt cell = cell_of(morpher, faces);
    EXPECT_EQ(failure_of([&] { morpher.SplitCell(cell); }),
        "GenerateRawEdgeFaces: Number of raw edges not three or four.");
}

// Parts, by bits

TEST(CellParts, AreTheSetsAndTheirRims)
{
    CutCorner c;
    const CellIt cell = c.Cell();
    const CellParts parts(*cell);
    ASSERT_TRUE(parts.AreRegular());
    ASSERT_EQ(parts.Parts().size(), 2U);
    EXPECT_EQ(parts.FacesOf(parts.Parts()[0]), set_of(c.rest));
    EXPECT_EQ(parts.FacesOf(parts.Parts()[1]), set_of(c.tip));
    const EdgeSet rim { c.morpher.FindEdge(c.p, c.q), c.morpher.FindEdge(c.q, c.r),
        c.morpher.FindEdge(c.r, c.p) };
    EXPECT_EQ(parts.Parts()[0].m_rim, rim);
    EXPECT_EQ(parts.Parts()[1].m_rim, rim);
}

TEST(CellParts, ASurfaceEdgeThatDividesNothingIsNoFault)
{
    CutCorner c;
    c.r->m_bOnSurface = 0;
    const CellParts parts(*c.Cell());
    EXPECT_TRUE(parts.AreRegular());
    EXPECT_EQ(parts.Parts().size(), 1U);
}

TEST(CellParts, OfAnOpenCellAreNotRegular)
{
    CutCorner c;
    const CellIt cell
        = cell_of(c.morpher, { c.tip[0], c.tip[1], c.tip[2], c.rest[0], c.rest[1], c.rest[2] });
    EXPECT_FALSE(CellParts(*cell).AreRegular());
}

TEST(CellParts, OfMoreFacesThanBitsAreNotRegular)
{
    CutCorner c;
    const CellIt cell = cell_of(c.morpher, std::vector<FaceIt>(33, c.tip[0]));
    EXPECT_FALSE(CellParts(*cell).AreRegular());
}

TEST(CellParts, OnlyATriangleOnTheRimIsItsCap)
{
    CutCorner c;
    const CellParts parts(*c.Cell());
    const FaceIt cap = c.Face({ c.p, c.q, c.r });
    EXPECT_TRUE(parts.AreCaps(parts.Parts()[1], std::vector<FaceIt> { cap }));
    EXPECT_FALSE(parts.AreCaps(parts.Parts()[1], std::vector<FaceIt> { c.rest[0] }));
    EXPECT_FALSE(parts.AreCaps(parts.Parts()[1], std::vector<FaceIt> { cap, cap }));
}

// All that a second cell needs is there: its parts, their rims and caps are held in place.
TEST(SplitCell, TakesNoMemoryForEachCell)
{
    CutCorner c;
    const CellIt first = c.Cell();
    const CellIt second = c.Cell();
    c.morpher.SplitCell(first);
    const auto part = c.morpher.m_lstCells.begin();
    c.morpher.RemoveCell(std::next(part));
    c.morpher.RemoveCell(part); // the cap goes with it
    ASSERT_EQ(c.morpher.m_lstCells.size(), 1U);
    const std::size_t before = allocations();
    c.morpher.SplitCell(second);
    EXPECT_EQ(allocations() - before, 0U);
    EXPECT_EQ(c.morpher.m_lstCells.size(), 2U);
}

/// Cuts a corner off one tetrahedron, beside a cell whose faces were all made before.
std::size_t cells_after_cut_beside(bool tipIsNew)
{
    CutCorner c;
    c.Cell();
    c.tip[0]->m_bNew = tipIsNew;
    const Position far { 100, 0, 0 };
    const Position x { 116, 0, 0 };
    c.morpher.AddTetrahedralCell(far, x, { 100, 16, 0 }, { 100, 0, 16 }, {});
    edge_at(c.morpher, far, x)->m_vIntersection = { 108, 0, 0 };
    c.morpher.MorphGrid();
    EXPECT_EQ(c.morpher.m_counters.m_splitFaces, 2U);
    return c.morpher.m_lstCells.size();
}

// One split side divides two faces of the tetrahedron, but not the tetrahedron.
TEST(SplitCell, ACellWithAFaceThatWasNewBeforeIsDividedToo)
{
    EXPECT_EQ(cells_after_cut_beside(true), 3U);
    EXPECT_EQ(cells_after_cut_beside(false), 2U);
}

} // namespace
