// SPDX-License-Identifier: Apache-2.0
#include "tests/geometry/zoo/PlainSurface.h"

#include "geometry/SurfaceStages.h"
#include "geometry/TriangleCloud.h"
#include "geometry/VectorMath.h"
#include "tests/geometry/zoo/Zoo.h"

#include <gtest/gtest.h>

#include <cmath>
#include <string>

// What is made of the skin of a body, against the plain form of every step.
namespace {

using Testing::PlainSurface;
using Testing::Point;
using Testing::ZooShape;

bool same(double x, double y) { return x == y || (std::isnan(x) && std::isnan(y)); }

bool same(const Point& p, const Point& q)
{
    return same(p[0], q[0]) && same(p[1], q[1]) && same(p[2], q[2]);
}

class PlainZoo : public testing::TestWithParam<ZooShape> { };

TEST_P(PlainZoo, MarksWindingCurvatureAndNormalsAreThoseOfThePlainForm)
{
    Tavro::TriangleCloud cloud;
    for (const Testing::Triangle& facet : GetParam().make())
        (void)cloud.AddTriangle(facet[0], facet[1], facet[2]); // degenerate ones may be among them
    const auto skin = Tavro::CutSkin(cloud.m_vecFacets, cloud.m_Box, 3);
    Tavro::CurvatureMesh mesh;
    AddSkin(mesh, skin);
    mesh.SetConsistentWindDirections();
    mesh.CalculateEdgeCurvature();

    PlainSurface plain;
    for (const auto& facet : skin)
        plain.add(facet[0], facet[1], facet[2]);
    plain.mark();
    plain.wind();
    plain.curve();

    const auto found = mesh.WettedTrianglesInMapOrder();
    const auto expected = plain.in_order();
    ASSERT_EQ(found.size(), expected.size());
    for (std::size_t i = 0; i < found.size(); ++i) {
        const Tavro::WettedTriangle& t = *found[i];
        const PlainSurface::Triangle& p = plain.triangles[static_cast<std::size_t>(expected[i])];
        ASSERT_EQ(static_cast<int>(t.GetSideState(true)), p.positive) << i;
        ASSERT_EQ(static_cast<int>(t.GetSideState(false)), p.negative) << i;
        ASSERT_EQ(static_cast<int>(t.GetWindDirection()), p.wind) << i;
        ASSERT_EQ(t.m_iSurface, p.surface) << i;
        for (std::size_t k = 0; k < 3; ++k) {
            const auto& vertex = plain.vertices[static_cast<std::size_t>(p.vertices[k])];
            ASSERT_TRUE(same(t.m_apVertices[k]->m_vPosition, vertex.at)) << i;
            ASSERT_TRUE(same(Tavro::TriangleCloud::GetVertexNormal(t.m_apVertices[k]),
                plain.normal(p.vertices[k])))
                << i;
            ASSERT_TRUE(same(static_cast<const Tavro::CurvatureEdge*>(t.m_apEdges[k])->m_dCurvature,
                plain.edges[static_cast<std::size_t>(p.edges[k])].curvature))
                << i;
        }
    }
}

INSTANTIATE_TEST_SUITE_P(, PlainZoo, testing::ValuesIn(Testing::zoo()),
    [](const auto& shape) { return std::string(shape.param.name); });

} // namespace
