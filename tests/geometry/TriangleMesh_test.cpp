// SPDX-License-Identifier: Apache-2.0
#include "geometry/TriangleMesh.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

namespace {

using Tavro::MeshEdge;
using Tavro::MeshTriangle;
using Tavro::MeshVertex;
using Tavro::TriangleMesh;
using Position = Tavro::Vector<double, 3>;

const Position kO { 0, 0, 0 };
const Position kX { 1, 0, 0 };
const Position kY { 0, 1, 0 };
const Position kZ { 0, 0, 1 };

struct Counts {
    std::size_t vertices;
    std::size_t edges;
    std::size_t triangles;

    bool operator==(const Counts&) const = default;
};

Counts counts_of(const TriangleMesh& mesh)
{
    return { mesh.Vertices().size(), mesh.Edges().size(), mesh.Triangles().size() };
}

void expect_position(const MeshVertex* vertex, const Position& position)
{
    EXPECT_EQ(vertex->m_vPosition[0], position[0]);
    EXPECT_EQ(vertex->m_vPosition[1], position[1]);
    EXPECT_EQ(vertex->m_vPosition[2], position[2]);
}

void expect_vertices(
    const MeshTriangle* triangle, const Position& p, const Position& q, const Position& r)
{
    expect_position(triangle->m_apVertices[0], p);
    expect_position(triangle->m_apVertices[1], q);
    expect_position(triangle->m_apVertices[2], r);
}

void add_tetrahedron(
    TriangleMesh& mesh, const Position& a, const Position& b, const Position& c, const Position& d)
{
    mesh.AddTriangle(a, c, b);
    mesh.AddTriangle(a, b, d);
    mesh.AddTriangle(b, c, d);
    mesh.AddTriangle(c, a, d);
}

TEST(TriangleMesh, ANewOneIsEmptyAndItsBoxIsNotValid)
{
    const TriangleMesh mesh;
    EXPECT_EQ(counts_of(mesh), (Counts { 0, 0, 0 }));
    EXPECT_FALSE(mesh.m_bBoxValid);
}

TEST(TriangleMesh, ATriangleMakesItsVerticesAndEdgesInOrder)
{
    TriangleMesh mesh;
    const MeshTriangle* const triangle = mesh.AddTriangle(kO, kX, kY);
    ASSERT_EQ(counts_of(mesh), (Counts { 3, 3, 1 }));
    expect_position(mesh.Vertices()[0], kO);
    expect_position(mesh.Vertices()[1], kX);
    expect_position(mesh.Vertices()[2], kY);
    for (std::size_t i = 0; i < 3; ++i) {
        EXPECT_EQ(triangle->m_apVertices[i], mesh.Vertices()[i]);
        EXPECT_EQ(triangle->m_apEdges[i], mesh.Edges()[i]);
    }
    EXPECT_EQ(mesh.Triangles()[0], triangle);
}

TEST(TriangleMesh, TwoEqualPointsMakeNoTriangleAndChangeNothing)
{
    TriangleMesh mesh;
    EXPECT_EQ(mesh.AddTriangle(kX, kX, kY), nullptr);
    EXPECT_EQ(mesh.AddTriangle(kX, kY, kY), nullptr);
    EXPECT_EQ(mesh.AddTriangle(kX, kY, kX), nullptr);
    EXPECT_EQ(mesh.AddTriangle({ 0.0, 1, 0 }, kX, { -0.0, 1, -0.0 }), nullptr);
    EXPECT_EQ(counts_of(mesh), (Counts { 0, 0, 0 }));
    EXPECT_FALSE(mesh.m_bBoxValid);

    mesh.AddTriangle(kO, kX, kY);
    EXPECT_EQ(mesh.AddTriangle({ 9, 9, 9 }, { 9, 9, 9 }, kO), nullptr);
    EXPECT_EQ(counts_of(mesh), (Counts { 3, 3, 1 }));
    EXPECT_EQ(mesh.m_Box.m_vMax[0], 1.0);
}

TEST(TriangleMesh, ThreeCollinearDistinctPointsAreATriangle)
{
    TriangleMesh mesh;
    EXPECT_NE(mesh.AddTriangle(kO, kX, { 2, 0, 0 }), nullptr);
    EXPECT_EQ(counts_of(mesh), (Counts { 3, 3, 1 }));
}

TEST(TriangleMesh, TheSameTriangleInAnyRotationIsTheSame)
{
    TriangleMesh mesh;
    const MeshTriangle* const triangle = mesh.AddTriangle(kO, kX, kY);
    EXPECT_EQ(mesh.AddTriangle(kO, kX, kY), triangle);
    EXPECT_EQ(mesh.AddTriangle(kX, kY, kO), triangle);
    EXPECT_EQ(mesh.AddTriangle(kY, kO, kX), triangle);
    EXPECT_EQ(counts_of(mesh), (Counts { 3, 3, 1 }));
    EXPECT_EQ(mesh.Vertices()[0]->m_setEdges.size(), 2U);
    EXPECT_EQ(mesh.Vertices()[0]->m_setTriangles.size(), 1U);
    EXPECT_EQ(mesh.Edges()[0]->m_setTriangles.size(), 1U);
}

TEST(TriangleMesh, ReversedWindingIsASecondTriangleOnTheSameEdges)
{
    TriangleMesh mesh;
    MeshTriangle* const front = mesh.AddTriangle(kO, kX, kY);
    MeshTriangle* const back = mesh.AddTriangle(kO, kY, kX);
    EXPECT_NE(front, back);
    EXPECT_EQ(counts_of(mesh), (Counts { 3, 3, 2 }));
    for (const MeshEdge* edge : mesh.Edges()) {
        ASSERT_EQ(edge->m_setTriangles.size(), 2U);
        EXPECT_EQ(edge->m_setTriangles[0], front);
        EXPECT_EQ(edge->m_setTriangles[1], back);
    }
    EXPECT_EQ(mesh.AddTriangle(kX, kO, kY), back);
    EXPECT_EQ(mesh.AddTriangle(kY, kX, kO), back);
}

TEST(TriangleMesh, OneUnitInTheLastPlaceKeepsVerticesApart)
{
    TriangleMesh mesh;
    mesh.AddTriangle(kO, kX, kY);
    mesh.AddTriangle(kO, { std::nextafter(1.0, 2.0), 0, 0 }, kY);
    EXPECT_EQ(counts_of(mesh), (Counts { 4, 5, 2 }));
}

TEST(TriangleMesh, BothZerosAreTheSameCoordinate)
{
    TriangleMesh mesh;
    const MeshTriangle* const triangle = mesh.AddTriangle(kO, kX, kY);
    EXPECT_EQ(mesh.AddTriangle({ -0.0, -0.0, -0.0 }, { 1, -0.0, 0 }, { -0.0, 1, 0 }), triangle);
    EXPECT_EQ(counts_of(mesh), (Counts { 3, 3, 1 }));
    EXPECT_FALSE(std::signbit(mesh.Vertices()[0]->m_vPosition[0])) << "the first one stays";
}

TEST(TriangleMesh, TheLeastVertexComesFirstAndEdgesGoWithIt)
{
    // By x, then y, then z: the origin is least, and whichever place it has, the winding stays.
    for (int place = 0; place < 3; ++place) {
        TriangleMesh mesh;
        const MeshTriangle* const triangle = place == 0 ? mesh.AddTriangle(kO, kZ, kY)
            : place == 1                                ? mesh.AddTriangle(kY, kO, kZ)
                                                        : mesh.AddTriangle(kZ, kY, kO);
        expect_vertices(triangle, kO, kZ, kY);
        for (std::size_t i = 0; i < 3; ++i) {
            EXPECT_TRUE(triangle->m_apEdges[i]->Has(triangle->m_apVertices[i]));
            EXPECT_TRUE(triangle->m_apEdges[i]->Has(triangle->m_apVertices[(i + 1) % 3]));
        }
    }
}

TEST(TriangleMesh, TheFactoryRotatesVerticesAndEdgesByTheSamePlaces)
{
    TriangleMesh mesh;
    mesh.AddTriangle(kO, kX, kY);
    const auto v = mesh.Vertices();
    const auto e = mesh.Edges();
    MeshTriangle* const second = mesh.CreateTriangle(v[1], v[0], v[2], e[0], e[2], e[1]);
    EXPECT_EQ(second->m_apVertices[0], v[0]); // 1, 2, 0
    EXPECT_EQ(second->m_apVertices[1], v[2]);
    EXPECT_EQ(second->m_apVertices[2], v[1]);
    EXPECT_EQ(second->m_apEdges[0], e[2]);
    EXPECT_EQ(second->m_apEdges[1], e[1]);
    EXPECT_EQ(second->m_apEdges[2], e[0]);
    mesh.DestroyTriangle(second);
    MeshTriangle* const third = mesh.CreateTriangle(v[2], v[1], v[0], e[1], e[0], e[2]);
    EXPECT_EQ(third->m_apVertices[0], v[0]); // 2, 0, 1
    EXPECT_EQ(third->m_apVertices[1], v[2]);
    EXPECT_EQ(third->m_apVertices[2], v[1]);
    EXPECT_EQ(third->m_apEdges[0], e[2]);
    EXPECT_EQ(third->m_apEdges[1], e[1]);
    EXPECT_EQ(third->m_apEdges[2], e[0]);
    mesh.DestroyTriangle(third);
}

TEST(TriangleMesh, TheLesserEndOfAnEdgeComesFirst)
{
    const std::pair<Position, Position> lesserAndGreater[] {
        { { 0, 9, 9 }, { 1, 0, 0 } },
        { { 1, 0, 9 }, { 1, 1, 0 } },
        { { 1, 1, 0 }, { 1, 1, 1 } },
    };
    TriangleMesh mesh;
    for (const auto& [lesser, greater] : lesserAndGreater) {
        MeshVertex* const l = mesh.CreateVertex(lesser);
        MeshVertex* const g = mesh.CreateVertex(greater);
        MeshEdge* const forward = mesh.CreateEdge(l, g);
        MeshEdge* const backward = mesh.CreateEdge(g, l);
        for (const MeshEdge* edge : { forward, backward }) {
            EXPECT_EQ(edge->m_pVertex0, l);
            EXPECT_EQ(edge->m_pVertex1, g);
        }
        mesh.DestroyEdge(backward);
        mesh.DestroyEdge(forward);
        mesh.DestroyVertex(g);
        mesh.DestroyVertex(l);
    }
    EXPECT_EQ(counts_of(mesh), (Counts { 0, 0, 0 })) << "the factory enters nothing";
}

TEST(TriangleMesh, NeighboursAreListedInOrderOfCreation)
{
    TriangleMesh mesh;
    MeshTriangle* const first = mesh.AddTriangle(kO, kX, kY);
    MeshTriangle* const second = mesh.AddTriangle(kZ, kX, kO);
    const MeshVertex* const o = mesh.FindVertex(kO);
    ASSERT_NE(o, nullptr);
    ASSERT_EQ(o->m_setEdges.size(), 3U); // to X, to Y, and last to Z
    expect_position(o->m_setEdges[0]->m_pVertex1, kX);
    expect_position(o->m_setEdges[1]->m_pVertex1, kY);
    expect_position(o->m_setEdges[2]->m_pVertex1, kZ);
    ASSERT_EQ(o->m_setTriangles.size(), 2U);
    EXPECT_EQ(o->m_setTriangles[0], first);
    EXPECT_EQ(o->m_setTriangles[1], second);
    const MeshEdge* const shared = TriangleMesh::FindEdge(o, mesh.FindVertex(kX));
    EXPECT_EQ(shared, TriangleMesh::FindEdge(mesh.FindVertex(kX), o));
    ASSERT_EQ(shared->m_setTriangles.size(), 2U);
    EXPECT_EQ(shared->m_setTriangles[1], second);
}

TEST(TriangleMesh, WhatIsNotThereIsNotFound)
{
    TriangleMesh mesh;
    EXPECT_EQ(mesh.FindVertex(kO), nullptr);
    mesh.AddTriangle(kO, kX, kY);
    mesh.AddTriangle(kO, kX, kZ);
    EXPECT_EQ(mesh.FindVertex({ 2, 0, 0 }), nullptr);
    EXPECT_EQ(TriangleMesh::FindEdge(mesh.FindVertex(kY), mesh.FindVertex(kZ)), nullptr);
}

TEST(TriangleMesh, TheFirstTriangleSetsTheBoxAndOthersWidenIt)
{
    TriangleMesh mesh;
    mesh.AddTriangle({ 1, 5, 2 }, { 3, 4, 2 }, { 2, 6, 2 });
    EXPECT_TRUE(mesh.m_bBoxValid);
    EXPECT_EQ(mesh.m_Box.m_vMin[0], 1.0) << "an unset box must not count";
    EXPECT_EQ(mesh.m_Box.m_vMin[1], 4.0);
    EXPECT_EQ(mesh.m_Box.m_vMax[1], 6.0);
    EXPECT_EQ(mesh.m_Box.m_vMin[2], 2.0);
    mesh.AddTriangle({ 1, 5, 2 }, { 3, 4, 2 }, { 7, 5, -1 });
    EXPECT_EQ(mesh.m_Box.m_vMax[0], 7.0);
    EXPECT_EQ(mesh.m_Box.m_vMin[2], -1.0);
    EXPECT_EQ(mesh.m_Box.m_vMin[0], 1.0);
}

TEST(TriangleMesh, AnExistingTriangleWidensTheBoxToo)
{
    TriangleMesh mesh;
    const MeshTriangle* const triangle = mesh.AddTriangle(kO, kX, kY);
    mesh.m_Box = { { 0.5, 0.5, 0 }, { 0.5, 0.5, 0 } };
    EXPECT_EQ(mesh.AddTriangle(kO, kX, kY), triangle);
    EXPECT_EQ(mesh.m_Box.m_vMin[0], 0.0);
    EXPECT_EQ(mesh.m_Box.m_vMax[1], 1.0);
    mesh.m_Box = { { -9, -9, -9 }, { 9, 9, 9 } };
    mesh.m_bBoxValid = false;
    EXPECT_EQ(mesh.AddTriangle(kO, kX, kY), triangle);
    EXPECT_TRUE(mesh.m_bBoxValid);
    EXPECT_EQ(mesh.m_Box.m_vMax[0], 1.0);
}

TEST(TriangleMesh, AnEmptyOneIsManifold) { EXPECT_TRUE(TriangleMesh().IsManifold()); }

TEST(TriangleMesh, ASingleTriangleIsManifold)
{
    TriangleMesh mesh;
    mesh.AddTriangle(kO, kX, kY);
    EXPECT_TRUE(mesh.IsManifold());
}

TEST(TriangleMesh, AClosedTetrahedronIsManifold)
{
    TriangleMesh mesh;
    add_tetrahedron(mesh, kO, kX, kY, kZ);
    EXPECT_EQ(counts_of(mesh), (Counts { 4, 6, 4 }));
    EXPECT_TRUE(mesh.IsManifold());
}

TEST(TriangleMesh, ATetrahedronWithoutOneTriangleIsManifold)
{
    TriangleMesh mesh;
    mesh.AddTriangle(kO, kX, kZ);
    mesh.AddTriangle(kX, kY, kZ);
    mesh.AddTriangle(kY, kO, kZ);
    EXPECT_TRUE(mesh.IsManifold());
}

TEST(TriangleMesh, TwoTetrahedraThatShareOnlyAVertexAreManifold)
{
    TriangleMesh mesh;
    add_tetrahedron(mesh, kO, kX, kY, kZ);
    add_tetrahedron(mesh, kO, { -1, 0, 0 }, { 0, -1, 0 }, { 0, 0, -1 });
    EXPECT_EQ(counts_of(mesh), (Counts { 7, 12, 8 }));
    EXPECT_TRUE(mesh.IsManifold());
}

TEST(TriangleMesh, AnEdgeWithThreeTrianglesIsNotManifold)
{
    TriangleMesh mesh;
    mesh.AddTriangle(kO, kX, kY);
    mesh.AddTriangle(kO, kX, kZ);
    EXPECT_TRUE(mesh.IsManifold());
    mesh.AddTriangle(kO, kX, { 0, -1, 0 });
    EXPECT_FALSE(mesh.IsManifold());
}

TEST(TriangleMesh, TwoTrianglesThatShareOnlyAVertexAreNotManifold)
{
    TriangleMesh mesh;
    mesh.AddTriangle(kO, kX, kY);
    mesh.AddTriangle(kO, { -1, 0, 0 }, { 0, -1, 0 });
    EXPECT_FALSE(mesh.IsManifold()) << "four edges at the rim meet in the origin";
}

TEST(TriangleMesh, PointsThatAreNoNumbersAreNeverShared)
{
    const double nan = std::numeric_limits<double>::quiet_NaN();
    TriangleMesh mesh;
    const MeshTriangle* const first = mesh.AddTriangle({ nan, 0, 0 }, kX, kY);
    const MeshTriangle* const second = mesh.AddTriangle({ nan, 0, 0 }, kX, kY);
    EXPECT_NE(first, second);
    EXPECT_EQ(counts_of(mesh), (Counts { 4, 5, 2 }));
    EXPECT_EQ(mesh.TrianglesInMapOrder().size(), 2U);
}

TEST(TriangleMesh, AFanOfThousandsAroundOneVertexIsHeld)
{
    TriangleMesh mesh;
    constexpr int kRim = 4000;
    const auto rim = [](int i) { return Position { 1.0, i * 1.0, 0 }; };
    for (int i = 0; i < kRim; ++i)
        mesh.AddTriangle(kO, rim(i), rim(i + 1));
    EXPECT_EQ(counts_of(mesh), (Counts { kRim + 2, 2 * kRim + 1, kRim }));
    EXPECT_EQ(mesh.FindVertex(kO)->m_setTriangles.size(), std::uint32_t { kRim });
    EXPECT_TRUE(mesh.IsManifold());
    EXPECT_EQ(mesh.AddTriangle(rim(7), rim(8), kO), mesh.Triangles()[7]);
}

} // namespace
