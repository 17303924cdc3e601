// SPDX-License-Identifier: Apache-2.0
#include "geometry/CurvatureMesh.h"

#include <gtest/gtest.h>

#include <cmath>

namespace {

using Tavro::CurvatureEdge;
using Tavro::CurvatureMesh;
using Tavro::MeshTriangle;
using Tavro::SideState;
using Tavro::WettedTriangle;
using Position = Tavro::Vector<double, 3>;

constexpr double kPi = 3.141592653589793;

// All triangles of these tests meet in the edge from A to B, along x. A triangle's direction is the
// angle of its third vertex around that edge, from y towards z.
const Position kA { 0, 0, 0 };
const Position kB { 1, 0, 0 };
const Position kAt0 { 0, 1, 0 };
const Position kAt90 { 0, 0, 1 };
const Position kAt135 { 0, -1, 1 };
const Position kAt180 { 0, -1, 0 };
const Position kAt270 { 0, 0, -1 };

class CurvatureMeshTest : public testing::Test {
protected:
    /// From A to B, so that the edge runs along the winding; its positive side faces growing
    /// directions.
    WettedTriangle* along(const Position& third)
    {
        return static_cast<WettedTriangle*>(m_mesh.AddTriangle(kA, kB, third));
    }
    /// From B to A; its negative side faces growing directions.
    WettedTriangle* against(const Position& third)
    {
        return static_cast<WettedTriangle*>(m_mesh.AddTriangle(kB, kA, third));
    }
    CurvatureEdge* edge()
    {
        return static_cast<CurvatureEdge*>(
            CurvatureMesh::FindEdge(m_mesh.FindVertex(kA), m_mesh.FindVertex(kB)));
    }
    double angle(const MeshTriangle* t1, const MeshTriangle* t2)
    {
        return CurvatureMesh::GetAngleBetweenAdjacentTriangles(t1, t2, edge());
    }
    std::vector<MeshTriangle*> ordered() { return CurvatureMesh::OrderAdjacentTriangles(edge()); }
    double curvature()
    {
        edge()->m_dCurvature = -1.0; // so that a value that is not set shows
        CurvatureMesh::SetEdgeCurvature(edge());
        return edge()->m_dCurvature;
    }

    CurvatureMesh m_mesh;
};

using CurvatureMeshAngle = CurvatureMeshTest;
using CurvatureMeshOrder = CurvatureMeshTest;
using CurvatureMeshEdge = CurvatureMeshTest;

TEST_F(CurvatureMeshAngle, AFlatPairHasNone)
{
    EXPECT_EQ(angle(along(kAt0), against(kAt180)), 0.0);
}

TEST_F(CurvatureMeshAngle, ARightAngleIsHalfPi)
{
    EXPECT_EQ(angle(along(kAt0), against(kAt90)), 1.5707963267948966);
    EXPECT_EQ(angle(along(kAt0), against(kAt270)), 1.5707963267948966);
}

TEST_F(CurvatureMeshAngle, ATriangleFoldedBackOntoTheOtherIsPi)
{
    EXPECT_EQ(angle(along(kAt0), along({ 0.5, 2, 0 })), kPi);
}

TEST_F(CurvatureMeshAngle, WindingDoesNotMatter)
{
    // Directions 0 and 135 leave a gap of 135 degrees: the surface turns by 45.
    EXPECT_NEAR(angle(along(kAt0), along(kAt135)), kPi / 4, 1e-15);
    EXPECT_NEAR(angle(along(kAt0), against(kAt135)), kPi / 4, 1e-15);
    EXPECT_NEAR(angle(against(kAt0), against(kAt135)), kPi / 4, 1e-15);
}

TEST_F(CurvatureMeshAngle, AProductThatRoundsAboveOneIsNoError)
{
    // Unit normals of triangles in a tilted plane: their product may round to more than one.
    int rounded = 0;
    for (int i = 1; i <= 200; ++i) {
        CurvatureMesh mesh;
        const double y = std::sqrt(i);
        const double z = std::sqrt(i + 0.3);
        const MeshTriangle* const t1 = mesh.AddTriangle(kA, kB, { 0.1, y, z });
        const MeshTriangle* const t2 = mesh.AddTriangle(kB, kA, { 0.7, -y, -z });
        const double turn = CurvatureMesh::GetAngleBetweenAdjacentTriangles(
            t1, t2, CurvatureMesh::FindEdge(mesh.FindVertex(kA), mesh.FindVertex(kB)));
        EXPECT_NEAR(turn, 0.0, 1e-7);
        rounded += turn == 0.0;
    }
    EXPECT_GT(rounded, 10);
}

TEST_F(CurvatureMeshAngle, ATriangleWithoutAreaMakesItNaN)
{
    EXPECT_TRUE(std::isnan(angle(along(kAt0), along({ 2, 0, 0 }))));
    EXPECT_TRUE(std::isnan(angle(along({ 2, 0, 0 }), along(kAt0))));
}

TEST_F(CurvatureMeshOrder, TrianglesComeByDirectionFromTheFirstOne)
{
    MeshTriangle* const first = along(kAt0);
    MeshTriangle* const at270 = against(kAt270);
    MeshTriangle* const at90 = along(kAt90);
    MeshTriangle* const at180 = along(kAt180);
    EXPECT_EQ(ordered(), (std::vector<MeshTriangle*> { first, at90, at180, at270 }));
}

TEST_F(CurvatureMeshOrder, SeveralBeyondHalfATurnComeByDirectionToo)
{
    MeshTriangle* const first = along(kAt0);
    MeshTriangle* const at315 = along({ 0, 1, -1 });
    MeshTriangle* const at225 = along({ 0, -1, -1 });
    MeshTriangle* const at45 = along({ 0, 1, 1 });
    MeshTriangle* const at270 = against(kAt270);
    EXPECT_EQ(ordered(), (std::vector<MeshTriangle*> { first, at45, at225, at270, at315 }));
}

TEST_F(CurvatureMeshOrder, TheReferenceIsTheFirstInSetOrder)
{
    MeshTriangle* const at180 = along(kAt180);
    MeshTriangle* const at90 = along(kAt90);
    MeshTriangle* const at0 = along(kAt0);
    MeshTriangle* const at270 = along(kAt270);
    EXPECT_EQ(ordered(), (std::vector<MeshTriangle*> { at180, at270, at0, at90 }));
}

TEST_F(CurvatureMeshOrder, OfTwoWithTheSameAngleTheLaterOneStays)
{
    MeshTriangle* const first = along(kAt0);
    (void)along(kAt90); // drops out
    MeshTriangle* const at180 = along(kAt180);
    MeshTriangle* const later = along({ 0.5, 0, 2 });
    EXPECT_EQ(ordered(), (std::vector<MeshTriangle*> { first, later, at180 }));
}

TEST_F(CurvatureMeshOrder, ATriangleInTheReferencesDirectionTakesItsPlace)
{
    (void)along(kAt0); // drops out
    MeshTriangle* const at90 = along(kAt90);
    MeshTriangle* const later = along({ 0.5, 2, 0 });
    EXPECT_EQ(ordered(), (std::vector<MeshTriangle*> { later, at90 }));
}

TEST_F(CurvatureMeshOrder, ATriangleWithoutAreaTakesTheFirstPlace)
{
    (void)along(kAt0); // drops out
    MeshTriangle* const at90 = along(kAt90);
    MeshTriangle* const flat = along({ 2, 0, 0 });
    EXPECT_EQ(ordered(), (std::vector<MeshTriangle*> { flat, at90 }));
}

TEST_F(CurvatureMeshOrder, AnEdgeWithoutTrianglesHasNone)
{
    (void)along(kAt0); // only its vertices matter
    Tavro::MeshEdge* const lonely
        = m_mesh.CreateEdge(m_mesh.FindVertex(kA), m_mesh.FindVertex(kAt0));
    EXPECT_TRUE(CurvatureMesh::OrderAdjacentTriangles(lonely).empty());
    m_mesh.DestroyEdge(lonely);
}

TEST_F(CurvatureMeshEdge, WithoutTrianglesKeepsItsCurvature)
{
    (void)along(kAt0); // only its vertices matter
    auto* const lonely = static_cast<CurvatureEdge*>(
        m_mesh.CreateEdge(m_mesh.FindVertex(kA), m_mesh.FindVertex(kAt0)));
    lonely->m_dCurvature = 0.75;
    CurvatureMesh::SetEdgeCurvature(lonely);
    EXPECT_EQ(lonely->m_dCurvature, 0.75);
    m_mesh.DestroyEdge(lonely);
}

TEST_F(CurvatureMeshEdge, OfOneTriangleIsPiIfAnySideIsWetted)
{
    WettedTriangle* const triangle = along(kAt0);
    EXPECT_EQ(curvature(), 0.0);
    triangle->m_ucFlags = 0x05; // dry on both sides
    EXPECT_EQ(curvature(), 0.0);
    triangle->m_ucFlags = 0x02;
    EXPECT_EQ(curvature(), 3.141592653589793);
    triangle->m_ucFlags = 0x08;
    EXPECT_EQ(curvature(), 3.141592653589793);
}

TEST_F(CurvatureMeshEdge, OfAFlatPairIsZero)
{
    along(kAt0)->SetSideState(true, SideState::Wetted);
    (void)against(kAt180); // its state does not matter
    EXPECT_EQ(curvature(), 0.0);
}

TEST_F(CurvatureMeshEdge, OfAFoldedPairIsPi)
{
    along(kAt0)->SetSideState(false, SideState::Wetted);
    (void)along({ 0.5, 2, 0 }); // its state does not matter
    EXPECT_EQ(curvature(), kPi);
}

TEST_F(CurvatureMeshEdge, OfANearlyFoldedPairIsCloseToPi)
{
    along(kAt0)->SetSideState(true, SideState::Wetted);
    (void)against({ 0, 1, 1e-3 }); // its state does not matter
    EXPECT_NEAR(curvature(), kPi - 1e-3, 1e-9);
}

TEST_F(CurvatureMeshEdge, OfAPairLooksAtTheFirstTriangleAlone)
{
    WettedTriangle* const first = along(kAt0);
    WettedTriangle* const second = against(kAt90);
    EXPECT_EQ(curvature(), 0.0);
    second->SetSideState(true, SideState::Wetted);
    EXPECT_EQ(curvature(), 0.0);
    second->SetSideState(true, SideState::Dry);
    first->SetSideState(false, SideState::Wetted);
    EXPECT_EQ(curvature(), kPi / 2);
}

// Three triangles in the directions 0, 90 and 135: the gaps of 90, 45 and 225 degrees turn by 90,
// 135 and 45.

TEST_F(CurvatureMeshEdge, OfThreeTakesTheGapThatAWettedSideFaces)
{
    WettedTriangle* const at0 = along(kAt0);
    WettedTriangle* const at90 = along(kAt90);
    WettedTriangle* const at135 = along(kAt135);
    EXPECT_EQ(curvature(), 0.0);
    at0->SetSideState(true, SideState::Wetted);
    EXPECT_EQ(curvature(), kPi / 2);
    at0->m_ucFlags = 0;
    at90->SetSideState(true, SideState::Wetted);
    EXPECT_NEAR(curvature(), 3 * kPi / 4, 1e-15);
    at90->m_ucFlags = 0;
    at135->SetSideState(true, SideState::Wetted);
    EXPECT_NEAR(curvature(), kPi / 4, 1e-15);
}

TEST_F(CurvatureMeshEdge, OfThreeIsTheGreatestOfTheWettedGaps)
{
    for (WettedTriangle* triangle : { along(kAt0), along(kAt90), along(kAt135) })
        triangle->SetSideState(true, SideState::Wetted);
    EXPECT_NEAR(curvature(), 3 * kPi / 4, 1e-15);
}

TEST_F(CurvatureMeshEdge, ASideThatFacesTheFormerGapDoesNotCount)
{
    for (WettedTriangle* triangle : { along(kAt0), along(kAt90), along(kAt135) })
        triangle->SetSideState(false, SideState::Wetted);
    EXPECT_EQ(curvature(), 0.0);
}

TEST_F(CurvatureMeshEdge, ATriangleWoundAgainstTheEdgeFacesTheGapWithItsSecondSide)
{
    WettedTriangle* const at0 = against(kAt0);
    (void)along(kAt90); // dry
    (void)along(kAt135); // dry
    at0->SetSideState(false, SideState::Wetted);
    EXPECT_EQ(curvature(), kPi / 2);
    at0->m_ucFlags = 0;
    at0->SetSideState(true, SideState::Wetted);
    EXPECT_EQ(curvature(), 0.0);
}

TEST_F(CurvatureMeshEdge, TheEdgeIsFoundInEachSlot)
{
    // The least vertex comes first: A, which makes slot 0 along and slot 2 against the winding; or
    // the third vertex, which makes slot 1 both ways.
    const Position before0 { -1, 1, 0 };
    WettedTriangle* const alongSlot1 = along(before0);
    WettedTriangle* const alongSlot0 = along(kAt90);
    WettedTriangle* const againstSlot2 = against({ 0.5, -1, 0 });
    EXPECT_EQ(alongSlot1->m_apEdges[1], edge());
    EXPECT_EQ(alongSlot0->m_apEdges[0], edge());
    EXPECT_EQ(againstSlot2->m_apEdges[2], edge());
    alongSlot1->SetSideState(true, SideState::Wetted);
    EXPECT_EQ(curvature(), kPi / 2); // 0 to 90
    alongSlot1->m_ucFlags = 0;
    againstSlot2->SetSideState(false, SideState::Wetted);
    EXPECT_EQ(curvature(), 0.0); // 180 to 0 is flat
    againstSlot2->m_ucFlags = 0;

    WettedTriangle* const againstSlot1 = against({ -1, 0, -1 });
    EXPECT_EQ(againstSlot1->m_apEdges[1], edge());
    againstSlot1->SetSideState(false, SideState::Wetted);
    EXPECT_EQ(curvature(), kPi / 2); // 270 to 360
    againstSlot1->m_ucFlags = 0;
    againstSlot1->SetSideState(true, SideState::Wetted);
    EXPECT_EQ(curvature(), 0.0);
}

TEST_F(CurvatureMeshEdge, ThreeOfOneDirectionTurnBackOnThemselves)
{
    // Only the last of them is in the order, and its next one is itself.
    (void)along(kAt0); // drops out
    (void)along({ 0.5, 2, 0 }); // drops out
    along({ 0.25, 4, 0 })->SetSideState(true, SideState::Wetted);
    EXPECT_EQ(curvature(), kPi);
}

TEST_F(CurvatureMeshEdge, AnAngleThatIsNoNumberIsNotTheGreatest)
{
    WettedTriangle* const at0 = along(kAt0);
    (void)along({ 2, 0, 0 }); // without area; takes the first place
    WettedTriangle* const at90 = along(kAt90);
    at0->SetSideState(true, SideState::Wetted);
    at90->SetSideState(true, SideState::Wetted); // its next one is the one without area
    EXPECT_EQ(curvature(), 0.0);
}

} // namespace
