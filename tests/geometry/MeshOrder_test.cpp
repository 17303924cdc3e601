// SPDX-License-Identifier: Apache-2.0
#include "geometry/TriangleMesh.h"

#include <gtest/gtest.h>

#include <array>
#include <limits>
#include <map>
#include <random>
#include <set>

namespace {

using Tavro::MeshEdge;
using Tavro::MeshTriangle;
using Tavro::MeshVertex;
using Tavro::TriangleMesh;
using Position = Tavro::Vector<double, 3>;
using Key = std::array<double, 3>; // compares by x, then y, then z

Key key_of(const MeshVertex* vertex)
{
    return { vertex->m_vPosition[0], vertex->m_vPosition[1], vertex->m_vPosition[2] };
}

Position position_of(const Key& key) { return { key[0], key[1], key[2] }; }

TEST(MeshOrder, VerticesComeByPosition)
{
    TriangleMesh mesh;
    mesh.AddTriangle({ 2, 0, 0 }, { 1, 5, 0 }, { 1, 4, 9 });
    mesh.AddTriangle({ 1, 4, 8 }, { 2, 0, 0 }, { 1, 5, 0 });
    std::vector<Key> found;
    for (const MeshVertex* vertex : mesh.VerticesInMapOrder())
        found.push_back(key_of(vertex));
    EXPECT_EQ(found, (std::vector<Key> { { 1, 4, 8 }, { 1, 4, 9 }, { 1, 5, 0 }, { 2, 0, 0 } }));
}

TEST(MeshOrder, EdgesComeByTheirFirstEndThenTheirSecond)
{
    TriangleMesh mesh;
    mesh.AddTriangle({ 3, 0, 0 }, { 2, 0, 0 }, { 1, 0, 1 });
    mesh.AddTriangle({ 0, 0, 0 }, { 3, 0, 0 }, { 1, 0, 1 });
    std::vector<std::pair<double, double>> found; // the ends' x, which tell the vertices
    for (const MeshEdge* edge : mesh.EdgesInMapOrder())
        found.emplace_back(edge->m_pVertex0->m_vPosition[0], edge->m_pVertex1->m_vPosition[0]);
    EXPECT_EQ(found,
        (std::vector<std::pair<double, double>> {
            { 0, 1 }, { 0, 3 }, { 1, 2 }, { 1, 3 }, { 2, 3 } }));
}

TEST(MeshOrder, TrianglesComeByTheirThreeVerticesInOrder)
{
    TriangleMesh mesh;
    const Position p[] { { 0, 0, 0 }, { 1, 0, 1 }, { 2, 0, 0 }, { 3, 0, 1 } };
    MeshTriangle* const t123 = mesh.AddTriangle(p[1], p[2], p[3]);
    MeshTriangle* const t031 = mesh.AddTriangle(p[1], p[0], p[3]);
    MeshTriangle* const t021 = mesh.AddTriangle(p[2], p[1], p[0]);
    MeshTriangle* const t012 = mesh.AddTriangle(p[0], p[1], p[2]);
    MeshTriangle* const t013 = mesh.AddTriangle(p[0], p[1], p[3]);
    EXPECT_EQ(
        mesh.TrianglesInMapOrder(), (std::vector<MeshTriangle*> { t012, t013, t021, t031, t123 }));
}

TEST(MeshOrder, AnEmptyMeshHasEmptyLists)
{
    const TriangleMesh mesh;
    EXPECT_TRUE(mesh.VerticesInMapOrder().empty());
    EXPECT_TRUE(mesh.EdgesInMapOrder().empty());
    EXPECT_TRUE(mesh.TrianglesInMapOrder().empty());
}

TEST(MeshOrder, ANaNComesAfterAllNumbersAndThenAgeDecides)
{
    const double nan = std::numeric_limits<double>::quiet_NaN();
    TriangleMesh mesh;
    mesh.AddTriangle({ nan, 0, 0 }, { 5, nan, 0 }, { 5, 1, 0 });
    mesh.AddTriangle({ nan, 0, 0 }, { -1, 0, 0 }, { nan, -1, 0 });
    const auto made = mesh.Vertices();
    // -1; 5 with y of 1 before 5 with y of NaN; NaN with y of -1; then the two equal ones by age.
    EXPECT_EQ(mesh.VerticesInMapOrder(),
        (std::vector<MeshVertex*> { made[4], made[2], made[1], made[5], made[0], made[3] }));
}

/// The mesh by ordered maps and sets alone: slow and plain, to hold the real one against.
struct PlainMesh {
    using Triple = std::array<Key, 3>;

    void add(Triple t)
    {
        if (t[0] == t[1] || t[1] == t[2] || t[2] == t[0])
            return;
        auto* const first = std::min_element(t.begin(), t.end());
        std::rotate(t.begin(), first, t.end());
        triangles.insert(t);
        for (std::size_t i = 0; i < 3; ++i) {
            const Key& p = t[i];
            const Key& q = t[(i + 1) % 3];
            edges[{ std::min(p, q), std::max(p, q) }].insert(t);
            vertices[p].insert(t);
        }
    }
    [[nodiscard]] bool manifold() const
    {
        std::map<Key, int> rim;
        for (const auto& [ends, users] : edges) {
            if (users.size() > 2)
                return false;
            rim[ends.first] += users.size() != 2;
            rim[ends.second] += users.size() != 2;
        }
        return std::all_of(rim.begin(), rim.end(),
            [](const auto& entry) { return entry.second == 0 || entry.second == 2; });
    }

    std::map<Key, std::set<Triple>> vertices;
    std::map<std::pair<Key, Key>, std::set<Triple>> edges;
    std::set<Triple> triangles;
};

PlainMesh::Triple triple_of(const MeshTriangle* t)
{
    return { key_of(t->m_apVertices[0]), key_of(t->m_apVertices[1]), key_of(t->m_apVertices[2]) };
}

template <typename Elements>
std::set<PlainMesh::Triple> triples_of(const Elements& triangles)
{
    std::set<PlainMesh::Triple> triples;
    for (const MeshTriangle* triangle : triangles)
        triples.insert(triple_of(triangle));
    return triples;
}

void expect_same(const TriangleMesh& mesh, const PlainMesh& plain)
{
    EXPECT_EQ(mesh.IsManifold(), plain.manifold());

    const auto vertices = mesh.VerticesInMapOrder();
    ASSERT_EQ(vertices.size(), plain.vertices.size());
    auto vertex = vertices.begin();
    for (const auto& [position, users] : plain.vertices) {
        ASSERT_EQ(key_of(*vertex), position);
        ASSERT_EQ(triples_of((*vertex)->m_setTriangles), users);
        ++vertex;
    }
    const auto edges = mesh.EdgesInMapOrder();
    ASSERT_EQ(edges.size(), plain.edges.size());
    auto edge = edges.begin();
    for (const auto& [ends, users] : plain.edges) {
        ASSERT_EQ(std::pair(key_of((*edge)->m_pVertex0), key_of((*edge)->m_pVertex1)), ends);
        ASSERT_EQ(triples_of((*edge)->m_setTriangles), users);
        ASSERT_TRUE((*edge)->m_pVertex0->m_setEdges.contains(*edge));
        ASSERT_TRUE((*edge)->m_pVertex1->m_setEdges.contains(*edge));
        ++edge;
    }
    const auto triangles = mesh.TrianglesInMapOrder();
    ASSERT_EQ(triangles.size(), plain.triangles.size());
    auto triangle = triangles.begin();
    for (const auto& triple : plain.triangles)
        ASSERT_EQ(triple_of(*triangle++), triple);
}

TEST(MeshOrder, RandomSoupsAreWhatOrderedMapsMakeOfThem)
{
    int manifolds = 0;
    int duplicates = 0;
    std::mt19937 random(7); // NOLINT(cert-msc32-c,cert-msc51-cpp): the same every time
    for (int round = 0; round < 400; ++round) {
        // From a triangle or two, often manifold, to soups in which most triangles exist already.
        std::uniform_int_distribution<int> place(0, 1 + round % 3);
        TriangleMesh mesh;
        PlainMesh plain;
        int added = 0;
        for (int i = 0; i < 1 + round % 80; ++i) {
            PlainMesh::Triple t {};
            for (Key& point : t) {
                for (double& coordinate : point)
                    coordinate = place(random) - 1.0;
            }
            added += mesh.AddTriangle(position_of(t[0]), position_of(t[1]), position_of(t[2]))
                != nullptr;
            plain.add(t);
        }
        expect_same(mesh, plain);
        manifolds += plain.manifold();
        duplicates += added - static_cast<int>(plain.triangles.size());
    }
    EXPECT_GT(manifolds, 3) << "the corpus no longer has manifold meshes";
    EXPECT_GT(duplicates, 300) << "the corpus no longer has triangles that come again";
}

} // namespace
