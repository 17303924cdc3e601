// SPDX-License-Identifier: Apache-2.0
#include "tests/geometry/Allocations.h"
#include "tests/geometry/basicmorpher/CuttingSamples.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <cstring>
#include <deque>
#include <list>
#include <map>
#include <memory>

namespace {

using namespace Testing;

using Surface = std::list<Facet>;

std::vector<std::string> texts(const Surface& surface)
{
    std::vector<std::string> result;
    for (const Facet& facet : surface)
        result.push_back(text(facet));
    return result;
}

std::vector<std::size_t> faces_per_cell(const Morpher& morpher)
{
    std::vector<std::size_t> counts;
    for (const ::BasicMorpher::Cell& cell : morpher.m_lstCells)
        counts.push_back(cell.m_vecFaces.size());
    return counts;
}

// Extraction

TEST(ExtractSurfaceTris, TakesTrianglesWithAllCornersOnTheSurfaceOldestFirst)
{
    Morpher morpher;
    const VertIt a = add_vert(morpher, { 0, 0, 0 }, kOnSurface);
    const VertIt b = add_vert(morpher, { 1, 0, 0 }, kOnSurface);
    const VertIt c = add_vert(morpher, { 1, 1, 0 }, kOnSurface);
    const VertIt d = add_vert(morpher, { 0, 1, 0 }, kOnSurface);
    const VertIt off = add_vert(morpher, { 5, 5, 5 });
    polygon(morpher, { c, d, a });
    polygon(morpher, { a, b, off });
    polygon(morpher, { off, a, c });
    polygon(morpher, { b, off, c });
    polygon(morpher, { a, b, c, d });
    polygon(morpher, { a, b, c });
    // The list is walked from the youngest face on, and each is put in front.
    Surface surface { patch(0, { 9, 9, 9 }, 1) };
    morpher.ExtractSurfaceTris(surface);
    EXPECT_EQ(texts(surface),
        (std::vector<std::string> { "(1, 1, 0) (0, 1, 0) (0, 0, 0)",
            "(0, 0, 0) (1, 0, 0) (1, 1, 0)", "(9, 8, 8) (9, 11, 8) (9, 8, 11)" }));
}

TEST(ExtractSurfaceTris, OfNothingIsNothing)
{
    std::deque<Facet> surface;
    Morpher().ExtractSurfaceTris(surface);
    EXPECT_TRUE(surface.empty());
}

// Whole cuts

// The wall x = 8 cuts X off. Edges are split from the youngest on: ZX at m1 = (8,0,8), XY at m2 =
// (8,8,0), OX at m3 = (8,0,0). Of the faces OXY is then the youngest and gets the cut m3-m2, OZX
// gets m3-m1, and XYZ gets m2-m1. The rim is these three in this order; its corners are the end of
// the first that is not on the second, m2, then m3, then m1.
TEST(SurfaceCut, ACornerCutOffIsOneCapOfThreeSides)
{
    Morpher morpher;
    Facet facet = patch(0, { 8, 0, 0 }, 24);
    add_corner_tetrahedron(morpher, { &facet });
    Surface surface;
    morpher.GenerateApproximateSurface(surface);
    EXPECT_EQ(texts(surface), std::vector<std::string> { "(8, 8, 0) (8, 0, 0) (8, 0, 8)" });
    // The older cell holds the untouched face OYZ, three quadrangles and the cap.
    EXPECT_EQ(faces_per_cell(morpher), (std::vector<std::size_t> { 4, 5 }));
    EXPECT_EQ(morpher.m_lstVerts.size(), 7U);
    EXPECT_EQ(morpher.m_lstEdges.size(), 12U); // 3 whole, 6 halves, 3 cuts
    EXPECT_EQ(morpher.m_lstFaces.size(), 8U); // 1 whole, 6 pieces, the cap
    EXPECT_EQ(morpher.m_counters.m_edgeTests, 6U);
    EXPECT_EQ(morpher.m_counters.m_snappedVerts, 0U);
    EXPECT_EQ(morpher.m_counters.m_splitEdges, 3U);
    EXPECT_EQ(morpher.m_counters.m_splitFaces, 3U);
    EXPECT_EQ(morpher.m_counters.m_splitCells, 1U);
}

// The wall x = 8 parts a, b from c, d: the cap is the square (8, 0..8, 0..8), cut from its least
// corner (8,0,0) to the opposite one.
TEST(SurfaceCut, TwoCornersCutFromTwoAreACapOfFourSides)
{
    Morpher morpher;
    Facet facet = patch(0, { 8, 0, 0 }, 24);
    morpher.AddTetrahedralCell({ 0, 0, 0 }, { 0, 16, 0 }, { 16, 0, 0 }, { 16, 0, 16 }, { &facet });
    Surface surface;
    morpher.GenerateApproximateSurface(surface);
    ASSERT_EQ(surface.size(), 2U);
    std::vector<std::vector<std::string>> corners;
    for (const Facet& cap : surface) {
        corners.push_back({ text(cap[0]), text(cap[1]), text(cap[2]) });
        std::sort(corners.back().begin(), corners.back().end());
    }
    std::sort(corners.begin(), corners.end());
    EXPECT_EQ(corners[0], (std::vector<std::string> { "(8, 0, 0)", "(8, 0, 8)", "(8, 8, 8)" }));
    EXPECT_EQ(corners[1], (std::vector<std::string> { "(8, 0, 0)", "(8, 8, 0)", "(8, 8, 8)" }));
    // Each part: two triangles or quadrangles of each cut face, in all four, and two caps.
    EXPECT_EQ(faces_per_cell(morpher), (std::vector<std::size_t> { 6, 6 }));
    EXPECT_EQ(morpher.m_counters.m_splitEdges, 4U);
    EXPECT_EQ(morpher.m_counters.m_splitFaces, 4U);
}

// O snaps to (2,0,0); XY and ZX are split. The cap joins O and both split vertices, and it shows
// where O is in the end.
TEST(SurfaceCut, ASnappedCornerIsPartOfTheCapAtItsNewPlace)
{
    Morpher morpher;
    add_corner_tetrahedron(morpher, {});
    edge_at(morpher, kO, kX)->m_vIntersection = { 2, 0, 0 };
    edge_at(morpher, kX, kY)->m_vIntersection = { 8, 8, 0 };
    edge_at(morpher, kZ, kX)->m_vIntersection = { 8, 0, 8 };
    morpher.MorphGrid();
    Surface surface;
    morpher.ExtractSurfaceTris(surface);
    ASSERT_EQ(surface.size(), 1U);
    std::vector<std::string> corners { text(surface.front()[0]), text(surface.front()[1]),
        text(surface.front()[2]) };
    std::sort(corners.begin(), corners.end());
    EXPECT_EQ(corners, (std::vector<std::string> { "(2, 0, 0)", "(8, 0, 8)", "(8, 8, 0)" }));
    EXPECT_EQ(morpher.m_counters.m_splitCells, 1U);
}

// Two boxes of side 16 beside each other on x, and the wall x = 8 through the first. Its tetrahedra
// are cut from the youngest to the oldest, and each leaves the middles of the edges that it parts
// from each other. A cap of four sides is cut from its least corner.
TEST(SurfaceCut, AWallThroughTheFirstOfTwoBoxes)
{
    Morpher morpher;
    Facet facet = patch(0, { 8, 8, 8 }, 64);
    for (const double x : { 0.0, 16.0 }) {
        morpher.AddCell({ x, 0, 0 }, { x + 16, 0, 0 }, { x + 16, 16, 0 }, { x, 16, 0 },
            { x, 0, 16 }, { x + 16, 0, 16 }, { x + 16, 16, 16 }, { x, 16, 16 }, { &facet });
    }
    Surface surface;
    morpher.GenerateApproximateSurface(surface);
    EXPECT_EQ(texts(surface),
        (std::vector<std::string> {
            "(8, 8, 16) (8, 8, 8) (8, 16, 16)", // from O, (0,0,16), (0,16,16) to (16,16,16)
            "(8, 16, 8) (8, 8, 8) (8, 16, 16)", // from O, (0,16,0), (0,16,16) to (16,16,16)
            "(8, 8, 0) (8, 16, 0) (8, 16, 8)", // from O, (0,16,0) to (16,16,0), (16,16,16)
            "(8, 8, 0) (8, 16, 8) (8, 8, 8)",
            "(8, 0, 0) (8, 8, 8) (8, 8, 0)", // from O to (16,0,0), (16,16,0), (16,16,16)
            "(8, 8, 8) (8, 0, 8) (8, 0, 0)", // from O to (16,0,0), (16,0,16), (16,16,16)
            "(8, 0, 8) (8, 8, 8) (8, 8, 16)", // from O, (0,0,16) to (16,0,16), (16,16,16)
            "(8, 0, 8) (8, 8, 16) (8, 0, 16)",
        }));
}

// The patches at 6 and 10 are met by OX alone, whose ends are both outside.
TEST(SurfaceCut, AnEdgeCrossedTwiceFromOutsideGetsOneVertInTheMiddle)
{
    Morpher morpher;
    Facet six = patch(0, { 6, 0, 0 }, 3);
    Facet ten = patch(0, { 10, 0, 0 }, 2);
    add_corner_tetrahedron(morpher, { &six, &ten });
    Surface surface;
    morpher.GenerateApproximateSurface(surface);
    EXPECT_TRUE(surface.empty()); // one point makes no surface
    EXPECT_EQ(morpher.m_lstVerts.size(), 5U);
    EXPECT_EQ(text(morpher.m_lstVerts.begin()->m_vPosition), "(8, 0, 0)");
    EXPECT_EQ(morpher.m_counters.m_splitEdges, 1U);
}

// X, Y and Z are inside, behind patches on OX, OY and OZ; another patch crosses XY.
TEST(SurfaceCut, AnEdgeInsideABodyIsNotSplit)
{
    Morpher morpher;
    Facet x = patch(0, { 8, 0, 0 }, 3);
    Facet y = patch(1, { 0, 8, 0 }, 3);
    Facet z = patch(2, { 0, 0, 8 }, 3);
    Facet inner = patch(0, { 8, 8, 0 }, 3);
    add_corner_tetrahedron(morpher, { &x, &y, &z, &inner });
    Surface surface;
    morpher.GenerateApproximateSurface(surface);
    EXPECT_NE(edge_at(morpher, kX, kY), EdgeIt());
    EXPECT_EQ(morpher.m_counters.m_splitEdges, 3U);
    ASSERT_EQ(surface.size(), 1U); // the cap that cuts O off
}

// O was marked as on the surface before: then OX, which ends there, may not be split.
TEST(SurfaceCut, AFailurePassesOutThroughTheWhole)
{
    Morpher morpher;
    Facet facet = patch(0, { 8, 0, 0 }, 24);
    add_corner_tetrahedron(morpher, { &facet });
    morpher.FindVert(kO)->m_bOnSurface = 1;
    Surface surface;
    EXPECT_EQ(failure_of([&] { morpher.GenerateApproximateSurface(surface); }),
        "CaracterizeSplitFace: Incorrect caracterization (2)!");
    EXPECT_TRUE(surface.empty());
}

// A whole face snaps: it is the surface, and nothing is cut.
TEST(SurfaceCut, AFaceOfSnappedCornersIsTheSurface)
{
    Morpher morpher;
    Facet facet = patch(0, { 2, 0, 0 }, 24);
    add_corner_tetrahedron(morpher, { &facet });
    Surface surface;
    morpher.GenerateApproximateSurface(surface);
    // OX from O and ZX from Z are met at 2 + 1 / 64 of 16 + 1 / 32, 129 of 1026; XY from X at 897
    // of 1026. Products with 16 are exact, and so are their differences to 16 here. The face is O,
    // Y, Z.
    const Facet expected { Position { 0x1.017f405fd017fp+1, 0, 0 },
        Position { 0x1.017f405fd0180p+1, 0x1.bfa02fe80bfa0p+3, 0 },
        Position { 0x1.017f405fd017fp+1, 0, 0x1.bfa02fe80bfa0p+3 } };
    ASSERT_EQ(surface.size(), 1U);
    EXPECT_EQ(std::memcmp(&surface.front(), &expected, sizeof(Facet)), 0) << text(surface.front());
    EXPECT_EQ(morpher.m_counters.m_snappedVerts, 3U);
    EXPECT_EQ(morpher.m_counters.m_splitEdges, 0U);
    EXPECT_EQ(morpher.m_lstCells.size(), 1U);
}

TEST(SurfaceCut, AnEmptyComplexHasNoSurface)
{
    Morpher morpher;
    Surface surface;
    morpher.GenerateApproximateSurface(surface);
    EXPECT_TRUE(surface.empty());
    morpher.AddHexahedralCell(
        kO, kX, { 16, 16, 0 }, kY, kZ, { 16, 0, 16 }, { 16, 16, 16 }, { 0, 16, 16 });
    morpher.GenerateApproximateSurface(surface);
    EXPECT_TRUE(surface.empty());
    EXPECT_EQ(morpher.m_lstCells.size(), 1U);
}

// Closed surfaces

/// Cubes of 8 on a side from -32 to 32, each with all the facets.
void add_grid(Morpher& morpher, const FacetArray& facets)
{
    for (int code = 0; code < 8 * 8 * 8; ++code) {
        const Position a { code % 8 * 8.0 - 32, code / 8 % 8 * 8.0 - 32, code / 64 * 8.0 - 32 };
        const Position b { a[0] + 8, a[1] + 8, a[2] + 8 };
        morpher.AddCell(a, { b[0], a[1], a[2] }, { b[0], b[1], a[2] }, { a[0], b[1], a[2] },
            { a[0], a[1], b[2] }, { b[0], a[1], b[2] }, b, { a[0], b[1], b[2] }, facets);
    }
}

/// The eight sides of an octahedron with its corners on the axes.
std::vector<Facet> octahedron(const Position& centre, double radius)
{
    std::vector<Facet> sides;
    for (unsigned int octant = 0; octant < 8; ++octant) {
        Facet side { { centre, centre, centre } };
        for (std::size_t axis = 0; axis < 3; ++axis)
            side[axis][axis] += (octant >> axis & 1U) != 0 ? radius : -radius;
        sides.push_back(side);
    }
    return sides;
}

std::map<std::pair<std::string, std::string>, int> edge_counts(const Surface& surface)
{
    std::map<std::pair<std::string, std::string>, int> counts;
    for (const Facet& facet : surface) {
        for (std::size_t i = 0; i < 3; ++i) {
            std::pair<std::string, std::string> ends { text(facet[i]), text(facet[(i + 1) % 3]) };
            if (ends.second < ends.first)
                std::swap(ends.first, ends.second);
            ++counts[ends];
        }
    }
    return counts;
}

double area(const Facet& facet)
{
    std::array<double, 3> u {};
    std::array<double, 3> v {};
    for (std::size_t i = 0; i < 3; ++i) {
        u[i] = facet[1][i] - facet[0][i];
        v[i] = facet[2][i] - facet[0][i];
    }
    const double x = u[1] * v[2] - u[2] * v[1];
    const double y = u[2] * v[0] - u[0] * v[2];
    const double z = u[0] * v[1] - u[1] * v[0];
    return std::sqrt(x * x + y * y + z * z) / 2;
}

struct OctahedronCut {
    OctahedronCut(const Position& centre, double radius)
        : facets(octahedron(centre, radius))
    {
        FacetArray pointers;
        for (Facet& facet : facets)
            pointers.push_back(&facet);
        add_grid(morpher, pointers);
        morpher.GenerateApproximateSurface(surface);
    }

    std::vector<Facet> facets;
    Morpher morpher;
    Surface surface;
};

// Each of the eight sides has the area sqrt(3) / 2 x radius squared.
TEST(SurfaceCut, AClosedBodyBecomesAClosedSurface)
{
    const OctahedronCut cut({ 0.75, -1.25, 2.5 }, 20.3);
    EXPECT_GT(cut.morpher.m_counters.m_snappedVerts, 10U);
    EXPECT_GT(cut.morpher.m_counters.m_splitEdges, 20U);
    EXPECT_GT(cut.morpher.m_counters.m_splitCells, 50U);
    for (const auto& [ends, count] : edge_counts(cut.surface))
        EXPECT_EQ(count % 2, 0) << ends.first << " " << ends.second;
    double sum = 0;
    for (const Facet& facet : cut.surface)
        sum += area(facet);
    // Corners and ridges are rounded off by up to a cell.
    const double exact = 8 * std::sqrt(3.0) / 2 * 20.3 * 20.3;
    EXPECT_GT(sum, 0.85 * exact);
    EXPECT_LT(sum, 1.02 * exact);
    for (const Facet& facet : cut.surface) {
        for (std::size_t i = 0; i < 3; ++i) {
            const double norm = std::abs(facet[i][0] - 0.75) + std::abs(facet[i][1] + 1.25)
                + std::abs(facet[i][2] - 2.5);
            EXPECT_LT(norm, 20.3 + 0.1);
            EXPECT_GT(norm, 20.3 - 8 * std::sqrt(3.0));
        }
    }
}

// Every side passes through lattice points and along grid planes: all decided by perturbation.
TEST(SurfaceCut, ABodyOnTheLatticeBecomesAClosedSurface)
{
    const OctahedronCut cut({ 0, 0, 0 }, 16);
    ASSERT_FALSE(cut.surface.empty());
    for (const auto& [ends, count] : edge_counts(cut.surface))
        EXPECT_EQ(count % 2, 0) << ends.first << " " << ends.second;
}

TEST(SurfaceCut, OneInputHasOneSurface)
{
    const OctahedronCut one({ 0.75, -1.25, 2.5 }, 20.3);
    const OctahedronCut other({ 0.75, -1.25, 2.5 }, 20.3);
    EXPECT_EQ(texts(one.surface), texts(other.surface));
}

/// Layer k of the 13 layers of boxes of a finer grid.
void add_layer(Morpher& morpher, const FacetArray& facets, int k)
{
    const auto at = [](int i) { return i * 5.0 - 32.5; };
    for (int j = 0; j < 13; ++j) {
        for (int i = 0; i < 13; ++i) {
            const Position a { at(i), at(j), at(k) };
            const Position b { at(i + 1), at(j + 1), at(k + 1) };
            morpher.AddCell(a, { b[0], a[1], a[2] }, { b[0], b[1], a[2] }, { a[0], b[1], a[2] },
                { a[0], a[1], b[2] }, { b[0], a[1], b[2] }, b, { a[0], b[1], b[2] }, facets);
        }
    }
}

// More elements than fit into one chunk, so that chunks of complexes that are built by turns lie
// between each other, some where another complex had its own before.
TEST(SurfaceCut, OtherComplexesBesideItChangeNoByte)
{
    std::vector<Facet> facets = octahedron({ 0.75, -1.25, 2.5 }, 20.3);
    FacetArray pointers;
    for (Facet& facet : facets)
        pointers.push_back(&facet);
    auto freed = std::make_unique<Morpher>();
    Morpher alone;
    for (int k = 0; k < 13; ++k)
        add_layer(alone, pointers, k);
    Morpher one;
    Morpher other;
    for (int k = 0; k < 13; ++k) {
        if (k < 7)
            add_layer(*freed, pointers, k);
        else
            freed.reset();
        add_layer(one, pointers, k);
        add_layer(other, pointers, k);
    }
    ASSERT_GT(alone.m_lstCells.size(), 8192U);
    std::vector<std::vector<Facet>> surfaces;
    for (Morpher* morpher : { &alone, &one, &other }) {
        Surface surface;
        morpher->GenerateApproximateSurface(surface);
        surfaces.emplace_back(surface.begin(), surface.end());
    }
    ASSERT_GT(surfaces[0].size(), 250U);
    for (const std::vector<Facet>& surface : surfaces) {
        ASSERT_EQ(surface.size(), surfaces[0].size());
        EXPECT_EQ(
            std::memcmp(surface.data(), surfaces[0].data(), surface.size() * sizeof(Facet)), 0);
    }
}

// 8^3 boxes have 9^3 corners and 3 x 8 x 9 x 9 + 3 x 8 x 8 x 9 + 8^3 edges with the diagonals of
// sides and boxes; all six tetrahedra of each box have 8 facets.
TEST(SurfaceCut, TheSearchForCrossingsTakesNoMemoryForEachEdge)
{
    std::vector<Facet> facets = octahedron({ 0.75, -1.25, 2.5 }, 20.3);
    FacetArray pointers;
    for (Facet& facet : facets)
        pointers.push_back(&facet);
    Morpher morpher;
    add_grid(morpher, pointers);
    ASSERT_EQ(morpher.m_lstEdges.size(), 4184U);
    const std::size_t before = allocations();
    morpher.IntersectEdges();
    EXPECT_LT(allocations() - before, 40U);
    EXPECT_EQ(morpher.m_counters.m_edgeTests, 4184U * 8U);
}

// A cell is closed when each edge of its faces is on two of them, and a face is on two cells or on
// the outside of the grid.
TEST(SurfaceCut, AllCellsAreClosedAfterwards)
{
    const OctahedronCut cut({ 0.75, -1.25, 2.5 }, 20.3);
    for (const ::BasicMorpher::Cell& cell : cut.morpher.m_lstCells) {
        std::map<EdgeIt, int> uses;
        for (const FaceIt face : cell.m_vecFaces) {
            for (const EdgeIt edge : face->m_vecEdges)
                ++uses[edge];
        }
        for (const auto& [edge, count] : uses)
            ASSERT_EQ(count, 2);
    }
    for (const ::BasicMorpher::Face& face : cut.morpher.m_lstFaces) {
        ASSERT_GE(face.m_vecCells.size(), 1U);
        ASSERT_LE(face.m_vecCells.size(), 2U);
    }
}

} // namespace
