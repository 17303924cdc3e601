// SPDX-License-Identifier: Apache-2.0
#include "geometry/ExactPredicates.h"
#include "geometry/PredicateCounters.h"

#include "tests/geometry/IntersectionOracle.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <functional>
#include <random>

// In every order of their points the tests answer what the oracle does; if no two points are the
// same, the order does not matter, since a perturbation moves points and not their names.
namespace {

using namespace Tavro;
using namespace Testing::Intersections;

/// Calls `look` with the points of each order of their numbers that keeps what lies below `first`
/// and from `last` on in its place.
template <std::size_t N>
void in_each_order(const std::array<Vec3, N>& points, std::size_t first, std::size_t last,
    const std::function<void(const std::array<Vec3, N>&)>& look)
{
    std::array<std::size_t, N> order {};
    for (std::size_t i = 0; i < N; ++i) {
        order[i] = i;
    }
    const auto begin = order.begin() + static_cast<std::ptrdiff_t>(first);
    const auto end = order.begin() + static_cast<std::ptrdiff_t>(last);
    do {
        std::array<Vec3, N> p {};
        for (std::size_t i = 0; i < N; ++i) {
            p[i] = points[order[i]];
        }
        look(p);
    } while (!testing::Test::HasFatalFailure() && std::next_permutation(begin, end));
}

template <std::size_t N>
bool all_differ(const std::array<Vec3, N>& points)
{
    for (std::size_t i = 0; i < N; ++i) {
        for (std::size_t k = i + 1; k < N; ++k) {
            if (std::equal(points[i].m_data, points[i].m_data + 3, points[k].m_data)) {
                return false;
            }
        }
    }
    return true;
}

class IntersectionsOrders : public testing::Test {
protected:
    IntersectionsOrders() { PredicateCounters::OfThisThread() = {}; }

    /// Points of a grid so small that most share planes, lines or places; some are copies.
    template <std::size_t N>
    std::array<Vec3, N> points(bool flat)
    {
        const unsigned int span = 2 + static_cast<unsigned int>(m_random() % 4);
        std::array<Vec3, N> points {};
        for (Vec3& p : points) {
            for (std::size_t axis = 0; axis < (flat ? 2 : 3); ++axis) {
                p[axis] = static_cast<double>(m_random() % span);
            }
        }
        if (m_random() % 4 == 0) {
            points[m_random() % N] = points[m_random() % N];
        }
        return points;
    }
    /// Whether both ways a test can go were seen, for points that differ and for others.
    class Seen {
    public:
        void Add(bool different, bool answer) { ++m_counts[different ? 1 : 0][answer ? 1 : 0]; }
        void ExpectAll() const
        {
            for (const auto& counts : m_counts) {
                EXPECT_GT(counts[0], 100);
                EXPECT_GT(counts[1], 100);
            }
        }

    private:
        int m_counts[2][2] {};
    };

    std::mt19937_64 m_random { 41 }; // NOLINT(cert-msc51-cpp): the same corpus in every run
};

Vec2 flat(const Vec3& p) { return { p[0], p[1] }; }

TEST_F(IntersectionsOrders, AnEdgeOrLineAndATriangle)
{
    Seen edges;
    Seen lines;
    for (int i = 0; i < 4000; ++i) {
        const auto given = points<5>(false);
        const bool different = all_differ(given);
        const auto& [e0, e1, a, b, c] = given;
        const bool edge = sos_edge_tri_intersection_exists(e0, e1, a, b, c);
        const bool line = sos_line_tri_intersection_exists(e0, e1, a, b, c);
        const bool plane = sos_edge_plane_intersection_exists(e0, e1, a, b, c);
        in_each_order<5>(given, 2, 5, [&](const std::array<Vec3, 5>& triangle) {
            in_each_order<5>(triangle, 0, 2, [&](const std::array<Vec3, 5>& p) {
                const bool through = edge_tri(p[0], p[1], p[2], p[3], p[4]);
                const bool along = line_tri(p[0], p[1], p[2], p[3], p[4]);
                const bool across = edge_plane(p[0], p[1], p[2], p[3], p[4]);
                ASSERT_EQ(sos_edge_tri_intersection_exists(p[0], p[1], p[2], p[3], p[4]), through);
                ASSERT_EQ(sos_line_tri_intersection_exists(p[0], p[1], p[2], p[3], p[4]), along);
                ASSERT_EQ(sos_edge_plane_intersection_exists(p[0], p[1], p[2], p[3], p[4]), across);
                if (different) {
                    ASSERT_EQ(through, edge);
                    ASSERT_EQ(along, line);
                    ASSERT_EQ(across, plane);
                }
            });
        });
        if (HasFatalFailure()) {
            return;
        }
        edges.Add(different, edge);
        lines.Add(different, line);
    }
    edges.ExpectAll();
    lines.ExpectAll();
    EXPECT_GT(PredicateCounters::OfThisThread().perturbed, 100000U);
}

TEST_F(IntersectionsOrders, TwoTriangles)
{
    Seen seen;
    for (int i = 0; i < 1000; ++i) {
        const auto given = points<6>(false);
        const bool different = all_differ(given);
        const bool first = sos_tri_tri_intersection_exists(
            given[0], given[1], given[2], given[3], given[4], given[5]);
        in_each_order<6>(given, 0, 3, [&](const std::array<Vec3, 6>& half) {
            in_each_order<6>(half, 3, 6, [&](const std::array<Vec3, 6>& p) {
                const bool expected = tri_tri({ p[0], p[1], p[2] }, { p[3], p[4], p[5] });
                ASSERT_EQ(
                    sos_tri_tri_intersection_exists(p[0], p[1], p[2], p[3], p[4], p[5]), expected);
                ASSERT_EQ(
                    sos_tri_tri_intersection_exists(p[3], p[4], p[5], p[0], p[1], p[2]), expected);
                if (different) {
                    ASSERT_EQ(expected, first);
                }
            });
        });
        if (HasFatalFailure()) {
            return;
        }
        seen.Add(different, first);
    }
    seen.ExpectAll();
}

TEST_F(IntersectionsOrders, APointAndATriangleOfThePlane)
{
    Seen seen;
    for (int i = 0; i < 6000; ++i) {
        const auto given = points<4>(true);
        const bool different = all_differ(given);
        const bool first = sos_point_tri_intersection_exists(
            flat(given[0]), flat(given[1]), flat(given[2]), flat(given[3]));
        in_each_order<4>(given, 1, 4, [&](const std::array<Vec3, 4>& p) {
            const bool found
                = sos_point_tri_intersection_exists(flat(p[0]), flat(p[1]), flat(p[2]), flat(p[3]));
            ASSERT_EQ(found, point_tri(flat(p[0]), flat(p[1]), flat(p[2]), flat(p[3])));
            if (different) {
                ASSERT_EQ(found, first);
            }
        });
        if (HasFatalFailure()) {
            return;
        }
        seen.Add(different, first);
    }
    seen.ExpectAll();
}

TEST_F(IntersectionsOrders, TwoEdgesOfThePlane)
{
    Seen seen;
    for (int i = 0; i < 6000; ++i) {
        const auto given = points<4>(true);
        const bool different = all_differ(given);
        const bool first = sos_edge_edge_intersection_exists(
            flat(given[0]), flat(given[1]), flat(given[2]), flat(given[3]));
        in_each_order<4>(given, 0, 2, [&](const std::array<Vec3, 4>& half) {
            in_each_order<4>(half, 2, 4, [&](const std::array<Vec3, 4>& p) {
                const bool expected = edge_edge(flat(p[0]), flat(p[1]), flat(p[2]), flat(p[3]));
                ASSERT_EQ(sos_edge_edge_intersection_exists(
                              flat(p[0]), flat(p[1]), flat(p[2]), flat(p[3])),
                    expected);
                ASSERT_EQ(sos_edge_edge_intersection_exists(
                              flat(p[2]), flat(p[3]), flat(p[0]), flat(p[1])),
                    expected);
                if (different) {
                    ASSERT_EQ(expected, first);
                }
            });
        });
        if (HasFatalFailure()) {
            return;
        }
        seen.Add(different, first);
    }
    seen.ExpectAll();
}

} // namespace
