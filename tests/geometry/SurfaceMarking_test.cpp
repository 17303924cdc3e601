// SPDX-License-Identifier: Apache-2.0
#include "geometry/CurvatureMesh.h"
#include "geometry/WettedSides.h"
#include "tests/geometry/support/MarkedMesh.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <random>

namespace {

using Tavro::MeshEdge;
using Tavro::SideState;
using Tavro::WettedSurfaceMesh;
using Tavro::WettedTriangle;
using Tavro::WindDirection;
using Testing::box;
using Testing::cube;
using Testing::Facets;
using Testing::joined;
using Testing::MarkedMesh;
using Testing::Point;
using Testing::reversed;

TEST(MarkSurface, ClosedCubeIsWettedOutsideAndDryInsideWhateverItsWinding)
{
    // Every other triangle is turned round.
    Facets triangles = cube(-1, 1);
    for (std::size_t i = 0; i < triangles.size(); i += 2)
        std::swap(triangles[i][1], triangles[i][2]);
    MarkedMesh mesh(triangles);
    mesh.SetConsistentWindDirections();
    ASSERT_EQ(mesh.Triangles().size(), 12U);
    for (std::size_t i = 0; i < 12; ++i) {
        const WettedTriangle& t = mesh.at(i);
        const bool storedIsOutward = i % 2 != 0; // rotated when stored, never reflected
        EXPECT_EQ(t.GetSideState(storedIsOutward), SideState::Wetted) << i;
        EXPECT_EQ(t.GetSideState(!storedIsOutward), SideState::Dry) << i;
        EXPECT_EQ(
            t.GetWindDirection(), storedIsOutward ? WindDirection::Stored : WindDirection::Reversed)
            << i;
        EXPECT_EQ(t.m_iSurface, 0) << i;
    }
}

TEST(MarkSurface, CubeInsideACubeStaysDryOnBothSides)
{
    MarkedMesh mesh(joined(cube(-2, 2), cube(-1, 1)));
    mesh.MarkSurface();
    EXPECT_EQ(mesh.states(), Testing::times(12, "+") + Testing::times(12, "="));
}

TEST(MarkSurface, CubesBesideEachOtherAreBothWetted)
{
    MarkedMesh mesh(joined(cube(-2, -1), reversed(cube(1, 2))));
    mesh.MarkSurface();
    EXPECT_EQ(mesh.states(), Testing::times(12, "+") + Testing::times(12, "-"));
}

TEST(MarkSurface, WhatStandsBehindAnInnerCubeIsStillOutside)
{
    // Along x: the big cube with the small one in it, and one beyond, seen through nothing.
    MarkedMesh mesh(joined(joined(cube(-2, 2), cube(-1, 1)), box({ -9, -1, -1 }, { -8, 1, 1 })));
    mesh.MarkSurface();
    // From (-8.x, y, z) on the ray meets the big cube twice: even.
    EXPECT_EQ(
        mesh.states(), Testing::times(12, "+") + Testing::times(12, "=") + Testing::times(12, "+"));
}

TEST(MarkSurface, OpenSheetIsWettedOnBothSidesAndTheFloodGivesItOneWinding)
{
    Facets triangles = Testing::sheet(4, 4);
    for (std::size_t i = 0; i < triangles.size(); i += 3)
        std::swap(triangles[i][1], triangles[i][2]);
    MarkedMesh mesh(triangles);
    mesh.SetConsistentWindDirections();
    EXPECT_EQ(mesh.states(), Testing::times(32, "*"));
    // The first in map order keeps its winding. (0, 0), (0, 1), (1, 1) comes first, as (0, 1) is
    // below (1, 0) and (1, 1): it is the second triangle of the first square, wound as added,
    // (0, 0), (1, 1), (0, 1); and (0, 0), (1, 1), (1, 0) is the first one, which was turned.
    ASSERT_EQ(mesh.WettedTrianglesInMapOrder()[0], &mesh.at(1));
    for (std::size_t i = 0; i < 32; ++i)
        EXPECT_EQ(mesh.at(i).GetWindDirection(),
            i % 3 == 0 ? WindDirection::Reversed : WindDirection::Stored)
            << i;
}

TEST(MarkSurface, BoxesSharingAFaceKeepItDryOnBothSides)
{
    // The face at x = 1 is there twice, wound both ways; its four rim edges have four triangles.
    MarkedMesh mesh(joined(box({ 0, 0, 0 }, { 1, 1, 1 }), box({ 1, 0, 0 }, { 2, 1, 1 })));
    mesh.SetConsistentWindDirections();
    ASSERT_EQ(mesh.Triangles().size(), 24U);
    const MeshEdge* const rim
        = WettedSurfaceMesh::FindEdge(mesh.FindVertex({ 1, 0, 0 }), mesh.FindVertex({ 1, 1, 0 }));
    ASSERT_NE(rim, nullptr);
    EXPECT_EQ(rim->m_setTriangles.size(), 4U);
    // High x is the second face of the first box, low x the first one of the second.
    EXPECT_EQ(mesh.states(),
        "++"
        "=="
        "++++++++"
        "=="
        "++++++++++");
    // Those that are dry on both sides have a wind direction all the same.
    for (const std::size_t i : { 2U, 3U, 12U, 13U })
        EXPECT_NE(mesh.at(i).GetWindDirection(), WindDirection::Unset) << i;
}

TEST(MarkSurface, ABoxWithAFaceMissingIsWettedInsideToo)
{
    Facets triangles = cube(0, 1);
    triangles.erase(triangles.begin(), triangles.begin() + 2);
    MarkedMesh mesh(triangles);
    mesh.MarkSurface();
    EXPECT_EQ(mesh.states(), Testing::times(10, "*"));
}

TEST(MarkSurface, CubesTouchingInAVertexAreTwoSurfacesAndBothOutside)
{
    MarkedMesh mesh(joined(cube(-1, 0), cube(0, 1)));
    mesh.MarkSurface();
    EXPECT_EQ(mesh.states(), Testing::times(24, "+"));
    EXPECT_NE(mesh.at(0).m_iSurface, mesh.at(12).m_iSurface);
}

TEST(MarkSurface, OfSurfacesThatReachEquallyFarTheOneOfTheEarlierTriangleThereComesFirst)
{
    // A tube of 4 by 4 from x = 0 over x = 2 to x = 4, closed at both ends: its triangles at x = 4
    // begin at x = 2 or 4. Those of the box in it that reach x = 4 begin at x = 1. So the box comes
    // first, while nothing separates yet, and counts as outside although the tube is around it.
    const auto corner = [](double x, std::size_t i) -> Point {
        return { x, i == 1 || i == 2 ? 4.0 : 0.0, i >= 2 ? 4.0 : 0.0 };
    };
    Facets tube;
    for (const double x : { 0.0, 2.0 }) {
        for (std::size_t i = 0; i < 4; ++i) {
            const std::size_t k = (i + 1) % 4;
            tube.push_back({ { corner(x, i), corner(x + 2, i), corner(x + 2, k) } });
            tube.push_back({ { corner(x, i), corner(x + 2, k), corner(x, k) } });
        }
    }
    for (const double x : { 0.0, 4.0 }) {
        tube.push_back({ { corner(x, 0), corner(x, 1), corner(x, 2) } });
        tube.push_back({ { corner(x, 0), corner(x, 2), corner(x, 3) } });
    }
    MarkedMesh mesh(joined(box({ 1, 1, 1 }, { 4, 3, 3 }), tube));
    mesh.MarkSurface();
    EXPECT_EQ(mesh.at(0).m_iSurface, 1);
    EXPECT_EQ(mesh.at(12).m_iSurface, 0);
    EXPECT_EQ(mesh.states().substr(0, 12), Testing::times(12, "+"));
}

TEST(MarkSurface, NothingIsDoneWhileNothingWasAdded)
{
    MarkedMesh mesh(cube(0, 1));
    mesh.MarkSurface();
    mesh.at(5).SetSideState(true, SideState::Unmarked);
    mesh.MarkSurface();
    EXPECT_EQ(mesh.at(5).GetSideState(true), SideState::Unmarked);
}

TEST(MarkSurface, AnAddedTriangleHasAllMarkedAnewButWindDirectionsStay)
{
    MarkedMesh mesh(joined(cube(-2, 2), cube(-1, 1)));
    mesh.SetConsistentWindDirections();
    const auto direction = mesh.at(0).GetWindDirection();
    mesh.at(0).SetWindDirection(WindDirection::Reversed);
    ASSERT_NE(direction, WindDirection::Reversed);
    // A fin on the outside, with an edge in common with the outer cube.
    (void)mesh.AddTriangle({ 2, 2, -2 }, { 2, 2, 2 }, { 3, 3, 0 });
    EXPECT_FALSE(mesh.m_bSurfaceMarked);
    mesh.SetConsistentWindDirections();
    EXPECT_EQ(mesh.states(), Testing::times(12, "+") + Testing::times(12, "=") + "*");
    EXPECT_EQ(mesh.at(0).GetWindDirection(), WindDirection::Reversed);
    EXPECT_NE(mesh.at(24).GetWindDirection(), WindDirection::Unset);
}

TEST(MarkSurface, TheUpperFlagBitsAreKept)
{
    MarkedMesh mesh(cube(0, 1));
    mesh.at(3).m_ucFlags = 0xCF;
    mesh.SetConsistentWindDirections();
    // Positive side wetted (2), negative dry (1, at bit 2), stored winding (1, at bit 4).
    EXPECT_EQ(mesh.at(3).m_ucFlags, 0xC0 | 2 | 1 << 2 | 1 << 4);
}

TEST(MarkSurface, AnEmptyMeshIsMarkedAtOnce)
{
    MarkedMesh mesh(Facets {});
    mesh.SetConsistentWindDirections();
    EXPECT_TRUE(mesh.m_bSurfaceMarked);
}

TEST(MarkSurface, ASurfaceWithoutDirectionsStaysUnmarked)
{
    // Three points in a line along x: no edge has a plane, so nothing faces outward.
    MarkedMesh mesh(Facets { { { { 0, 0, 0 }, { 1, 0, 0 }, { 2, 0, 0 } } } });
    mesh.SetConsistentWindDirections();
    EXPECT_EQ(mesh.states(), "?");
    EXPECT_EQ(mesh.at(0).GetWindDirection(), WindDirection::Stored);
}

/// The marking as its steps make it, one pass over all triangles for each surface.
void mark_step_by_step(MarkedMesh& mesh)
{
    mesh.InitializeTriangles();
    const unsigned int surfaces = mesh.IdentifyConnectedSurfaces();
    for (unsigned int i = 0; i < surfaces; ++i) {
        WettedTriangle* const outer = mesh.GetUnmarkedOuterTriangle();
        if (outer == nullptr)
            continue;
        Point centroid {};
        for (std::size_t axis = 0; axis < 3; ++axis)
            centroid[axis] = (outer->m_apVertices[0]->m_vPosition[axis]
                                 + outer->m_apVertices[1]->m_vPosition[axis]
                                 + outer->m_apVertices[2]->m_vPosition[axis])
                / 3.0;
        if (!mesh.IsVertexInternal(centroid))
            mesh.TraverseConnectedSurface(outer);
        for (std::size_t k = 0; k < mesh.Triangles().size(); ++k) {
            WettedTriangle& t = mesh.at(k);
            for (const bool side : { true, false }) {
                if (t.m_iSurface == outer->m_iSurface
                    && t.GetSideState(side) == SideState::Unmarked)
                    t.SetSideState(side, SideState::Dry);
            }
        }
    }
}

TEST(MarkSurface, IsWhatItsStepsMakeOfSoupsOfCubesAndSheets)
{
    std::mt19937 random(11);
    const auto draw
        = [&](int range) { return static_cast<int>(random() % static_cast<unsigned int>(range)); };
    std::string seen;
    for (int round = 0; round < 60; ++round) {
        Facets soup;
        for (int i = 0; i < 12; ++i) {
            const Point low { draw(9) * 1.0, draw(9) * 1.0, draw(9) * 1.0 };
            const double size = 1 + draw(4);
            Facets part = box(low, { low[0] + size, low[1] + size, low[2] + size });
            if (draw(3) == 0)
                part.resize(2 + static_cast<std::size_t>(draw(10)));
            soup = joined(std::move(soup), draw(2) == 0 ? part : reversed(part));
        }
        MarkedMesh expected(soup);
        mark_step_by_step(expected);
        MarkedMesh marked(soup);
        marked.MarkSurface();
        ASSERT_EQ(marked.states(), expected.states()) << round;
        seen += marked.states();
    }
    for (const char state : { '+', '-', '=', '*' })
        EXPECT_GT(std::count(seen.begin(), seen.end(), state), 50) << state;
}

TEST(InitializeTriangles, ClearsSidesAndSurfacesAndKeepsTheRest)
{
    MarkedMesh mesh(Facets { { { { 0, 0, 0 }, { 1, 0, 0 }, { 0, 1, 0 } } } });
    mesh.at(0).m_ucFlags = 0xFF;
    mesh.at(0).m_iSurface = 7;
    mesh.InitializeTriangles();
    EXPECT_EQ(mesh.at(0).m_ucFlags, 0xF0);
    EXPECT_EQ(mesh.at(0).m_iSurface, -1);
}

TEST(ConnectedSurfaces, AreNumberedInMapOrder)
{
    MarkedMesh mesh(joined(cube(5, 6), joined(cube(0, 1), cube(2, 3))));
    EXPECT_EQ(mesh.IdentifyConnectedSurfaces(), 3U);
    EXPECT_EQ(mesh.at(0).m_iSurface, 2);
    EXPECT_EQ(mesh.at(12).m_iSurface, 0);
    EXPECT_EQ(mesh.at(24).m_iSurface, 1);
}

TEST(ConnectedSurfaces, AnyNumberOfTrianglesIsConnectedByAnEdge)
{
    const Point a { 0, 0, 0 };
    const Point b { 1, 0, 0 };
    MarkedMesh mesh(Facets { { { a, b, { 0, 1, 0 } } }, { { a, b, { 0, 0, 1 } } },
        { { a, b, { 0, -1, 0 } } }, { { a, { 0, 5, 5 }, { 0, 6, 5 } } } });
    // The last one has a vertex in common only.
    EXPECT_EQ(mesh.IdentifyConnectedSurfaces(), 2U);
    EXPECT_EQ(mesh.at(0).m_iSurface, mesh.at(1).m_iSurface);
    EXPECT_EQ(mesh.at(0).m_iSurface, mesh.at(2).m_iSurface);
    EXPECT_NE(mesh.at(0).m_iSurface, mesh.at(3).m_iSurface);
}

TEST(ConnectedSurfaces, ThoseThatHaveANumberKeepIt)
{
    MarkedMesh mesh(joined(cube(0, 1), cube(2, 3)));
    EXPECT_EQ(mesh.IdentifyConnectedSurfaces(), 2U);
    EXPECT_EQ(mesh.IdentifyConnectedSurfaces(), 0U);
    EXPECT_EQ(mesh.at(12).m_iSurface, 1);
}

TEST(OuterTriangle, IsNoneWithoutUnmarkedTriangles)
{
    MarkedMesh mesh(cube(0, 1));
    mesh.MarkSurface();
    EXPECT_EQ(mesh.GetUnmarkedOuterTriangle(), nullptr);
    EXPECT_EQ(MarkedMesh(Facets {}).GetUnmarkedOuterTriangle(), nullptr);
}

TEST(OuterTriangle, OfAFanIsTheOneThatFacesOutward)
{
    // All meet in the edge from V = (2, 0, 0) to O = (2, 0, 4), across x; v = (0, 0, 4) and
    // W = (0, 1, 0). With third vertex T the normal is (V-T) x (O-T); for T in z = 2 its direction
    // is (-y, x-2, 0) turned by 4: n.W grows with x - 2 of T, against its length.
    const Point v { 2, 0, 0 };
    const Point o { 2, 0, 4 };
    MarkedMesh mesh(Facets { { { v, o, { 0, 0, 2 } } }, { { v, o, { 1, 1, 2 } } },
        { { v, o, { 1, 3, 2 } } }, { { v, o, { 1, -2, 2 } } } });
    // (V-T) x (O-T) for T = (1, 3, 2): (1, -3, -2) x (1, -3, 2) = (-12, -4, 0): n.W = -0.316, the
    // greatest; T = (0, 0, 2) gives -1, (1, 1, 2) -0.707, (1, -2, 2) -0.447.
    EXPECT_EQ(mesh.GetUnmarkedOuterTriangle(), &mesh.at(2));
}

TEST(OuterTriangle, HangsOnTheEdgeThatPointsMostTowardsGrowingX)
{
    // From V = (3, 0, 0): the edges to (2, 4, 0) and (2, -4, 1) fall off least; the first has
    // -1/sqrt(17), the second -1/sqrt(18), which is greater.
    const Point v { 3, 0, 0 };
    MarkedMesh mesh(
        Facets { { { v, { 2, 4, 0 }, { 0, 1, 0 } } }, { { v, { 2, -4, 1 }, { 0, -1, 0 } } } });
    EXPECT_EQ(mesh.GetUnmarkedOuterTriangle(), &mesh.at(1));
}

TEST(OuterTriangle, EdgesOfMarkedTrianglesDoNotCount)
{
    const Point v { 3, 0, 0 };
    MarkedMesh mesh(
        Facets { { { v, { 2, 4, 0 }, { 0, 1, 0 } } }, { { v, { 2, -4, 1 }, { 0, -1, 0 } } } });
    mesh.at(1).SetSideState(true, SideState::Dry);
    EXPECT_EQ(mesh.GetUnmarkedOuterTriangle(), &mesh.at(0));
}

TEST(OuterTriangle, AnEdgeCountsIfItsFirstTriangleIsUnmarked)
{
    // From V = (3, 0, 0) the edge to (2, 4, 0), with two triangles, points most towards growing x,
    // -1/sqrt(17); then that to (2, -2, 0), -1/sqrt(5); then that to (0, 1, 5), -3/sqrt(35).
    const Point v { 3, 0, 0 };
    const Point up { 2, 4, 0 };
    const Facets triangles { { { v, up, { 0, 1, 0 } } }, { { v, up, { 0, 1, 5 } } },
        { { v, { 2, -2, 0 }, { 0, -1, 0 } } } };
    MarkedMesh firstMarked(triangles);
    firstMarked.at(0).SetSideState(true, SideState::Dry);
    EXPECT_EQ(firstMarked.GetUnmarkedOuterTriangle(), &firstMarked.at(2));
    MarkedMesh secondMarked(triangles);
    secondMarked.at(1).SetSideState(true, SideState::Dry);
    // v = (-1, 4, 0), W = (0, 0, -1): the normals are (0, 0, 11), so -1, and (20, 5, 11).
    EXPECT_EQ(secondMarked.GetUnmarkedOuterTriangle(), &secondMarked.at(1));
}

TEST(OuterTriangle, OfVerticesEquallyFarOutIsAtTheFirstInMapOrder)
{
    const Facets apart { { { { 0, 5, 0 }, { 1, 6, 0 }, { 0, 7, 0 } } },
        { { { 0, 1, 0 }, { 1, 2, 0 }, { 0, 3, 0 } } } };
    MarkedMesh mesh(apart);
    EXPECT_EQ(mesh.GetUnmarkedOuterTriangle(), &mesh.at(1));
}

TEST(OuterTriangle, OfEdgesThatPointEquallyFarOutIsOnTheFirst)
{
    // From V = (3, 0, 0) to (2, 4, 0) and to (2, -4, 0): -1/sqrt(17) both.
    const Point v { 3, 0, 0 };
    const Testing::Triangle up { { v, { 2, 4, 0 }, { 0, 1, 0 } } };
    const Testing::Triangle down { { v, { 2, -4, 0 }, { 0, -1, 0 } } };
    MarkedMesh upFirst(Facets { up, down });
    EXPECT_EQ(upFirst.GetUnmarkedOuterTriangle(), &upFirst.at(0));
    MarkedMesh downFirst(Facets { down, up });
    EXPECT_EQ(downFirst.GetUnmarkedOuterTriangle(), &downFirst.at(0));
}

TEST(OuterTriangle, OfThoseThatFaceOutwardAlikeIsTheFirst)
{
    // As in the fan above: T = (1, 3, 2) and T = (0, 6, 2), twice as far away in the same plane.
    const Point v { 2, 0, 0 };
    const Point o { 2, 0, 4 };
    const Testing::Triangle near { { v, o, { 1, 3, 2 } } };
    const Testing::Triangle far { { v, o, { 0, 6, 2 } } };
    MarkedMesh nearFirst(Facets { near, far });
    EXPECT_EQ(nearFirst.GetUnmarkedOuterTriangle(), &nearFirst.at(0));
    MarkedMesh farFirst(Facets { far, near });
    EXPECT_EQ(farFirst.GetUnmarkedOuterTriangle(), &farFirst.at(0));
}

class AdjacentTriangle : public testing::Test {
protected:
    // Directions about the edge from A to B, along x, from y towards z.
    const Point m_a { 0, 0, 0 };
    const Point m_b { 1, 0, 0 };
    const Point m_at0 { 0, 1, 0 };
    const Point m_at90 { 0, 0, 1 };
    const Point m_at180 { 0, -1, 0 };
    const Point m_at270 { 0, 0, -1 };

    WettedTriangle* along(const Point& third)
    {
        return static_cast<WettedTriangle*>(m_mesh.AddTriangle(m_a, m_b, third));
    }
    WettedTriangle* against(const Point& third)
    {
        return static_cast<WettedTriangle*>(m_mesh.AddTriangle(m_b, m_a, third));
    }
    WettedTriangle* beside(const WettedTriangle* triangle, bool positive)
    {
        return WettedSurfaceMesh::GetAdjacentTriangleOnSide(triangle, positive,
            WettedSurfaceMesh::FindEdge(m_mesh.FindVertex(m_a), m_mesh.FindVertex(m_b)));
    }
    WettedSurfaceMesh m_mesh;
};

TEST_F(AdjacentTriangle, AtAFreeEdgeIsTheTriangleItself)
{
    const WettedTriangle* const t = along(m_at0);
    EXPECT_EQ(beside(t, true), t);
    EXPECT_EQ(beside(t, false), t);
}

TEST_F(AdjacentTriangle, OfTwoIsTheOtherOneOnBothSides)
{
    const WettedTriangle* const t = along(m_at0);
    const WettedTriangle* const other = along(m_at90);
    EXPECT_EQ(beside(t, true), other);
    EXPECT_EQ(beside(t, false), other);
    EXPECT_EQ(beside(other, true), t);
}

TEST_F(AdjacentTriangle, OfAFanIsTheFirstOneMetOnItsSide)
{
    // A triangle in direction 0 along A to B has its normal, x cross y, towards z: its positive
    // side faces direction 90.
    const WettedTriangle* const at0 = along(m_at0);
    const WettedTriangle* const at90 = along(m_at90);
    const WettedTriangle* const at180 = against(m_at180);
    const WettedTriangle* const at270 = against(m_at270);
    EXPECT_EQ(beside(at0, true), at90);
    EXPECT_EQ(beside(at0, false), at270);
    EXPECT_EQ(beside(at90, true), at180);
    EXPECT_EQ(beside(at90, false), at0);
    // Wound against the edge: its positive side faces falling directions.
    EXPECT_EQ(beside(at180, true), at90);
    EXPECT_EQ(beside(at180, false), at270);
    EXPECT_EQ(beside(at270, true), at180);
    EXPECT_EQ(beside(at270, false), at0);
}

TEST_F(AdjacentTriangle, BeyondHalfATurnIsFartherThanAnythingBefore)
{
    const WettedTriangle* const at0 = along(m_at0);
    const WettedTriangle* const at180 = along(m_at180);
    (void)along(m_at270);
    EXPECT_EQ(beside(at0, true), at180);
}

TEST_F(AdjacentTriangle, OfTwoAtTheSameAngleIsTheEarlierOne)
{
    const WettedTriangle* const at0 = along(m_at0);
    const WettedTriangle* const first = along(m_at90);
    (void)against({ 0.5, 0, 2 });
    EXPECT_EQ(beside(at0, true), first);
}

TEST_F(AdjacentTriangle, OneInItsOwnDirectionIsMetFirstOnBothSides)
{
    // Not turned at all: N.n is 1, and n.U, being 0, is not below 0.
    const WettedTriangle* const at0 = along(m_at0);
    (void)along(m_at90);
    (void)along(m_at270);
    const WettedTriangle* const upon = along({ 0.5, 2, 0 });
    EXPECT_EQ(beside(at0, true), upon);
    EXPECT_EQ(beside(at0, false), upon);
}

TEST_F(AdjacentTriangle, OneWithoutAreaIsNeverMetAmongOthers)
{
    const WettedTriangle* const at0 = along(m_at0);
    (void)along({ 2, 0, 0 }); // in a line with the edge
    const WettedTriangle* const at90 = along(m_at90);
    EXPECT_EQ(beside(at0, true), at90);
    EXPECT_EQ(beside(at0, false), at90);
}

TEST_F(AdjacentTriangle, IsNoneWhereNoCandidateHasANormalAndTheWalkGoesOn)
{
    WettedTriangle* const at0 = along(m_at0);
    (void)along({ 2, 0, 0 });
    (void)along({ 3, 0, 0 });
    EXPECT_EQ(beside(at0, true), nullptr);
    WettedSurfaceMesh::TraverseConnectedSurface(at0);
    // Around its two free edges air reaches both sides.
    EXPECT_EQ(at0->GetSideState(true), SideState::Wetted);
    EXPECT_EQ(at0->GetSideState(false), SideState::Wetted);
}

TEST(WoundAlike, IsFalseForAnEdgeThatOneOfThemLacks)
{
    MarkedMesh mesh(Facets { { { { 0, 0, 0 }, { 1, 0, 0 }, { 0, 1, 0 } } },
        { { { 1, 0, 0 }, { 0, 0, 0 }, { 0, -1, 0 } } },
        { { { 0, 1, 0 }, { 1, 0, 0 }, { 1, 1, 0 } } } });
    const auto edge = [&](const Point& p, const Point& q) {
        return WettedSurfaceMesh::FindEdge(mesh.FindVertex(p), mesh.FindVertex(q));
    };
    const MeshEdge& common = *edge({ 0, 0, 0 }, { 1, 0, 0 });
    EXPECT_TRUE(Tavro::WoundAlike(mesh.at(0), mesh.at(1), common));
    EXPECT_FALSE(Tavro::WoundAlike(mesh.at(0), mesh.at(0), common));
    // The third triangle has one of its ends only, and the second one none of the other's.
    EXPECT_FALSE(Tavro::WoundAlike(mesh.at(0), mesh.at(2), common));
    EXPECT_FALSE(Tavro::WoundAlike(mesh.at(2), mesh.at(0), common));
    EXPECT_FALSE(Tavro::WoundAlike(mesh.at(1), mesh.at(0), *edge({ 0, 1, 0 }, { 1, 1, 0 })));
}

TEST(Traverse, StartsOnTheSideThatFacesGrowingX)
{
    // The normal of (0,0,0), (0,1,0), (0,0,1) is along x; closed, so that one side stays unmarked.
    for (const bool turned : { false, true }) {
        const Facets body = Testing::corner_tetrahedron(1);
        MarkedMesh mesh(turned ? reversed(body) : body);
        WettedSurfaceMesh::TraverseConnectedSurface(&mesh.at(3));
        EXPECT_EQ(mesh.at(3).GetSideState(!turned), SideState::Wetted);
        EXPECT_EQ(mesh.at(3).GetSideState(turned), SideState::Unmarked);
    }
}

TEST(Traverse, AWallAcrossXStartsOnItsPositiveSide)
{
    // n.x is 0, which is not below 0.
    MarkedMesh mesh(Testing::corner_tetrahedron(1));
    WettedSurfaceMesh::TraverseConnectedSurface(&mesh.at(0)); // in z = 0, wound towards -z
    EXPECT_EQ(mesh.at(0).GetSideState(true), SideState::Wetted);
    EXPECT_EQ(mesh.at(0).GetSideState(false), SideState::Unmarked);
}

} // namespace
