// SPDX-License-Identifier: Apache-2.0
#include "geometry/ExactPredicates.h"

#include <cmath>

namespace Tavro {

namespace {

using Vec2 = Vector<double, 2>;
using Vec3 = Vector<double, 3>;

Vec3 Difference(const Vec3& p, const Vec3& q) { return { p[0] - q[0], p[1] - q[1], p[2] - q[2] }; }

double Dot(const Vec3& p, const Vec3& q) { return p[0] * q[0] + p[1] * q[1] + p[2] * q[2]; }

Vec3 Cross(const Vec3& p, const Vec3& q)
{
    return { p[1] * q[2] - p[2] * q[1], p[2] * q[0] - p[0] * q[2], p[0] * q[1] - p[1] * q[0] };
}

Vec3 UnitNormal(const Vec3& a, const Vec3& b, const Vec3& c)
{
    const Vec3 normal = Cross(Difference(b, a), Difference(c, a));
    const double length = std::sqrt(Dot(normal, normal));
    return { normal[0] / length, normal[1] / length, normal[2] / length };
}

} // namespace

double fast_line_plane_intersect(
    const Vec3& p, const Vec3& q, const Vec3& a, const Vec3& b, const Vec3& c)
{
    const Vec3 normal = UnitNormal(a, b, c);
    const double rise = Dot(normal, Difference(q, p));
    return rise == 0.0 ? kNone<double> : Dot(normal, Difference(a, p)) / rise;
}

bool fast_line_tri_intersect(
    const Vec3& p, const Vec3& q, const Vec3& a, const Vec3& b, const Vec3& c, double& t)
{
    const Vec3 normal = UnitNormal(a, b, c);
    const Vec3 along = Difference(q, p);
    const double rise = Dot(normal, along);
    if (rise == 0.0) {
        return false;
    }
    const double crossing = Dot(normal, Difference(a, p)) / rise;
    const Vec3 x { p[0] + crossing * along[0], p[1] + crossing * along[1],
        p[2] + crossing * along[2] };
    // A triangle without area has a normal of NaN, which is not at least 0.
    const auto isInside = [&](const Vec3& from, const Vec3& to) {
        return Dot(Cross(Difference(from, x), Difference(to, x)), normal) >= 0.0;
    };
    if (!(isInside(a, b) && isInside(b, c) && isInside(c, a))) {
        return false;
    }
    t = crossing;
    return true;
}

bool fast_line_line_intersect(const Vec2& a, const Vec2& b, const Vec2& c, const Vec2& d, Vec2& out)
{
    const double den = (a[0] - b[0]) * (c[1] - d[1]) - (a[1] - b[1]) * (c[0] - d[0]);
    if (den == 0.0) {
        return false;
    }
    const double u = b[1] * a[0] - b[0] * a[1];
    const double w = d[1] * c[0] - d[0] * c[1];
    // Whole at once, for the result may be one of the arguments.
    out = { ((c[0] - d[0]) * u - (a[0] - b[0]) * w) / den,
        (u * (c[1] - d[1]) - w * (a[1] - b[1])) / den };
    return true;
}

bool LineCartPlaneIntersection(
    unsigned int axis, double value, const Vec3& p, const Vec3& q, double& t)
{
    if (axis > 2) {
        return false;
    }
    const double pa = p[axis];
    const double qa = q[axis];
    if (pa == qa || (value < pa && value < qa) || (value > pa && value > qa)) {
        return false;
    }
    if (value == pa) {
        t = 0.0;
    } else if (value == qa) {
        t = 1.0;
    } else {
        t = std::clamp((value - pa) / (qa - pa), 0.0, 1.0);
    }
    return true;
}

bool CircleCircleIntersection(
    const Vec2& c1, const Vec2& c2, double r1, double r2, Vec2& out1, Vec2& out2)
{
    const double dx = c1[0] - c2[0];
    const double dy = c1[1] - c2[1];
    const double d = std::sqrt(dx * dx + dy * dy);
    const double heron = (r2 + r1 + d) * ((r1 + d) - r2) * ((d - r1) + r2) * ((r1 - d) + r2);
    if (heron < 0.0) {
        return false;
    }
    const double root = heron == 0.0 ? 0.0 : std::sqrt(heron);
    const double k = root * 0.25 + root * 0.25;
    const double square = d * d;
    const double difference = r1 * r1 - r2 * r2;
    const double mx = (c2[0] + c1[0]) * 0.5 - difference * dx / (2.0 * square);
    const double my = (c2[1] + c1[1]) * 0.5 - difference * dy / (2.0 * square);
    const double ox = dy * k / square;
    const double oy = dx * k / square;
    out1 = { mx + ox, my - oy };
    out2 = { mx - ox, my + oy };
    return true;
}

} // namespace Tavro
