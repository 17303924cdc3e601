// SPDX-License-Identifier: Apache-2.0
#include "geometry/ExactPredicates.h"
#include "geometry/PredicateDetail.h"

namespace Tavro {

namespace {

using Vec2 = Vector<double, 2>;
using Vec3 = Vector<double, 3>;

template <std::size_t N>
bool IsInBox(
    const Vector<double, N>& point, const Vector<double, N>& lo, const Vector<double, N>& hi)
{
    for (std::size_t i = 0; i < N; ++i) {
        if (!(lo[i] <= point[i] && point[i] <= hi[i])) {
            return false;
        }
    }
    return true;
}

template <std::size_t N>
bool Overlap(const BoundingBox<double, N>& a, const BoundingBox<double, N>& b)
{
    for (std::size_t i = 0; i < N; ++i) {
        if (!(a.m_vMin[i] <= b.m_vMax[i] && b.m_vMin[i] <= a.m_vMax[i])) {
            return false;
        }
    }
    return true;
}

// Whether pq crosses the face of the box on which the coordinate `axis` is `plane`. An end on the
// plane does not cross it: such contact is left to the vertices and the diagonals.
bool CrossesFace(
    const Vec3& p, const Vec3& q, std::size_t axis, double plane, const Vec3& lo, const Vec3& hi)
{
    const bool crosses
        = (p[axis] < plane && plane < q[axis]) || (q[axis] < plane && plane < p[axis]);
    if (!crosses) {
        return false;
    }
    const double t = (plane - p[axis]) / (q[axis] - p[axis]);
    for (std::size_t i = 0; i < 3; ++i) {
        const double x = p[i] + t * (q[i] - p[i]);
        if (i != axis && !(lo[i] <= x && x <= hi[i])) {
            return false;
        }
    }
    return true;
}

bool CrossesAFace(const Vec3& p, const Vec3& q, const Vec3& lo, const Vec3& hi)
{
    for (std::size_t axis = 0; axis < 3; ++axis) {
        if (CrossesFace(p, q, axis, lo[axis], lo, hi)
            || CrossesFace(p, q, axis, hi[axis], lo, hi)) {
            return true;
        }
    }
    return false;
}

} // namespace

namespace PredicateDetail {

bool edge_boxedge_intersection_exists(const Vec2& p, const Vec2& q, const Vec2& r, const Vec2& s)
{
    if (r[0] != s[0] && r[1] != s[1]) {
        return false;
    }
    const std::size_t fixed = r[0] == s[0] ? 0 : 1;
    const std::size_t along = 1 - fixed;
    const double v = r[fixed];
    if ((p[fixed] < v && q[fixed] < v) || (p[fixed] > v && q[fixed] > v)) {
        return false;
    }
    const double least = std::min(r[along], s[along]);
    const double most = std::max(r[along], s[along]);
    if ((p[along] < least && q[along] < least) || (p[along] > most && q[along] > most)) {
        return false;
    }
    if (p[fixed] == q[fixed]) {
        return p[fixed] == v;
    }
    double x = 0.0;
    if (p[fixed] == v) {
        x = p[along];
    } else if (q[fixed] == v) {
        x = q[along];
    } else {
        const double t = (v - p[fixed]) / (q[fixed] - p[fixed]);
        x = p[along] + t * (q[along] - p[along]);
    }
    return least <= x && x <= most;
}

} // namespace PredicateDetail

bool vert_box_intersection_exists(const Vec2& point, const Vec2& lo, const Vec2& hi)
{
    return IsInBox(point, lo, hi);
}

bool vert_box_intersection_exists(const Vec3& point, const Vec3& lo, const Vec3& hi)
{
    return IsInBox(point, lo, hi);
}

bool tri_box_intersection_exists(
    const Vec3& t0, const Vec3& t1, const Vec3& t2, const Vec3& lo, const Vec3& hi)
{
    if (IsInBox(t0, lo, hi) || IsInBox(t1, lo, hi) || IsInBox(t2, lo, hi)) {
        return true;
    }
    for (std::size_t i = 0; i < 3; ++i) {
        if ((t0[i] < lo[i] && t1[i] < lo[i] && t2[i] < lo[i])
            || (t0[i] > hi[i] && t1[i] > hi[i] && t2[i] > hi[i])) {
            return false;
        }
    }
    if (CrossesAFace(t0, t1, lo, hi) || CrossesAFace(t1, t2, lo, hi)
        || CrossesAFace(t2, t0, lo, hi)) {
        return true;
    }
    // What is left is a triangle that cuts the box without an edge in it, and so cuts a diagonal.
    const auto cuts = [&](const Vec3& p, const Vec3& q) {
        return sos_edge_tri_intersection_exists(p, q, t0, t1, t2);
    };
    return cuts(lo, hi) || cuts({ lo[0], hi[1], lo[2] }, { hi[0], lo[1], hi[2] })
        || cuts({ hi[0], hi[1], lo[2] }, { lo[0], lo[1], hi[2] })
        || cuts({ hi[0], lo[1], lo[2] }, { lo[0], hi[1], hi[2] });
}

bool edge_box_intersection_exists(const Vec2& p, const Vec2& q, const Vec2& lo, const Vec2& hi)
{
    for (std::size_t i = 0; i < 2; ++i) {
        if ((p[i] > hi[i] && q[i] > hi[i]) || (p[i] < lo[i] && q[i] < lo[i])) {
            return false;
        }
    }
    if (IsInBox(p, lo, hi) || IsInBox(q, lo, hi)) {
        return true;
    }
    const Vec2 lowerRight { hi[0], lo[1] };
    const Vec2 upperLeft { lo[0], hi[1] };
    using PredicateDetail::edge_boxedge_intersection_exists;
    return edge_boxedge_intersection_exists(p, q, lo, lowerRight)
        || edge_boxedge_intersection_exists(p, q, lowerRight, hi)
        || edge_boxedge_intersection_exists(p, q, hi, upperLeft)
        || edge_boxedge_intersection_exists(p, q, upperLeft, lo);
}

bool IntersectionExists(const Edge<double, 2>& edge, const BoundingBox<double, 2>& box)
{
    return edge_box_intersection_exists(edge[0], edge[1], box.m_vMin, box.m_vMax);
}

bool IntersectionExists(const BoundingBox<double, 2>& box, const Edge<double, 2>& edge)
{
    return IntersectionExists(edge, box);
}

bool IntersectionExists(const Facet<double, 3, 3>& facet, const BoundingBox<double, 3>& box)
{
    return tri_box_intersection_exists(facet[0], facet[1], facet[2], box.m_vMin, box.m_vMax);
}

bool IntersectionExists(const BoundingBox<double, 3>& box, const Facet<double, 3, 3>& facet)
{
    return IntersectionExists(facet, box);
}

bool IntersectionExists(const BoundingBox<double, 2>& a, const BoundingBox<double, 2>& b)
{
    return Overlap(a, b);
}

bool IntersectionExists(const BoundingBox<double, 3>& a, const BoundingBox<double, 3>& b)
{
    return Overlap(a, b);
}

bool IntersectionExists(const Vec2& point, const BoundingBox<double, 2>& box)
{
    return IsInBox(point, box.m_vMin, box.m_vMax);
}

bool IntersectionExists(const Vec3& point, const BoundingBox<double, 3>& box)
{
    return IsInBox(point, box.m_vMin, box.m_vMax);
}

} // namespace Tavro
