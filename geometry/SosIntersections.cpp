// SPDX-License-Identifier: Apache-2.0
#include "geometry/ExactPredicates.h"

namespace Tavro {

namespace {

using Vec2 = Vector<double, 2>;
using Vec3 = Vector<double, 3>;

Vec3 Lift(const Vec2& p, double z) { return { p[0], p[1], z }; }

} // namespace

bool sos_line_tri_intersection_exists(
    const Vec3& l0, const Vec3& l1, const Vec3& t0, const Vec3& t1, const Vec3& t2)
{
    const bool first = sos_tetrahedron_volume_sign(l1, t0, t1, l0);
    return sos_tetrahedron_volume_sign(l1, t1, t2, l0) == first
        && sos_tetrahedron_volume_sign(l1, t2, t0, l0) == first;
}

bool sos_edge_plane_intersection_exists(
    const Vec3& e0, const Vec3& e1, const Vec3& t0, const Vec3& t1, const Vec3& t2)
{
    return sos_tetrahedron_volume_sign(t0, t1, t2, e0)
        != sos_tetrahedron_volume_sign(t0, t1, t2, e1);
}

bool sos_edge_tri_intersection_exists(
    const Vec3& e0, const Vec3& e1, const Vec3& t0, const Vec3& t1, const Vec3& t2)
{
    return sos_edge_plane_intersection_exists(e0, e1, t0, t1, t2)
        && sos_line_tri_intersection_exists(e0, e1, t0, t1, t2);
}

bool sos_tri_tri_intersection_exists(
    const Vec3& a0, const Vec3& a1, const Vec3& a2, const Vec3& b0, const Vec3& b1, const Vec3& b2)
{
    return sos_edge_tri_intersection_exists(a0, a1, b0, b1, b2)
        || sos_edge_tri_intersection_exists(a1, a2, b0, b1, b2)
        || sos_edge_tri_intersection_exists(a2, a0, b0, b1, b2)
        || sos_edge_tri_intersection_exists(b0, b1, a0, a1, a2)
        || sos_edge_tri_intersection_exists(b1, b2, a0, a1, a2)
        || sos_edge_tri_intersection_exists(b2, b0, a0, a1, a2);
}

// The point becomes a line across the plane of the triangle.
bool sos_point_tri_intersection_exists(
    const Vec2& p, const Vec2& t0, const Vec2& t1, const Vec2& t2)
{
    return sos_line_tri_intersection_exists(
        Lift(p, 1.0), Lift(p, -1.0), Lift(t0, 0.0), Lift(t1, 0.0), Lift(t2, 0.0));
}

// Each edge in turn stays in the plane, while the ends of the other become lines across it.
bool sos_edge_edge_intersection_exists(const Vec2& a, const Vec2& b, const Vec2& c, const Vec2& d)
{
    const auto separates = [](const Vec2& e0, const Vec2& e1, const Vec2& p, const Vec2& q) {
        const Vec3 flat0 = Lift(e0, 0.0);
        const Vec3 flat1 = Lift(e1, 0.0);
        return sos_tetrahedron_volume_sign(Lift(p, 1.0), Lift(p, -1.0), flat0, flat1)
            != sos_tetrahedron_volume_sign(Lift(q, 1.0), Lift(q, -1.0), flat0, flat1);
    };
    return separates(a, b, c, d) && separates(c, d, a, b);
}

} // namespace Tavro
