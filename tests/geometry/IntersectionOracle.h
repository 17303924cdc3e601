// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "tests/geometry/ExactOracle.h"

#include <array>

/// What the exact intersection tests have to answer, from the oracle's orientation alone.
/// Coordinates are whole numbers of up to 24 bits.
namespace Testing::Intersections {

using Vec2 = Tavro::Vector<double, 2>;
using Vec3 = Tavro::Vector<double, 3>;

inline bool s(const Vec3& p, const Vec3& q, const Vec3& r, const Vec3& w)
{
    return ExactOracle<Whole>::orientation(p, q, r, w);
}

inline bool line_tri(const Vec3& l0, const Vec3& l1, const Vec3& t0, const Vec3& t1, const Vec3& t2)
{
    const int positive = static_cast<int>(s(l1, t0, t1, l0)) + static_cast<int>(s(l1, t1, t2, l0))
        + static_cast<int>(s(l1, t2, t0, l0));
    return positive == 0 || positive == 3;
}

inline bool edge_plane(
    const Vec3& e0, const Vec3& e1, const Vec3& t0, const Vec3& t1, const Vec3& t2)
{
    return s(t0, t1, t2, e0) != s(t0, t1, t2, e1);
}

inline bool edge_tri(const Vec3& e0, const Vec3& e1, const Vec3& t0, const Vec3& t1, const Vec3& t2)
{
    return edge_plane(e0, e1, t0, t1, t2) && line_tri(e0, e1, t0, t1, t2);
}

inline bool tri_tri(const std::array<Vec3, 3>& a, const std::array<Vec3, 3>& b)
{
    for (std::size_t k = 0; k < 3; ++k) {
        if (edge_tri(a[k], a[(k + 1) % 3], b[0], b[1], b[2])
            || edge_tri(b[k], b[(k + 1) % 3], a[0], a[1], a[2])) {
            return true;
        }
    }
    return false;
}

inline Vec3 lift(const Vec2& p, double z) { return { p[0], p[1], z }; }

inline bool point_tri(const Vec2& p, const Vec2& t0, const Vec2& t1, const Vec2& t2)
{
    return line_tri(lift(p, 1), lift(p, -1), lift(t0, 0), lift(t1, 0), lift(t2, 0));
}

inline bool edge_edge(const Vec2& a, const Vec2& b, const Vec2& c, const Vec2& d)
{
    const auto separates = [](const Vec2& e0, const Vec2& e1, const Vec2& p, const Vec2& q) {
        return s(lift(p, 1), lift(p, -1), lift(e0, 0), lift(e1, 0))
            != s(lift(q, 1), lift(q, -1), lift(e0, 0), lift(e1, 0));
    };
    return separates(a, b, c, d) && separates(c, d, a, b);
}

} // namespace Testing::Intersections
