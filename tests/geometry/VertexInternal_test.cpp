// SPDX-License-Identifier: Apache-2.0
#include "geometry/ExactPredicates.h"
#include "tests/geometry/support/MarkedMesh.h"

#include <gtest/gtest.h>

#include <array>
#include <cmath>
#include <random>

namespace {

using Tavro::SideState;
using Tavro::WettedTriangle;
using Testing::cube;
using Testing::Facets;
using Testing::MarkedMesh;
using Testing::Point;

TEST(VertexInternal, IsFalseWithoutTrianglesThatSeparate)
{
    EXPECT_FALSE(MarkedMesh(cube(0, 1)).IsVertexInternal({ 0.5, 0.5, 0.5 }));
    EXPECT_FALSE(MarkedMesh(Facets {}).IsVertexInternal({ 0, 0, 0 }));
}

TEST(VertexInternal, IsTrueInsideAMarkedCubeOnly)
{
    MarkedMesh mesh(cube(0, 1));
    mesh.MarkSurface();
    EXPECT_TRUE(mesh.IsVertexInternal({ 0.5, 0.5, 0.5 })); // on the diagonal of the face
    EXPECT_TRUE(mesh.IsVertexInternal({ 0.25, 0.5, 0.75 }));
    EXPECT_FALSE(mesh.IsVertexInternal({ -0.05, 0.5, 0.25 })); // before it: twice
    EXPECT_FALSE(mesh.IsVertexInternal({ 1.5, 0.5, 0.25 }));
    EXPECT_FALSE(mesh.IsVertexInternal({ 0.5, 1.5, 0.25 }));
}

TEST(VertexInternal, TheRayEndsATenthOfTheMeshBehindItsLength)
{
    // Seen from far before the mesh the ray ends within it: box 0 to 1, so it reaches 1.1.
    MarkedMesh mesh(cube(0, 1));
    mesh.MarkSurface();
    EXPECT_TRUE(mesh.IsVertexInternal({ -1.05, 0.5, 0.25 })); // to 0.05: one wall
    EXPECT_FALSE(mesh.IsVertexInternal({ -1.15, 0.5, 0.25 })); // to -0.05: none
}

TEST(VertexInternal, IsTheOddnessOfTheExactTestOnAGridFullOfCoincidences)
{
    std::mt19937 random(5);
    const auto draw = [&] { return static_cast<double>(random() % 4); };
    int internal = 0;
    int cases = 0;
    for (int round = 0; round < 300; ++round) {
        Facets soup;
        for (int i = 0; i < 20; ++i)
            soup.push_back({ { { draw(), draw(), draw() }, { draw(), draw(), draw() },
                { draw(), draw(), draw() } } });
        MarkedMesh mesh(soup);
        for (std::size_t i = 0; i < mesh.Triangles().size(); ++i) {
            mesh.at(i).SetSideState(true, SideState::Wetted);
            mesh.at(i).SetSideState(false, i % 5 == 0 ? SideState::Wetted : SideState::Dry);
        }
        const double length = 1.1 * (mesh.m_Box.m_vMax[0] - mesh.m_Box.m_vMin[0]);
        for (int k = 0; k < 20; ++k) {
            const Point p { draw(), draw(), draw() };
            bool odd = false;
            for (std::size_t i = 0; i < mesh.Triangles().size(); ++i) {
                const WettedTriangle& t = mesh.at(i);
                if (i % 5 != 0
                    && Tavro::sos_edge_tri_intersection_exists(p, { p[0] + length, p[1], p[2] },
                        t.m_apVertices[0]->m_vPosition, t.m_apVertices[1]->m_vPosition,
                        t.m_apVertices[2]->m_vPosition))
                    odd = !odd;
            }
            ASSERT_EQ(mesh.IsVertexInternal(p), odd);
            internal += odd;
            ++cases;
        }
    }
    EXPECT_GT(internal, cases / 10) << "the soup no longer encloses anything";
}

/// The exact test of the ray and the first triangle; where it rounds, the order of corners matters.
bool ray_meets(MarkedMesh& mesh, const Point& p)
{
    const double length = 1.1 * (mesh.m_Box.m_vMax[0] - mesh.m_Box.m_vMin[0]);
    const auto& v = mesh.at(0).m_apVertices;
    return Tavro::sos_edge_tri_intersection_exists(
        p, { p[0] + length, p[1], p[2] }, v[0]->m_vPosition, v[1]->m_vPosition, v[2]->m_vPosition);
}

TEST(VertexInternal, IsTheOddnessOfTheExactTestWhereTrianglesAreSeenEdgeOn)
{
    // In a plane along x through the point, but for the rounding of full mantissas: the turns of
    // their corners about the ray are so near zero that the exact test itself rounds, and finds
    // crossings even of triangles that lie beside the ray.
    std::mt19937_64 random(3);
    const auto draw = [&] { return static_cast<double>(random() >> 11U) * 0x1p-53; };
    int besideAndMet = 0;
    int missed = 0;
    for (int round = 0; round < 20000; ++round) {
        const Point p { draw(), draw(), draw() };
        const double u = draw() - 0.5;
        const double v = draw() - 0.5;
        Testing::Triangle t {};
        for (std::size_t k = 0; k < 3; ++k) {
            const double away = 0.25 + draw();
            t[k] = { p[0] + draw(), p[1] + away * u, p[2] + away * v };
        }
        MarkedMesh mesh(Facets { t });
        mesh.at(0).SetSideState(true, SideState::Wetted);
        mesh.at(0).SetSideState(false, SideState::Dry);
        const bool met = ray_meets(mesh, p);
        ASSERT_EQ(mesh.IsVertexInternal(p), met) << round;
        ++(met ? besideAndMet : missed);
    }
    EXPECT_GT(besideAndMet, 20) << "the triangles are no longer seen edge-on";
    EXPECT_GT(missed, 10000);
}

TEST(VertexInternal, IsTheOddnessOfTheExactTestFromEdgeOnToBroad)
{
    // The same with planes that turn away from the ray by steps of any size.
    std::mt19937_64 random(4);
    const auto draw = [&] { return static_cast<double>(random() >> 11U) * 0x1p-53; };
    for (int round = 0; round < 20000; ++round) {
        const Point p { draw(), draw(), draw() };
        const double u = draw() - 0.5;
        const double v = draw() - 0.5;
        const double off = std::ldexp(1.0, -static_cast<int>(random() % 60));
        Testing::Triangle t {};
        for (std::size_t k = 0; k < 3; ++k) {
            const double away = (random() % 4 == 0 ? -1 : 1) * (0.25 + draw());
            t[k]
                = { p[0] + draw(), p[1] + away * u + off * draw(), p[2] + away * v + off * draw() };
        }
        MarkedMesh mesh(Facets { t });
        mesh.at(0).SetSideState(true, SideState::Wetted);
        mesh.at(0).SetSideState(false, SideState::Dry);
        ASSERT_EQ(mesh.IsVertexInternal(p), ray_meets(mesh, p)) << round;
    }
}

} // namespace
