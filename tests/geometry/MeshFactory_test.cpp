// SPDX-License-Identifier: Apache-2.0
#include "geometry/CurvatureMesh.h"

#include <gtest/gtest.h>

#include <new>
#include <string>
#include <type_traits>

namespace {

using Tavro::CurvatureEdge;
using Tavro::CurvatureMesh;
using Tavro::CurvatureTriangle;
using Tavro::MeshEdge;
using Tavro::MeshTriangle;
using Tavro::MeshVertex;
using Tavro::SideState;
using Tavro::TriangleMesh;
using Tavro::WettedSurfaceMesh;
using Tavro::WettedTriangle;
using Tavro::WindDirection;
using Position = Tavro::Vector<double, 3>;

const Position kO { 0, 0, 0 };
const Position kX { 1, 0, 0 };
const Position kY { 0, 1, 0 };

static_assert(std::is_base_of_v<TriangleMesh, WettedSurfaceMesh>);
static_assert(std::is_base_of_v<WettedSurfaceMesh, CurvatureMesh>);
static_assert(!std::has_virtual_destructor_v<TriangleMesh>);
static_assert(!std::has_virtual_destructor_v<WettedSurfaceMesh>);
static_assert(!std::has_virtual_destructor_v<CurvatureMesh>);
static_assert(sizeof(CurvatureTriangle) == sizeof(WettedTriangle));

/// Makes and destroys one of each kind through the base, as the mesh does.
void use_factory(TriangleMesh& mesh, void (*lookAt)(MeshVertex&, MeshEdge&, MeshTriangle&))
{
    MeshVertex* const o = mesh.CreateVertex(kO);
    MeshVertex* const x = mesh.CreateVertex(kX);
    MeshVertex* const y = mesh.CreateVertex(kY);
    MeshEdge* const ox = mesh.CreateEdge(o, x);
    MeshEdge* const xy = mesh.CreateEdge(x, y);
    MeshEdge* const yo = mesh.CreateEdge(y, o);
    MeshTriangle* const triangle = mesh.CreateTriangle(o, x, y, ox, xy, yo);
    lookAt(*x, *yo, *triangle);
    mesh.DestroyTriangle(triangle);
    for (MeshEdge* edge : { ox, xy, yo })
        mesh.DestroyEdge(edge);
    for (MeshVertex* vertex : { o, x, y })
        mesh.DestroyVertex(vertex);
}

void expect_plain_elements(MeshVertex& vertex, MeshEdge& edge, MeshTriangle& triangle)
{
    EXPECT_EQ(vertex.m_vPosition[0], 1.0);
    EXPECT_TRUE(vertex.m_setEdges.empty());
    EXPECT_TRUE(vertex.m_setTriangles.empty());
    EXPECT_EQ(edge.m_pVertex0->m_vPosition[1], 0.0);
    EXPECT_EQ(edge.m_pVertex1->m_vPosition[1], 1.0);
    EXPECT_TRUE(edge.m_setTriangles.empty());
    EXPECT_EQ(triangle.m_apVertices[1], &vertex);
    EXPECT_EQ(triangle.m_apEdges[2], &edge);
}

void expect_wetted_elements(MeshVertex& vertex, MeshEdge& edge, MeshTriangle& triangle)
{
    expect_plain_elements(vertex, edge, triangle);
    const auto& wetted = static_cast<WettedTriangle&>(triangle);
    EXPECT_EQ(wetted.m_ucFlags, 0);
    EXPECT_EQ(wetted.m_iSurface, -1);
}

void expect_curvature_elements(MeshVertex& vertex, MeshEdge& edge, MeshTriangle& triangle)
{
    expect_wetted_elements(vertex, edge, triangle);
    EXPECT_EQ(static_cast<CurvatureEdge&>(edge).m_dCurvature, 0.0);
}

TEST(MeshFactory, TriangleMeshMakesPlainElements)
{
    TriangleMesh mesh;
    use_factory(mesh, expect_plain_elements);
}

TEST(MeshFactory, WettedSurfaceMeshMakesWettedTriangles)
{
    WettedSurfaceMesh mesh;
    use_factory(mesh, expect_wetted_elements);
}

TEST(MeshFactory, CurvatureMeshMakesEdgesWithCurvatureAndWettedTriangles)
{
    CurvatureMesh mesh;
    use_factory(mesh, expect_curvature_elements);
}

TEST(MeshFactory, AddTriangleUsesTheFactoryOfTheDerivedMesh)
{
    CurvatureMesh mesh;
    mesh.AddTriangle(kO, kX, kY);
    for (MeshEdge* edge : mesh.Edges())
        static_cast<CurvatureEdge*>(edge)->m_dCurvature = 2.5; // the sanitizer sees a smaller one
    auto* const triangle = static_cast<CurvatureTriangle*>(mesh.Triangles()[0]);
    triangle->m_iSurface = 7;
    EXPECT_EQ(triangle->m_iSurface, 7);
}

TEST(MeshFactory, AddingToAWettedMeshUnmarksItAndWorksAsInItsBase)
{
    WettedSurfaceMesh mesh;
    EXPECT_FALSE(mesh.m_bSurfaceMarked);
    const MeshTriangle* const triangle = mesh.AddTriangle(kO, kX, kY);
    mesh.m_bSurfaceMarked = true;
    EXPECT_EQ(mesh.AddTriangle(kX, kY, kO), triangle);
    EXPECT_FALSE(mesh.m_bSurfaceMarked);
    mesh.m_bSurfaceMarked = true;
    EXPECT_EQ(mesh.AddTriangle(kX, kX, kO), nullptr);
    EXPECT_FALSE(mesh.m_bSurfaceMarked);
}

TEST(MeshFactory, AddingToACurvatureMeshUnmarksIt)
{
    CurvatureMesh mesh;
    mesh.m_bSurfaceMarked = true;
    EXPECT_NE(mesh.AddTriangle(kO, kX, kY), nullptr);
    EXPECT_FALSE(mesh.m_bSurfaceMarked);
}

#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wnon-virtual-dtor" // as for the mesh itself

/// Writes down what its factory is asked for; its elements are its own.
class TellingMesh : public TriangleMesh { // NOLINT(cppcoreguidelines-virtual-class-destructor)
public:
    explicit TellingMesh(std::string& calls)
        : m_calls(calls)
    {
    }
    ~TellingMesh() { DestroyElements(); }
    TellingMesh(const TellingMesh&) = delete;
    TellingMesh& operator=(const TellingMesh&) = delete;
    TellingMesh(TellingMesh&&) = delete;
    TellingMesh& operator=(TellingMesh&&) = delete;

    MeshVertex* CreateVertex(const Position& position) override
    {
        m_calls += "vertex " + name(position) + "; ";
        return new MeshVertex(position);
    }
    MeshEdge* CreateEdge(MeshVertex* v0, MeshVertex* v1) override
    {
        auto* const edge = new MeshEdge(v0, v1);
        m_calls += "edge " + name(edge->m_pVertex0->m_vPosition)
            + name(edge->m_pVertex1->m_vPosition) + "; ";
        return edge;
    }
    MeshTriangle* CreateTriangle(MeshVertex* v0, MeshVertex* v1, MeshVertex* v2, MeshEdge* e0,
        MeshEdge* e1, MeshEdge* e2) override
    {
        m_calls += "triangle " + name(v0->m_vPosition) + name(v1->m_vPosition)
            + name(v2->m_vPosition) + "; ";
        return new MeshTriangle(v0, v1, v2, e0, e1, e2);
    }
    void DestroyVertex(MeshVertex* vertex) override
    {
        m_calls += "-v";
        delete vertex;
    }
    void DestroyEdge(MeshEdge* edge) override
    {
        m_calls += "-e";
        delete edge;
    }
    void DestroyTriangle(MeshTriangle* triangle) override
    {
        m_calls += "-t";
        delete triangle;
    }

private:
    static std::string name(const Position& position)
    {
        return position[0] != 0.0 ? "x" : position[1] != 0.0 ? "y" : "o";
    }

    std::string& m_calls;
};

class MeshWithoutEdges : public TriangleMesh { // NOLINT(cppcoreguidelines-virtual-class-destructor)
public:
    [[nodiscard]] MeshEdge* CreateEdge(MeshVertex* /*v0*/, MeshVertex* /*v1*/) override
    {
        throw std::bad_alloc();
    }
};

#pragma GCC diagnostic pop

TEST(MeshFactory, VerticesEdgesAndTriangleAreAskedForInOrderAndOnce)
{
    std::string calls;
    {
        TellingMesh mesh(calls);
        mesh.AddTriangle(kX, kY, kO);
        EXPECT_EQ(calls, "vertex x; vertex y; vertex o; edge yx; edge oy; edge ox; triangle xyo; ");
        calls.clear();
        mesh.AddTriangle(kY, kO, kX);
        EXPECT_EQ(calls, "");
        mesh.AddTriangle(kX, kO, kY);
        EXPECT_EQ(calls, "triangle xoy; ");
        calls.clear();
    }
    EXPECT_EQ(calls, "-t-t-e-e-e-v-v-v") << "the mesh owns what its factory made";
}

TEST(MeshFactory, AVertexLeftWithoutTrianglesByAFailureMakesTheMeshNotManifold)
{
    MeshWithoutEdges mesh;
    EXPECT_THROW((void)mesh.AddTriangle(kX, kY, kO), std::bad_alloc);
    EXPECT_EQ(mesh.Vertices().size(), 3U);
    EXPECT_TRUE(mesh.Edges().empty());
    EXPECT_FALSE(mesh.IsManifold());
}

WettedTriangle triangle_with_flags(unsigned char flags)
{
    MeshVertex v[] { MeshVertex(kO), MeshVertex(kX), MeshVertex(kY) };
    WettedTriangle triangle(&v[0], &v[1], &v[2], nullptr, nullptr, nullptr);
    triangle.m_ucFlags = flags;
    return triangle;
}

TEST(WettedTriangle, TheLowestTwoBitsAreThePositiveSide)
{
    EXPECT_EQ(triangle_with_flags(0xFC).GetSideState(true), SideState::Unmarked);
    EXPECT_EQ(triangle_with_flags(0x01).GetSideState(true), SideState::Dry);
    EXPECT_EQ(triangle_with_flags(0x02).GetSideState(true), SideState::Wetted);
}

TEST(WettedTriangle, TheNextTwoBitsAreTheNegativeSide)
{
    EXPECT_EQ(triangle_with_flags(0xF3).GetSideState(false), SideState::Unmarked);
    EXPECT_EQ(triangle_with_flags(0x04).GetSideState(false), SideState::Dry);
    EXPECT_EQ(triangle_with_flags(0x08).GetSideState(false), SideState::Wetted);
}

TEST(WettedTriangle, BitsFourAndFiveAreTheWindDirection)
{
    EXPECT_EQ(triangle_with_flags(0xCF).GetWindDirection(), WindDirection::Unset);
    EXPECT_EQ(triangle_with_flags(0x10).GetWindDirection(), WindDirection::Stored);
    EXPECT_EQ(triangle_with_flags(0x20).GetWindDirection(), WindDirection::Reversed);
}

TEST(WettedTriangle, EveryWriteKeepsTheOtherBits)
{
    auto triangle = triangle_with_flags(0xFF);
    triangle.SetSideState(true, SideState::Dry);
    EXPECT_EQ(triangle.m_ucFlags, 0xFD);
    triangle.SetSideState(false, SideState::Wetted);
    EXPECT_EQ(triangle.m_ucFlags, 0xF9);
    triangle.SetWindDirection(WindDirection::Unset);
    EXPECT_EQ(triangle.m_ucFlags, 0xC9);
    triangle = triangle_with_flags(0x00);
    triangle.SetWindDirection(WindDirection::Reversed);
    triangle.SetSideState(true, SideState::Wetted);
    EXPECT_EQ(triangle.m_ucFlags, 0x22);
}

TEST(WettedTriangle, HasAWettedSideIfEitherIsWetted)
{
    EXPECT_FALSE(triangle_with_flags(0x00).HasWettedSide());
    EXPECT_FALSE(triangle_with_flags(0x05).HasWettedSide()); // dry, dry
    EXPECT_TRUE(triangle_with_flags(0x06).HasWettedSide()); // positive wetted
    EXPECT_TRUE(triangle_with_flags(0x09).HasWettedSide()); // negative wetted
    EXPECT_FALSE(triangle_with_flags(0x20).HasWettedSide()); // the wind is no side
}

TEST(WettedTriangle, SeparatesIfBothStatesAreSetAndDiffer)
{
    EXPECT_FALSE(triangle_with_flags(0x00).Separates());
    EXPECT_FALSE(triangle_with_flags(0x02).Separates());
    EXPECT_FALSE(triangle_with_flags(0x08).Separates());
    EXPECT_FALSE(triangle_with_flags(0x05).Separates());
    EXPECT_FALSE(triangle_with_flags(0x0A).Separates());
    EXPECT_TRUE(triangle_with_flags(0x06).Separates());
    EXPECT_TRUE(triangle_with_flags(0x09).Separates());
}

} // namespace
