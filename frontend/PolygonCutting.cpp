// SPDX-License-Identifier: Apache-2.0
#include "frontend/PolygonCutting.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <numeric>

namespace Frontend {

namespace {

using Point = Tavro::Vector<double, 3>;
using Flat = Tavro::Vector<double, 2>;

/// Twice the area of the polygon as seen along each axis.
Point area_of(const std::vector<Point>& corners)
{
    Point area {};
    for (std::size_t i = 0; i < corners.size(); ++i) {
        const Point& p = corners[i];
        const Point& q = corners[(i + 1) % corners.size()];
        for (std::size_t axis = 0; axis < 3; ++axis) {
            const std::size_t a = (axis + 1) % 3;
            const std::size_t b = (axis + 2) % 3;
            area[axis] += (p[a] - q[a]) * (p[b] + q[b]);
        }
    }
    return area;
}

/// The corners as seen along the axis that shows the polygon largest, and turned so that it winds
/// to the left.
std::vector<Flat> flattened(const std::vector<Point>& corners)
{
    const Point area = area_of(corners);
    std::size_t axis = 0;
    for (std::size_t other = 1; other < 3; ++other)
        if (std::abs(area[other]) > std::abs(area[axis]))
            axis = other;
    const double turn = area[axis] < 0.0 ? -1.0 : 1.0;
    std::vector<Flat> flat;
    flat.reserve(corners.size());
    for (const Point& p : corners)
        flat.push_back({ turn * p[(axis + 1) % 3], p[(axis + 2) % 3] });
    return flat;
}

double turn_of(const Flat& a, const Flat& b, const Flat& c)
{
    return (b[0] - a[0]) * (c[1] - a[1]) - (b[1] - a[1]) * (c[0] - a[0]);
}

bool is_inside(const Flat& p, const Flat& a, const Flat& b, const Flat& c)
{
    return turn_of(a, b, p) >= 0.0 && turn_of(b, c, p) >= 0.0 && turn_of(c, a, p) >= 0.0;
}

bool same(const Flat& p, const Flat& q) { return p[0] == q[0] && p[1] == q[1]; }

/// Whether the triangle at place `i` of the corners that are left can be cut off.
bool is_ear(const std::vector<Flat>& flat, const std::vector<std::size_t>& left, std::size_t i)
{
    const Flat& a = flat[left[(i + left.size() - 1) % left.size()]];
    const Flat& b = flat[left[i]];
    const Flat& c = flat[left[(i + 1) % left.size()]];
    if (!(turn_of(a, b, c) > 0.0))
        return false;
    return std::none_of(left.begin(), left.end(), [&](std::size_t other) {
        const Flat& p = flat[other];
        return !same(p, a) && !same(p, b) && !same(p, c) && is_inside(p, a, b, c);
    });
}

} // namespace

void append_polygon(
    const std::vector<Point>& corners, std::vector<Tavro::Facet<double, 3, 3>>& facets)
{
    if (corners.size() < 3)
        return;
    const std::vector<Flat> flat = flattened(corners);
    std::vector<std::size_t> left(corners.size());
    std::iota(left.begin(), left.end(), std::size_t { 0 });
    while (left.size() > 3) {
        std::size_t ear = 1; // in a fan from the first corner, always the second; also if none is
        for (std::size_t i = 0; i < left.size(); ++i) {
            const std::size_t candidate = (i + 1) % left.size();
            if (is_ear(flat, left, candidate)) {
                ear = candidate;
                break;
            }
        }
        const std::size_t before = left[(ear + left.size() - 1) % left.size()];
        const std::size_t after = left[(ear + 1) % left.size()];
        facets.push_back({ corners[before], corners[left[ear]], corners[after] });
        left.erase(left.begin() + static_cast<std::ptrdiff_t>(ear));
    }
    facets.push_back({ corners[left[0]], corners[left[1]], corners[left[2]] });
}

} // namespace Frontend
