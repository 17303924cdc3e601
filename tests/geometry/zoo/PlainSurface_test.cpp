// SPDX-License-Identifier: Apache-2.0
#include "tests/geometry/zoo/PlainSurface.h"

#include "geometry/SurfaceStages.h"
#include "geometry/TriangleCloud.h"
#include "geometry/VectorMath.h"
#include "tests/geometry/zoo/Zoo.h"

#include <gtest/gtest.h>

#include <cmath>
#include <map>
#include <random>
#include <string>
#include <utility>
#include <vector>

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

/// How many triangles have each pair of states.
using Seen = std::map<std::pair<int, int>, int>;

template <typename Skin>
void expect_plain_form(const Skin& skin, Seen& seen)
{
    Tavro::CurvatureMesh mesh;
    PlainSurface plain;
    for (const auto& facet : skin) {
        (void)mesh.AddTriangle(facet[0], facet[1], facet[2]); // degenerate ones may be among them
        plain.add(facet[0], facet[1], facet[2]);
    }
    mesh.SetConsistentWindDirections();
    mesh.CalculateEdgeCurvature();
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
            const auto& edge = plain.edges[static_cast<std::size_t>(p.edges[k])];
            ASSERT_TRUE(same(t.m_apVertices[k]->m_vPosition, vertex.at)) << i;
            ASSERT_TRUE(same(Tavro::TriangleCloud::GetVertexNormal(t.m_apVertices[k]),
                plain.normal(p.vertices[k])))
                << i;
            ASSERT_TRUE(same(static_cast<const Tavro::CurvatureEdge*>(t.m_apEdges[k])->m_dCurvature,
                edge.curvature))
                << i;
        }
        ++seen[{ p.positive, p.negative }];
    }
}

class PlainZoo : public testing::TestWithParam<ZooShape> { };

TEST_P(PlainZoo, MarksWindingCurvatureAndNormalsAreThoseOfThePlainForm)
{
    Tavro::TriangleCloud cloud;
    for (const Testing::Triangle& facet : GetParam().make())
        (void)cloud.AddTriangle(facet[0], facet[1], facet[2]); // degenerate ones may be among them
    Seen seen;
    expect_plain_form(Tavro::CutSkin(cloud.m_vecFacets, cloud.m_Box, 3), seen);
}

TEST(PlainSoups, MarksWindingCurvatureAndNormalsAreThoseOfThePlainForm)
{
    // Any three of a few points, so that edges have many triangles, with closed boxes among them;
    // on a grid, where angles are equal and planes are shared, and off it.
    std::mt19937_64 random(17);
    const auto draw = [&](std::uint64_t range) { return static_cast<double>(random() % range); };
    Seen seen;
    for (int round = 0; round < 600 && !testing::Test::HasFatalFailure(); ++round) {
        std::vector<Point> points(12);
        for (Point& p : points) {
            for (std::size_t axis = 0; axis < 3; ++axis)
                p[axis] = draw(4) + (round % 2 == 0 ? 0.0 : draw(1U << 20U) * 0x1p-22);
        }
        Testing::Facets soup;
        const std::uint64_t loose = random() % 3 == 0 ? 0 : random() % 30;
        for (std::uint64_t i = loose; i > 0; --i)
            soup.push_back(
                { { points[random() % 12], points[random() % 12], points[random() % 12] } });
        for (std::uint64_t i = random() % 4; i > 0; --i) {
            const Point low { draw(5) - 1, draw(5) - 1, draw(5) - 1 };
            const double size = 1 + draw(3);
            const auto body = Testing::box(low, { low[0] + size, low[1] + size, low[2] + size });
            soup = Testing::joined(
                std::move(soup), random() % 2 == 0 ? body : Testing::reversed(body));
        }
        expect_plain_form(soup, seen);
    }
    for (const auto& states :
        { std::pair(1, 1), std::pair(1, 2), std::pair(2, 1), std::pair(2, 2) })
        EXPECT_GT(seen[states], 100) << states.first << states.second;
}

INSTANTIATE_TEST_SUITE_P(, PlainZoo, testing::ValuesIn(Testing::zoo()),
    [](const auto& shape) { return std::string(shape.param.name); });

} // namespace
