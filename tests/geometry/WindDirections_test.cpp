// SPDX-License-Identifier: Apache-2.0
#include "geometry/CurvatureMesh.h"
#include "tests/geometry/support/MarkedMesh.h"

#include <gtest/gtest.h>

namespace {

using Tavro::CurvatureEdge;
using Tavro::CurvatureMesh;
using Tavro::SideState;
using Tavro::WindDirection;
using Testing::cube;
using Testing::Facets;
using Testing::joined;
using Testing::MarkedMesh;
using Testing::Point;

TEST(WindDirections, MarkFirst)
{
    MarkedMesh mesh(cube(0, 1));
    mesh.SetConsistentWindDirections();
    EXPECT_TRUE(mesh.m_bSurfaceMarked);
    EXPECT_EQ(mesh.states(), Testing::times(12, "+"));
}

TEST(WindDirections, ThatAreSetStay)
{
    MarkedMesh mesh(cube(0, 1));
    mesh.at(4).SetWindDirection(WindDirection::Reversed);
    mesh.SetConsistentWindDirections();
    EXPECT_EQ(mesh.at(4).GetWindDirection(), WindDirection::Reversed);
    EXPECT_EQ(mesh.at(5).GetWindDirection(), WindDirection::Stored);
}

TEST(WindDirections, OfADryInnerCubeAgreeWithEachOther)
{
    MarkedMesh mesh(joined(cube(-2, 2), cube(-1, 1)));
    mesh.SetConsistentWindDirections();
    for (std::size_t i = 12; i < 24; ++i)
        EXPECT_EQ(mesh.at(i).GetWindDirection(), WindDirection::Stored) << i;
}

TEST(WindDirections, FloodStopsAtEdgesOfThreeTriangles)
{
    // A sheet of two triangles with a fin on the edge between them; each is a flood of its own.
    const Point a { 0, 0, 0 };
    const Point b { 1, 0, 0 };
    MarkedMesh mesh(Facets {
        { { a, b, { 0, 1, 0 } } }, { { a, b, { 0, -1, 0 } } }, { { a, b, { 0, 0, 1 } } } });
    mesh.SetConsistentWindDirections();
    EXPECT_EQ(mesh.states(), "***");
    // The first two are wound against each other, and yet all keep their winding.
    for (std::size_t i = 0; i < 3; ++i)
        EXPECT_EQ(mesh.at(i).GetWindDirection(), WindDirection::Stored) << i;
}

TEST(WindDirections, FloodThatReachesATriangleThatSeparatesGivesItItsOwn)
{
    // Two triangles of a sheet, wound alike, in map order; the second separates, outward reversed.
    MarkedMesh mesh(Facets { { { { 0, 0, 0 }, { 1, 0, 0 }, { 0, 1, 0 } } },
        { { { 1, 0, 0 }, { 1, 1, 0 }, { 0, 1, 0 } } } });
    mesh.m_bSurfaceMarked = true; // so that the states set here stand
    for (const bool side : { true, false })
        mesh.at(0).SetSideState(side, SideState::Wetted);
    mesh.at(1).SetSideState(true, SideState::Dry);
    mesh.at(1).SetSideState(false, SideState::Wetted);
    mesh.SetConsistentWindDirections();
    EXPECT_EQ(mesh.at(0).GetWindDirection(), WindDirection::Stored);
    EXPECT_EQ(mesh.at(1).GetWindDirection(), WindDirection::Stored);
}

TEST(WindDirections, TriangleThatSeparatesBeforeTheFloodKeepsItsOwn)
{
    // The same with the states exchanged: now the first in map order separates.
    MarkedMesh mesh(Facets { { { { 0, 0, 0 }, { 1, 0, 0 }, { 0, 1, 0 } } },
        { { { 1, 0, 0 }, { 1, 1, 0 }, { 0, 1, 0 } } } });
    mesh.m_bSurfaceMarked = true;
    mesh.at(0).SetSideState(true, SideState::Dry);
    mesh.at(0).SetSideState(false, SideState::Wetted);
    for (const bool side : { true, false })
        mesh.at(1).SetSideState(side, SideState::Dry);
    mesh.SetConsistentWindDirections();
    EXPECT_EQ(mesh.at(0).GetWindDirection(), WindDirection::Reversed);
    EXPECT_EQ(mesh.at(1).GetWindDirection(), WindDirection::Stored);
}

double curvature(const CurvatureMesh& mesh, const Point& p, const Point& q)
{
    return static_cast<const CurvatureEdge*>(
        CurvatureMesh::FindEdge(mesh.FindVertex(p), mesh.FindVertex(q)))
        ->m_dCurvature;
}

TEST(EdgeCurvature, OfACubeIsARightAngleAtItsEdgesAndNoneOnItsFaces)
{
    MarkedMesh mesh(cube(0, 1));
    mesh.CalculateEdgeCurvature();
    EXPECT_TRUE(mesh.m_bSurfaceMarked);
    EXPECT_EQ(curvature(mesh, { 0, 0, 0 }, { 1, 0, 0 }), 1.5707963267948966);
    EXPECT_EQ(curvature(mesh, { 1, 1, 0 }, { 1, 1, 1 }), 1.5707963267948966);
    EXPECT_EQ(curvature(mesh, { 0, 0, 0 }, { 1, 1, 0 }), 0.0); // a diagonal of low z
    int right = 0;
    for (const Tavro::MeshEdge* edge : mesh.Edges())
        right += static_cast<const CurvatureEdge*>(edge)->m_dCurvature == 1.5707963267948966;
    EXPECT_EQ(right, 12);
}

TEST(EdgeCurvature, OfWhatIsDryIsNone)
{
    MarkedMesh mesh(joined(cube(-2, 2), cube(-1, 1)));
    mesh.CalculateEdgeCurvature();
    EXPECT_EQ(curvature(mesh, { -1, -1, -1 }, { 1, -1, -1 }), 0.0);
    EXPECT_EQ(curvature(mesh, { -2, -2, -2 }, { 2, -2, -2 }), 1.5707963267948966);
}

TEST(EdgeCurvature, AtTheRimOfASheetIsPi)
{
    MarkedMesh mesh(Testing::sheet(1, 1));
    mesh.CalculateEdgeCurvature();
    EXPECT_EQ(curvature(mesh, { 0, 0, 0 }, { 1, 0, 0 }), 3.141592653589793);
    EXPECT_EQ(curvature(mesh, { 0, 0, 0 }, { 1, 1, 0 }), 0.0);
}

TEST(EdgeCurvature, AtTheRimOfASharedFaceIsThatOfTheSkin)
{
    // Walls of two boxes continue each other at x = 1; the shared face between them is dry.
    MarkedMesh mesh(
        joined(Testing::box({ 0, 0, 0 }, { 1, 1, 1 }), Testing::box({ 1, 0, 0 }, { 2, 1, 1 })));
    mesh.CalculateEdgeCurvature();
    EXPECT_NEAR(curvature(mesh, { 1, 0, 0 }, { 1, 1, 0 }), 0.0, 1e-15);
}

} // namespace
