// SPDX-License-Identifier: Apache-2.0
#include "geometry/ExactPredicates.h"
#include "geometry/PredicateCounters.h"

#include "tests/geometry/IntersectionOracle.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <random>

namespace {

using namespace Tavro;
using namespace Testing::Intersections;

constexpr int kRounds = 20000;

double cross(const Vec2& a, const Vec2& b, const Vec2& c)
{
    return (b[0] - a[0]) * (c[1] - a[1]) - (b[1] - a[1]) * (c[0] - a[0]);
}

Vec3 minus(const Vec3& p, const Vec3& q) { return { p[0] - q[0], p[1] - q[1], p[2] - q[2] }; }

Vec3 cross(const Vec3& p, const Vec3& q)
{
    return { p[1] * q[2] - p[2] * q[1], p[2] * q[0] - p[0] * q[2], p[0] * q[1] - p[1] * q[0] };
}

double dot(const Vec3& p, const Vec3& q) { return p[0] * q[0] + p[1] * q[1] + p[2] * q[2]; }

enum class Contact { apart, touching, overlapping };

/// Separating axes of convex bodies in small whole coordinates, where doubles are exact: the axes
/// must be those of the two kinds of bodies; zero vectors are skipped.
template <typename Axes, typename A, typename B>
Contact contact(const Axes& axes, const A& a, const B& b)
{
    Contact result = Contact::overlapping;
    for (const Vec3& axis : axes) {
        if (dot(axis, axis) == 0.0) {
            continue;
        }
        const auto below
            = [&](const Vec3& p, const Vec3& q) { return dot(p, axis) < dot(q, axis); };
        const auto [a0, a1] = std::minmax_element(a.begin(), a.end(), below);
        const auto [b0, b1] = std::minmax_element(b.begin(), b.end(), below);
        if (below(*a1, *b0) || below(*b1, *a0)) {
            return Contact::apart;
        }
        if (!below(*b0, *a1) || !below(*a0, *b1)) {
            result = Contact::touching;
        }
    }
    return result;
}

class IntersectionsRandom : public testing::Test {
protected:
    IntersectionsRandom() { PredicateCounters::OfThisThread() = {}; }

    double whole(int limit)
    {
        const auto span = static_cast<unsigned int>(2 * limit + 1);
        return static_cast<double>(m_random() % span) - limit;
    }
    // Small grids make coincidences, large ones make none.
    int limit() { return m_random() % 4 == 0 ? 1 << 20 : 1 + static_cast<int>(m_random() % 3); }
    Vec3 point3(int limit) { return { whole(limit), whole(limit), whole(limit) }; }
    Vec2 point2(int limit) { return { whole(limit), whole(limit) }; }

    static void expect_all_stages()
    {
        const PredicateCounters& counters = PredicateCounters::OfThisThread();
        EXPECT_GT(counters.filter, 1000U);
        EXPECT_GT(counters.perturbed, 1000U);
    }

    std::mt19937_64 m_random { 31 }; // NOLINT(cert-msc51-cpp): the same corpus in every run
};

TEST_F(IntersectionsRandom, LinesEdgesPlanesAndTriangles)
{
    int crossings = 0;
    for (int i = 0; i < 2 * kRounds; ++i) {
        const int n = limit();
        const Vec3 p = point3(n);
        const Vec3 q = point3(n);
        const Vec3 a = point3(n);
        const Vec3 b = point3(n);
        const Vec3 c = point3(n);
        ASSERT_EQ(sos_line_tri_intersection_exists(p, q, a, b, c), line_tri(p, q, a, b, c));
        ASSERT_EQ(sos_edge_plane_intersection_exists(p, q, a, b, c), edge_plane(p, q, a, b, c));
        ASSERT_EQ(sos_edge_tri_intersection_exists(p, q, a, b, c), edge_tri(p, q, a, b, c));
        crossings += edge_tri(p, q, a, b, c) ? 1 : 0;
    }
    EXPECT_GT(crossings, kRounds / 20);
    expect_all_stages();
}

TEST_F(IntersectionsRandom, TrianglesAndTriangles)
{
    int hits = 0;
    for (int i = 0; i < kRounds; ++i) {
        const int n = limit();
        std::array<Vec3, 3> a { point3(n), point3(n), point3(n) };
        std::array<Vec3, 3> b { point3(n), point3(n), point3(n) };
        const bool expected = tri_tri(a, b);
        ASSERT_EQ(sos_tri_tri_intersection_exists(a[0], a[1], a[2], b[0], b[1], b[2]), expected);
        hits += expected ? 1 : 0;
    }
    EXPECT_GT(hits, kRounds / 20);
    EXPECT_LT(hits, kRounds);
    expect_all_stages();
}

TEST_F(IntersectionsRandom, PointsAndTrianglesOfThePlane)
{
    int inside = 0;
    for (int i = 0; i < 2 * kRounds; ++i) {
        const int n = limit();
        const Vec2 p = point2(n);
        const Vec2 a = point2(n);
        const Vec2 b = point2(n);
        const Vec2 c = point2(n);
        const bool found = sos_point_tri_intersection_exists(p, a, b, c);
        ASSERT_EQ(found, point_tri(p, a, b, c));
        // Off the boundary it is what it says.
        const double ab = cross(a, b, p);
        const double bc = cross(b, c, p);
        const double ca = cross(c, a, p);
        if (ab * bc * ca != 0.0) {
            ASSERT_EQ(found, (ab > 0) == (bc > 0) && (bc > 0) == (ca > 0));
            inside += found ? 1 : 0;
        }
    }
    EXPECT_GT(inside, kRounds / 20);
    expect_all_stages();
}

TEST_F(IntersectionsRandom, EdgesOfThePlane)
{
    int crossings = 0;
    for (int i = 0; i < 2 * kRounds; ++i) {
        const int n = limit();
        const Vec2 a = point2(n);
        const Vec2 b = point2(n);
        const Vec2 c = point2(n);
        const Vec2 d = point2(n);
        const bool found = sos_edge_edge_intersection_exists(a, b, c, d);
        ASSERT_EQ(found, edge_edge(a, b, c, d));
        const double abc = cross(a, b, c);
        const double abd = cross(a, b, d);
        const double cda = cross(c, d, a);
        const double cdb = cross(c, d, b);
        if (abc * abd * cda * cdb != 0.0) {
            ASSERT_EQ(found, (abc > 0) != (abd > 0) && (cda > 0) != (cdb > 0));
            crossings += found ? 1 : 0;
        }
    }
    EXPECT_GT(crossings, kRounds / 20);
    expect_all_stages();
}

TEST_F(IntersectionsRandom, TrianglesAndBoxes)
{
    std::array<int, 3> kinds {};
    std::uint64_t byDiagonals = 0;
    const PredicateCounters& counters = PredicateCounters::OfThisThread();
    for (int i = 0; i < 5 * kRounds; ++i) {
        const int n = 3 + static_cast<int>(m_random() % 30);
        const std::array<Vec3, 3> t { point3(n), point3(n), point3(n) };
        const Vec3 lo = point3(2);
        const Vec3 hi { lo[0] + 1 + std::fabs(whole(2)), lo[1] + 1 + std::fabs(whole(2)),
            lo[2] + 1 + std::fabs(whole(2)) };
        const std::array<Vec3, 3> edges { minus(t[1], t[0]), minus(t[2], t[1]), minus(t[0], t[2]) };
        const Vec3 normal = cross(edges[0], edges[1]);
        if (dot(normal, normal) == 0.0) {
            continue;
        }
        std::array<Vec3, 13> axes { normal, Vec3 { 1, 0, 0 }, Vec3 { 0, 1, 0 }, Vec3 { 0, 0, 1 } };
        for (std::size_t k = 0; k < 9; ++k) {
            axes[4 + k] = cross(edges[k / 3], axes[1 + k % 3]);
        }
        std::array<Vec3, 8> corners {};
        for (unsigned int k = 0; k < 8; ++k) {
            for (std::size_t j = 0; j < 3; ++j) {
                corners[k][j] = (k >> j & 1U) != 0 ? hi[j] : lo[j];
            }
        }
        const std::uint64_t before = counters.filter + counters.exact + counters.perturbed;
        const bool found = tri_box_intersection_exists(t[0], t[1], t[2], lo, hi);
        const bool usedDiagonals = counters.filter + counters.exact + counters.perturbed != before;
        byDiagonals += found && usedDiagonals ? 1 : 0;
        const Contact kind = contact(axes, t, corners);
        ++kinds[static_cast<std::size_t>(kind)];
        if (kind != Contact::touching) {
            ASSERT_EQ(found, kind == Contact::overlapping);
        }
    }
    for (const int count : kinds) {
        EXPECT_GT(count, kRounds / 20);
    }
    EXPECT_GT(byDiagonals, 100U);
}

TEST_F(IntersectionsRandom, EdgesAndBoxes)
{
    std::array<int, 3> kinds {};
    for (int i = 0; i < 5 * kRounds; ++i) {
        const Vec2 p = point2(8);
        const Vec2 q = point2(8);
        const Vec2 lo = point2(3);
        const Vec2 hi { lo[0] + 1 + std::fabs(whole(2)), lo[1] + 1 + std::fabs(whole(2)) };
        const std::array<Vec3, 2> segment { lift(p, 0), lift(q, 0) };
        const std::array<Vec3, 4> corners { lift(lo, 0), lift({ hi[0], lo[1] }, 0), lift(hi, 0),
            lift({ lo[0], hi[1] }, 0) };
        const std::array<Vec3, 3> axes { Vec3 { 1, 0, 0 }, Vec3 { 0, 1, 0 },
            Vec3 { p[1] - q[1], q[0] - p[0], 0 } };
        const Contact kind = contact(axes, segment, corners);
        ++kinds[static_cast<std::size_t>(kind)];
        // A corner that is only touched may be lost to the rounding of the crossing point.
        if (kind != Contact::touching) {
            ASSERT_EQ(edge_box_intersection_exists(p, q, lo, hi), kind == Contact::overlapping);
        }
    }
    for (const int count : kinds) {
        EXPECT_GT(count, kRounds / 20);
    }
}

} // namespace
