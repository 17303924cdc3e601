// SPDX-License-Identifier: Apache-2.0
#include "geometry/ExactPredicates.h"
#include "geometry/PredicateCounters.h"

#include "tests/geometry/ExactOracle.h"
#include "tests/geometry/PlainReference.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <bit>
#include <cmath>
#include <functional>
#include <random>

namespace {

using Oracle = Testing::ExactOracle<Testing::Whole>;
using Point = Tavro::Vector<double, 3>;
using Tavro::PredicateCounters;
using Tavro::sos_tetrahedron_volume_sign;
using Points = std::array<Point, 4>;

bool product(const Points& p) { return sos_tetrahedron_volume_sign(p[0], p[1], p[2], p[3]); }

bool oracle(const Points& p) { return Oracle::orientation(p[0], p[1], p[2], p[3]); }

bool plain(const Points& p) { return Testing::Plain::orientation(p[0], p[1], p[2], p[3]); }

bool same(const Point& p, const Point& q) { return p[0] == q[0] && p[1] == q[1] && p[2] == q[2]; }

bool differ(const Points& p)
{
    for (std::size_t i = 0; i < 4; ++i) {
        for (std::size_t j = i + 1; j < 4; ++j) {
            if (same(p[i], p[j])) {
                return false;
            }
        }
    }
    return true;
}

class OrientationRandom : public testing::Test {
protected:
    OrientationRandom() { PredicateCounters::OfThisThread() = {}; }

    [[nodiscard]] static const PredicateCounters& counters()
    {
        return PredicateCounters::OfThisThread();
    }

    double whole(int bits)
    {
        const auto span = std::uint64_t { 1 } << bits;
        return static_cast<double>(m_random() % (2 * span - 1)) - static_cast<double>(span - 1);
    }
    Point point(int bits) { return { whole(bits), whole(bits), whole(bits) }; }

    // In every order the oracle's answer; among points that differ, its parity.
    static void expect_all_orders(const Points& points, double scale)
    {
        std::array<std::size_t, 4> order { 0, 1, 2, 3 };
        const bool first = product(points);
        const bool areDifferent = differ(points);
        do {
            Points p;
            bool odd = false;
            for (std::size_t i = 0; i < 4; ++i) {
                p[i] = points[order[i]];
                for (std::size_t j = i + 1; j < 4; ++j) {
                    odd = odd != (order[i] > order[j]);
                }
            }
            const bool expected = oracle(p);
            if (areDifferent) {
                ASSERT_EQ(expected, first != odd);
            }
            for (Point& q : p) {
                q = { q[0] * scale, q[1] * scale, q[2] * scale };
            }
            ASSERT_EQ(product(p), expected);
        } while (std::next_permutation(order.begin(), order.end()));
    }

    std::mt19937_64 m_random { 11 }; // NOLINT(cert-msc51-cpp): the same corpus in every run
};

TEST_F(OrientationRandom, PointsOfTwentyFourBits)
{
    for (int i = 0; i < 500000; ++i) {
        const Points p { point(23), point(23), point(23), point(23) };
        ASSERT_EQ(product(p), oracle(p));
    }
    EXPECT_GT(counters().filter, 499900U) << "the filter lets too much through";
}

TEST_F(OrientationRandom, SmallGridsInEveryOrder)
{
    for (int i = 0; i < 60000; ++i) {
        const double scale = std::ldexp(1.0, static_cast<int>(m_random() % 200) - 100);
        const int bits = 1 + static_cast<int>(m_random() % 2);
        expect_all_orders({ point(bits), point(bits), point(bits), point(bits) }, scale);
        if (HasFatalFailure()) {
            return;
        }
    }
    for (std::size_t step = 1; step <= 14; ++step) {
        EXPECT_EQ(counters().byTerm[step - 1] > 0, step != 9) << "step " << step;
    }
    EXPECT_GT(counters().perturbed, 100000U);
}

TEST_F(OrientationRandom, IdenticalPointsInEveryOrder)
{
    for (int i = 0; i < 5000; ++i) {
        const Point p = point(20);
        const Point q = m_random() % 2 == 0 ? point(20) : Point { p[0], p[1], whole(20) };
        const Point r = m_random() % 2 == 0 ? point(20) : Point { p[0], q[1], p[2] };
        for (const Points& points : { Points { p, p, q, r }, Points { p, p, q, q },
                 Points { p, p, p, q }, Points { p, p, p, p } }) {
            expect_all_orders(points, 1.0);
            if (HasFatalFailure()) {
                return;
            }
        }
    }
    EXPECT_EQ(counters().exact + counters().filter, 0U);
    EXPECT_GT(counters().byTerm[13], 5000U);
}

TEST_F(OrientationRandom, PlanesLinesAndTheirNeighbours)
{
    for (int i = 0; i < 20000; ++i) {
        const Point a = point(18);
        const Point u = point(16);
        const Point v = m_random() % 4 == 0 ? u : point(16);
        const auto at = [&](double s, double t) {
            return Point { a[0] + s * u[0] + t * v[0], a[1] + s * u[1] + t * v[1],
                a[2] + s * u[2] + t * v[2] };
        };
        Points p { a, at(whole(4), whole(4)), at(whole(4), whole(4)), at(whole(4), whole(4)) };
        expect_all_orders(p, 0x1p-24);
        // Off the plane by the smallest step.
        p[m_random() % 4][m_random() % 3] += whole(1);
        expect_all_orders(p, 1.0);
        if (HasFatalFailure()) {
            return;
        }
    }
    EXPECT_GT(counters().perturbed, 100000U);
}

TEST_F(OrientationRandom, VolumesOfOneAmongTwentyFourBits)
{
    // Shears keep the minor of a and b in xy at one while both grow; with c = a + b + (0, 0, w) the
    // determinant is w.
    for (int i = 0; i < 20000; ++i) {
        Point a { 1, 0, whole(21) };
        Point b { 0, 1, whole(21) };
        while (std::fabs(a[0]) + std::fabs(a[1]) + std::fabs(b[0]) + std::fabs(b[1]) < 0x1p21) {
            Point& grows = m_random() % 2 == 0 ? a : b;
            const Point& by = &grows == &a ? b : a;
            const auto times = static_cast<double>(1 + m_random() % 3);
            grows[0] += times * by[0];
            grows[1] += times * by[1];
        }
        const Point c { a[0] + b[0], a[1] + b[1], a[2] + b[2] + whole(1) };
        expect_all_orders({ a, b, c, Point { 0, 0, 0 } }, 1.0);
        if (HasFatalFailure()) {
            return;
        }
    }
    EXPECT_GT(counters().exact, 10000U);
}

/// Whatever the input, the short cuts change nothing.
class OrientationBits : public OrientationRandom {
protected:
    void expect_the_plain_answer(int rounds, const std::function<Points()>& make)
    {
        for (int i = 0; i < rounds; ++i) {
            Points p = make();
            for (int k = 0; k < 4; ++k) {
                ASSERT_EQ(product(p), plain(p));
                std::swap(p[m_random() % 4], p[m_random() % 4]);
            }
        }
    }
    double unit() { return static_cast<double>(m_random() >> 11) * 0x1p-53; }
    Point full() { return { unit(), unit(), unit() }; }
};

TEST_F(OrientationBits, FullMantissasInAPlaneAcrossAnAxis)
{
    expect_the_plain_answer(20000, [&] {
        Points p { full(), full(), full(), full() };
        const std::size_t axis = m_random() % 3;
        for (Point& q : p) {
            q[axis] = p[0][axis];
        }
        return p;
    });
    EXPECT_EQ(counters().perturbed, 80000U);
}

TEST_F(OrientationBits, FullMantissasInASlantedPlane)
{
    expect_the_plain_answer(20000, [&] {
        Points p { full(), full(), full(), full() };
        for (Point& q : p) {
            q[2] = q[0];
        }
        return p;
    });
    EXPECT_GT(counters().perturbed, 1000U);
}

TEST_F(OrientationBits, FullMantissasOfManyScalesInEachSlantedPlane)
{
    // Differences of distant scales have an error, which short cuts for one component do not see.
    const auto scaled = [&] { return std::ldexp(1.0 + unit(), -static_cast<int>(m_random() % 5)); };
    expect_the_plain_answer(20000, [&] {
        Points p {};
        for (Point& q : p) {
            q = { scaled(), scaled(), scaled() };
        }
        const std::size_t first = m_random() % 3;
        const std::size_t second = (first + 1 + m_random() % 2) % 3;
        const double sign = m_random() % 4 == 0 ? -1.0 : 1.0;
        for (Point& q : p) {
            q[second] = sign * q[first];
        }
        return p;
    });
    EXPECT_GT(counters().perturbed, 70000U);
}

TEST_F(OrientationBits, SlantedPlanesThatRepeatCoordinates)
{
    // Points beside and above each other make products equal, and zero, that are not so otherwise.
    expect_the_plain_answer(20000, [&] {
        Points p { full(), full(), full(), full() };
        const std::size_t first = m_random() % 3;
        const std::size_t second = (first + 1 + m_random() % 2) % 3;
        for (Point& q : p) {
            q[m_random() % 3] = p[m_random() % 4][m_random() % 3];
            q[second] = q[first];
        }
        if (m_random() % 2 == 0) {
            double& off = p[m_random() % 4][m_random() % 3];
            off = std::nextafter(off, m_random() % 2 == 0 ? 2.0 : -2.0);
        }
        return p;
    });
    EXPECT_GT(counters().exact, 1000U);
    EXPECT_GT(counters().perturbed, 1000U);
}

TEST_F(OrientationBits, FullMantissasNearAPlaneOrALine)
{
    expect_the_plain_answer(20000, [&] {
        const Point a = full();
        const Point b = full();
        const Point c = full();
        const double s = unit();
        const double t = m_random() % 2 == 0 ? unit() : 0.0;
        Point d {};
        for (std::size_t i = 0; i < 3; ++i) {
            d[i] = a[i] + s * (b[i] - a[i]) + t * (c[i] - a[i]);
        }
        return Points { a, b, m_random() % 2 == 0 ? c : d, d };
    });
    EXPECT_GT(counters().exact, 1000U);
    EXPECT_GT(counters().perturbed, 1000U);
}

TEST_F(OrientationBits, TurnsOfFullMantissasNearZero)
{
    // In a plane across z, with a, b, c and d nearly on a line: the first term is small itself.
    expect_the_plain_answer(20000, [&] {
        const double dx = unit();
        const double dy = unit();
        Points p {};
        for (Point& q : p) {
            const double s = m_random() % 2 == 0 ? unit() : static_cast<double>(m_random() % 4);
            q = { s * dx, s * dy, 0.25 };
            q[m_random() % 2] += m_random() % 3 == 0 ? 0x1p-53 : 0.0;
        }
        return p;
    });
    EXPECT_EQ(counters().perturbed, 80000U);
    EXPECT_GT(counters().byTerm[3], 100U);
}

TEST_F(OrientationBits, CoordinatesOfAFewBitsAtDistantScales)
{
    expect_the_plain_answer(100000, [&] {
        Points p {};
        for (Point& q : p) {
            for (std::size_t i = 0; i < 3; ++i) {
                q[i] = std::ldexp(whole(1 + static_cast<int>(m_random() % 28)),
                    static_cast<int>(m_random() % 4) * 20);
            }
            if (m_random() % 2 == 0) {
                q[2] = q[0] + q[1];
            }
        }
        return p;
    });
    EXPECT_GT(counters().exact, 1000U);
    EXPECT_GT(counters().perturbed, 1000U);
}

TEST_F(OrientationBits, TheEndsOfTheRange)
{
    // Underflow, overflow, the limits of the short cuts, and what is no number.
    expect_the_plain_answer(30000, [&] {
        static constexpr int kExponents[] { -1074, -1000, -540, -500, -360, -340, -300, 0, 290, 299,
            300, 330, 500, 970, 995 };
        const int exponent = kExponents[m_random() % std::size(kExponents)];
        const int bits = m_random() % 2 == 0 ? 2 : 28;
        Points p {};
        for (Point& q : p) {
            q = point(bits);
            if (m_random() % 2 == 0) {
                q[2] = q[0];
            }
            for (std::size_t i = 0; i < 3; ++i) {
                q[i] = std::ldexp(q[i], exponent);
                if (m_random() % 64 == 0) {
                    q[i] = std::bit_cast<double>(m_random());
                }
                if (m_random() % 256 == 0) {
                    q[i] = m_random() % 2 == 0 ? INFINITY : NAN;
                }
            }
        }
        return p;
    });
    EXPECT_GT(counters().byTerm[13], 100U);
    EXPECT_GT(counters().exact, 100U);
}

} // namespace
