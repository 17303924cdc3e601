// SPDX-License-Identifier: Apache-2.0
#include "geometry/TriangleCloud.h"

#include "geometry/SurfaceStages.h"
#include "geometry/VectorMath.h"
#include "tests/geometry/support/MarkedMesh.h"
#include "tests/support/Isolated.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

namespace {

using Tavro::MeshVertex;
using Tavro::SideState;
using Tavro::TriangleCloud;
using Tavro::WindDirection;
using Testing::cube;
using Testing::Facets;
using Testing::MarkedMesh;
using Testing::Point;

void expect_point(const Point& point, const Point& expected)
{
    for (std::size_t axis = 0; axis < 3; ++axis)
        EXPECT_EQ(point[axis], expected[axis]) << axis;
}

TEST(TriangleCloud, IsEmptyAtFirst)
{
    const TriangleCloud cloud;
    EXPECT_TRUE(cloud.m_vecFacets.empty());
    expect_point(cloud.m_Box.m_vMin, { 0, 0, 0 });
    expect_point(cloud.m_Box.m_vMax, { 0, 0, 0 });
}

TEST(TriangleCloud, FacetsAreNumberedAndWidenTheBox)
{
    TriangleCloud cloud;
    EXPECT_EQ(cloud.AddTriangle({ 5, 6, 7 }, { 6, 6, 7 }, { 5, 8, 7 }), 0);
    // The box does not reach to the origin, where it was before.
    expect_point(cloud.m_Box.m_vMin, { 5, 6, 7 });
    expect_point(cloud.m_Box.m_vMax, { 6, 8, 7 });
    EXPECT_EQ(cloud.AddTriangle({ 5, 6, 7 }, { -1, 6, 9 }, { 5, 8, 7 }), 1);
    expect_point(cloud.m_Box.m_vMin, { -1, 6, 7 });
    expect_point(cloud.m_Box.m_vMax, { 6, 8, 9 });
    ASSERT_EQ(cloud.m_vecFacets.size(), 2U);
    expect_point((*cloud.m_vecFacets[1])[1], { -1, 6, 9 });
}

TEST(TriangleCloud, AFacetWithTwoEqualPointsIsNotStored)
{
    TriangleCloud cloud;
    const Point a { 1, 2, 3 };
    const Point b { 4, 5, 6 };
    EXPECT_EQ(cloud.AddTriangle(a, a, b), -1);
    EXPECT_EQ(cloud.AddTriangle(a, b, b), -1);
    EXPECT_EQ(cloud.AddTriangle(a, b, a), -1);
    EXPECT_TRUE(cloud.m_vecFacets.empty());
    expect_point(cloud.m_Box.m_vMax, { 0, 0, 0 });
    // One that is degenerate by its angles alone is stored.
    EXPECT_EQ(cloud.AddTriangle(a, b, { 7, 8, 9 }), 0);
}

TEST(RootCube, IsATenthLongerThanTheLongestSideAroundTheCentre)
{
    // d = 4 along y, h = 4 x 1.1 x 0.5 = 2.2, centre (2, 2, 0.5).
    const auto root = Tavro::RootCube({ { 1, 0, 0 }, { 3, 4, 1 } });
    const double h = 4 * 1.1 * 0.5;
    expect_point(root.m_vMin, { 2 - h, 2 - h, 0.5 - h });
    expect_point(root.m_vMax, { 2 + h, 2 + h, 0.5 + h });
}

TEST(RootCube, HasItsCentreAtHalfTheSum)
{
    // (-3 + 1.4) x 0.5 is -0.8, h = 4.4 x 1.1 x 0.5 = 2.42; from -3 + 4.4 x 0.5 both ends would
    // come out one bit higher.
    const auto root = Tavro::RootCube({ { -3, 0, 0 }, { 1.4, 1, 1 } });
    EXPECT_EQ(root.m_vMin[0], -3.2200000000000006);
    EXPECT_EQ(root.m_vMax[0], 1.6200000000000003);
}

TEST(LeafCells, AreSixTetrahedraWithFacetsAndOneHexahedronWithout)
{
    // In the child of low x, y and z alone.
    Tavro::Facet<double, 3, 3> facet { { { 1, 1, 1 }, { 2, 1, 1 }, { 1, 2, 1 } } };
    BasicOctree::BasicOctree root;
    root.m_Box = { { 0, 0, 0 }, { 8, 8, 8 } };
    Tavro::Facet<double, 3, 3>* const facets[] { &facet };
    Tavro::RefineAround(root, facets, 1);
    BasicMorpher::BasicMorpher cells;
    Tavro::AddLeafCells(cells, root);
    EXPECT_EQ(cells.m_counters.m_tetrahedra, 6U);
    EXPECT_EQ(cells.m_counters.m_hexahedra, 7U);
    // The lattice of eight cells has 27 corners, all shared.
    EXPECT_EQ(cells.m_lstVerts.size(), 27U);
    EXPECT_EQ(cells.m_lstCells.size(), 13U);
}

TEST(LeafCells, ComeInTheOrderOfTheLeavesEachAlongItsDiagonal)
{
    Tavro::Facet<double, 3, 3> facet { { { 1, 1, 1 }, { 2, 1, 1 }, { 1, 2, 1 } } };
    BasicOctree::BasicOctree root;
    root.m_Box = { { 0, 0, 0 }, { 8, 8, 8 } };
    Tavro::Facet<double, 3, 3>* const facets[] { &facet };
    Tavro::RefineAround(root, facets, 1);
    BasicMorpher::BasicMorpher cells;
    Tavro::AddLeafCells(cells, root);
    // From the youngest on: the hexahedra of children 7 to 1, then the tetrahedra of child 0.
    auto cell = cells.m_lstCells.begin();
    for (unsigned int child = 7; child > 0; --child, ++cell) {
        const Point outermost { (child & 1U) != 0 ? 8.0 : 0.0, (child & 2U) != 0 ? 8.0 : 0.0,
            (child & 4U) != 0 ? 8.0 : 0.0 };
        ASSERT_EQ(cell->m_vecFaces.size(), 6U) << child;
        bool found = false;
        for (const auto face : cell->m_vecFaces) {
            for (unsigned int i = 0; i < 4; ++i)
                found = found || Tavro::SamePosition(face->GetVert(i)->m_vPosition, outermost);
        }
        EXPECT_TRUE(found) << child;
    }
    for (int i = 0; i < 6; ++i, ++cell) {
        ASSERT_EQ(cell->m_vecFaces.size(), 4U);
        ASSERT_EQ(cell->m_vecTriangles.size(), 1U);
        EXPECT_EQ(cell->m_vecTriangles[0], &facet);
    }
    EXPECT_EQ(cell, cells.m_lstCells.end());
    EXPECT_NE(cells.FindEdge(cells.FindVert({ 0, 0, 0 }), cells.FindVert({ 4, 4, 4 })),
        cells.m_lstEdges.end());
    expect_point(cells.m_mapVerts.First()->m_vPosition, { 0, 0, 0 });
}

TEST(WettedSurface, OfNothingIsASurfaceWithoutFacets)
{
    unsigned char normals = 77;
    unsigned char curvature = 77;
    const auto surface
        = TriangleCloud().GenerateApproximateWettedSurface(5, normals, true, curvature);
    EXPECT_EQ(surface->NumberOfFacets(), 0U);
    EXPECT_TRUE(surface->m_vecVertices.empty());
    EXPECT_EQ(normals, 0);
    EXPECT_EQ(curvature, 0);
    ASSERT_EQ(surface->m_vecVertexVectorData.size(), 1U);
    ASSERT_EQ(surface->m_vecFacetDoubleData.size(), 1U);
}

TEST(WettedSurface, WithoutCurvatureLeavesTheCallersChannelAlone)
{
    unsigned char normals = 77;
    unsigned char curvature = 77;
    const auto surface
        = TriangleCloud().GenerateApproximateWettedSurface(5, normals, false, curvature);
    EXPECT_EQ(normals, 0);
    EXPECT_EQ(curvature, 77);
    EXPECT_TRUE(surface->m_vecFacetDoubleData.empty());
    EXPECT_FALSE(surface->m_bHasFacetData);
    EXPECT_TRUE(surface->m_bHasVertexData);
}

TEST(WettedSurface, CoordinatesThatAreNoNumbersDoNotCrash)
{
    for (const double bad : { std::numeric_limits<double>::quiet_NaN(),
             std::numeric_limits<double>::infinity(), 1e308 }) {
        for (const int first : { 0, 1 }) {
            const auto outcome = Testing::run_isolated([&] {
                TriangleCloud cloud;
                if (first == 0)
                    (void)cloud.AddTriangle({ bad, 0, 0 }, { 0, bad, 1 }, { -bad, 1, 0 });
                for (const auto& facet : cube(-1, 1))
                    (void)cloud.AddTriangle(facet[0], facet[1], facet[2]);
                if (first != 0)
                    (void)cloud.AddTriangle({ bad, 0, 0 }, { 0, bad, 1 }, { -bad, 1, 0 });
                unsigned char channel = 0;
                (void)cloud.GenerateApproximateWettedSurface(2, channel, true, channel);
            });
            // An exception, 86, would be an answer too.
            EXPECT_TRUE(outcome.exited) << bad << ' ' << first << ' ' << outcome.err;
        }
    }
}

TEST(WettedSkin, IsWhatIsMarkedAndHasAWettedSideInMapOrder)
{
    MarkedMesh mesh(Testing::joined(cube(-2, 2), cube(-1, 1)));
    mesh.MarkSurface();
    EXPECT_EQ(WettedSkin(mesh).size(), 12U);
    mesh.at(3).SetSideState(false, SideState::Unmarked);
    const auto skin = WettedSkin(mesh);
    ASSERT_EQ(skin.size(), 11U);
    // (-2, -2, -2), (-2, -2, 2), (-2, 2, 2): the first of the outer cube's low x.
    EXPECT_EQ(skin[0], &mesh.at(0));
}

TEST(SurfaceOf, NumbersVerticesByFirstUseAndTurnsReversedTrianglesRound)
{
    MarkedMesh mesh(Facets { { { { 0, 0, 0 }, { 1, 0, 0 }, { 0, 1, 0 } } },
        { { { 1, 0, 0 }, { 1, 1, 0 }, { 0, 1, 0 } } } });
    mesh.SetConsistentWindDirections();
    mesh.at(1).SetWindDirection(WindDirection::Reversed);
    mesh.CalculateEdgeCurvature();
    unsigned char normals = 77;
    unsigned char curvature = 77;
    // The second triangle first: stored with its least vertex first, (0, 1, 0), (1, 0, 0),
    // (1, 1, 0), numbered so, and handed out the other way round.
    const std::vector<const Tavro::WettedTriangle*> triangles { &mesh.at(1), &mesh.at(0) };
    const auto surface = Tavro::SurfaceOf(triangles, normals, true, curvature);
    ASSERT_EQ(surface->m_vecVertices.size(), 4U);
    expect_point(surface->m_vecVertices[0], { 0, 1, 0 });
    expect_point(surface->m_vecVertices[1], { 1, 0, 0 });
    expect_point(surface->m_vecVertices[2], { 1, 1, 0 });
    expect_point(surface->m_vecVertices[3], { 0, 0, 0 });
    EXPECT_EQ(surface->m_vecFacetVertices, (std::vector<std::uint32_t> { 2, 1, 0, 3, 1, 0 }));
    EXPECT_EQ(surface->m_vecFacetOffsets, (std::vector<std::uint32_t> { 0, 3, 6 }));
    // Each has free edges, and both sides wetted.
    EXPECT_EQ(surface->m_vecFacetDoubleData.at(curvature),
        (std::vector<double> { 3.141592653589793, 3.141592653589793 }));
    // The one is outward towards z, the other, turned round, towards -z; at (0, 0, 0) and
    // (1, 1, 0) only one of them is.
    expect_point(surface->m_vecVertexVectorData.at(normals)[3], { 0, 0, 1 });
    expect_point(surface->m_vecVertexVectorData.at(normals)[2], { 0, 0, -1 });
}

class VertexNormal : public testing::Test {
protected:
    // Around the origin: one triangle across each axis.
    const Point m_o { 0, 0, 0 };
    MarkedMesh m_mesh { Facets { { { m_o, { 1, 0, 0 }, { 0, 1, 0 } } }, // normal z
        { { m_o, { 0, 1, 0 }, { 0, 0, 1 } } }, // normal x
        { { m_o, { 0, 0, 1 }, { 1, 0, 0 } } } } }; // normal y

    void set(std::size_t i, SideState positive, SideState negative, WindDirection direction)
    {
        m_mesh.at(i).SetSideState(true, positive);
        m_mesh.at(i).SetSideState(false, negative);
        m_mesh.at(i).SetWindDirection(direction);
    }
    Point normal() { return TriangleCloud::GetVertexNormal(m_mesh.FindVertex(m_o)); }
};

TEST_F(VertexNormal, IsAlongZWhereNothingIsMarked)
{
    set(1, SideState::Wetted, SideState::Unmarked, WindDirection::Stored);
    expect_point(normal(), { 0, 0, 1 });
}

TEST_F(VertexNormal, ComesFromTrianglesThatSeparateAlone)
{
    set(0, SideState::Wetted, SideState::Wetted, WindDirection::Stored);
    set(1, SideState::Wetted, SideState::Dry, WindDirection::Stored);
    set(2, SideState::Dry, SideState::Dry, WindDirection::Stored);
    expect_point(normal(), { 1, 0, 0 });
}

TEST_F(VertexNormal, ComesFromThoseWettedOnBothSidesIfNoneSeparates)
{
    set(0, SideState::Wetted, SideState::Wetted, WindDirection::Reversed);
    set(1, SideState::Dry, SideState::Dry, WindDirection::Stored);
    expect_point(normal(), { 0, 0, -1 });
}

TEST_F(VertexNormal, ComesFromDryOnesIfThereAreNoOthers)
{
    set(2, SideState::Dry, SideState::Dry, WindDirection::Stored);
    expect_point(normal(), { 0, 1, 0 });
}

TEST_F(VertexNormal, WithoutAWindDirectionIsThatOfTheReversedWinding)
{
    set(1, SideState::Dry, SideState::Wetted, WindDirection::Unset);
    expect_point(normal(), { -1, 0, 0 });
}

TEST_F(VertexNormal, IsTheNormalisedSumOfUnitNormals)
{
    for (const std::size_t i : { 0U, 1U, 2U })
        set(i, SideState::Wetted, SideState::Dry, WindDirection::Stored);
    const double third = 1 / std::sqrt(3.0);
    expect_point(normal(), { third, third, third });
}

} // namespace
