// SPDX-License-Identifier: Apache-2.0
#include "tests/geometry/basicmorpher/CuttingSamples.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <list>

namespace {

using namespace Testing;
using Texts = std::vector<std::string>;

/// Puts a crossing on the middle of the edge between these.
void cross_middle(const Morpher& morpher, const Position& p, const Position& q)
{
    edge_at(morpher, p, q)->m_vIntersection
        = { (p[0] + q[0]) / 2, (p[1] + q[1]) / 2, (p[2] + q[2]) / 2 };
}

/// The triangles of the surface in order of their texts, each with its corners in such order.
Texts surface_of(const Morpher& morpher)
{
    std::list<Facet> surface;
    morpher.ExtractSurfaceTris(surface);
    Texts all;
    for (const Facet& facet : surface) {
        Texts corners { text(facet[0]), text(facet[1]), text(facet[2]) };
        std::sort(corners.begin(), corners.end());
        all.push_back(corners[0] + " " + corners[1] + " " + corners[2]);
    }
    std::sort(all.begin(), all.end());
    return all;
}

std::vector<std::size_t> faces_per_cell(const Morpher& morpher)
{
    std::vector<std::size_t> counts;
    for (const ::BasicMorpher::Cell& cell : morpher.m_lstCells)
        counts.push_back(cell.m_vecFaces.size());
    std::sort(counts.begin(), counts.end());
    return counts;
}

void cross_all_but_oz(const Morpher& morpher)
{
    cross_middle(morpher, kO, kX);
    cross_middle(morpher, kO, kY);
    cross_middle(morpher, kX, kY);
    cross_middle(morpher, kY, kZ);
    cross_middle(morpher, kZ, kX);
}

constexpr const char* kCapOfO = "(0, 0, 8) (0, 8, 0) (8, 0, 0)";
constexpr const char* kCapOfX = "(8, 0, 0) (8, 0, 8) (8, 8, 0)";
constexpr const char* kCapOfY = "(0, 8, 0) (0, 8, 8) (8, 8, 0)";
constexpr const char* kCapOfZ = "(0, 0, 8) (0, 8, 8) (8, 0, 8)";
constexpr const char* kMiddleOfXYZ = "(0, 8, 8) (8, 0, 8) (8, 8, 0)";

// Each face falls into three corners and a middle. The corners make four sets of three, each closed
// by a cap. The middles are sets of one: they are part of no cell, and go. So there is nothing in
// the octahedron between the caps.
TEST(SplitTetrahedron, AllSixSidesSplitLeaveTheFourCorners)
{
    Morpher morpher;
    add_corner_tetrahedron(morpher, {});
    cross_all_but_oz(morpher);
    cross_middle(morpher, kO, kZ);
    morpher.MorphGrid();
    EXPECT_EQ(surface_of(morpher), (Texts { kCapOfO, kCapOfZ, kCapOfY, kCapOfX }));
    EXPECT_EQ(faces_per_cell(morpher), (std::vector<std::size_t> { 4, 4, 4, 4 }));
    EXPECT_EQ(morpher.m_lstVerts.size(), 10U);
    EXPECT_EQ(morpher.m_lstEdges.size(), 24U); // 12 halves, 3 cuts in each face
    EXPECT_EQ(morpher.m_lstFaces.size(), 16U); // 3 corners of each face, and the caps
    EXPECT_EQ(morpher.m_counters.m_splitFaces, 4U);
    EXPECT_EQ(morpher.m_counters.m_splitCells, 1U);
}

// The neighbour has split sides on one face only: its faces are still one set but for the middle,
// so it stays as it is, with four parts of the common face and two of each other one.
TEST(SplitTetrahedron, AMiddleFaceStaysForANeighbour)
{
    Morpher morpher;
    const CellIt neighbour = morpher.AddTetrahedralCell(kX, kY, kZ, { 16, 16, 16 }, {});
    add_corner_tetrahedron(morpher, {});
    cross_all_but_oz(morpher);
    cross_middle(morpher, kO, kZ);
    morpher.MorphGrid();
    EXPECT_EQ(surface_of(morpher), (Texts { kCapOfO, kCapOfZ, kCapOfY, kMiddleOfXYZ, kCapOfX }));
    EXPECT_EQ(faces_per_cell(morpher), (std::vector<std::size_t> { 4, 4, 4, 4, 10 }));
    const Position xy { 8, 8, 0 };
    const Position yz { 0, 8, 8 };
    const Position zx { 8, 0, 8 };
    const FaceIt middle = morpher.FindFace(std::vector<EdgeIt> {
        edge_at(morpher, xy, yz), edge_at(morpher, yz, zx), edge_at(morpher, zx, xy) });
    ASSERT_NE(middle, FaceIt());
    ASSERT_EQ(middle->m_vecCells.size(), 1U);
    EXPECT_EQ(middle->m_vecCells[0], neighbour);
    EXPECT_TRUE(neighbour->m_vecFaces.contains(middle));
}

// X and Y are cut off by three sides each; O and Z stay together. Their part is closed by the rim
// of four middles around, from the least of them, (0,8,0), to (8,0,8). The middles of OXY and XYZ
// go.
TEST(SplitTetrahedron, FiveSidesSplitLeaveThreeParts)
{
    Morpher morpher;
    add_corner_tetrahedron(morpher, {});
    cross_all_but_oz(morpher);
    morpher.MorphGrid();
    EXPECT_EQ(surface_of(morpher),
        (Texts {
            "(0, 8, 0) (0, 8, 8) (8, 0, 8)", kCapOfY, "(0, 8, 0) (8, 0, 0) (8, 0, 8)", kCapOfX }));
    EXPECT_EQ(faces_per_cell(morpher), (std::vector<std::size_t> { 4, 4, 6 }));
    EXPECT_EQ(morpher.m_counters.m_splitCells, 1U);
}

} // namespace
