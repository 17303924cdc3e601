// SPDX-License-Identifier: Apache-2.0
#include "frontend/LineHits.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <numeric>

namespace Frontend {

namespace {

using Point = Tavro::Vector<double, 3>;
using Box = Tavro::BoundingBox<double, 3>;

constexpr double kNowhere = std::numeric_limits<double>::infinity();

Point minus(const Point& a, const Point& b) { return { a[0] - b[0], a[1] - b[1], a[2] - b[2] }; }
double dot(const Point& a, const Point& b) { return a[0] * b[0] + a[1] * b[1] + a[2] * b[2]; }
Point cross(const Point& a, const Point& b)
{
    return { a[1] * b[2] - a[2] * b[1], a[2] * b[0] - a[0] * b[2], a[0] * b[1] - a[1] * b[0] };
}

/// How far along the line the triangle is met; nowhere if it is not.
double met_at(const Tavro::Facet<double, 3, 3>& facet, const Point& from, const Point& direction)
{
    const Point a = minus(facet[1], facet[0]);
    const Point b = minus(facet[2], facet[0]);
    const Point p = cross(direction, b);
    const double determinant = dot(a, p);
    if (determinant == 0.0)
        return kNowhere;
    const Point t = minus(from, facet[0]);
    const double u = dot(t, p) / determinant;
    const Point q = cross(t, a);
    const double v = dot(direction, q) / determinant;
    if (!(u >= 0.0 && v >= 0.0 && u + v <= 1.0))
        return kNowhere;
    return dot(b, q) / determinant;
}

bool is_met(const Box& box, const Point& from, const Point& direction)
{
    double begin = -kNowhere;
    double end = kNowhere;
    for (std::size_t axis = 0; axis < 3; ++axis) {
        const double low = box.m_vMin[axis] - from[axis];
        const double high = box.m_vMax[axis] - from[axis];
        if (direction[axis] == 0.0) {
            if (low > 0.0 || high < 0.0)
                return false;
            continue;
        }
        const double first = low / direction[axis];
        const double second = high / direction[axis];
        begin = std::max(begin, std::min(first, second));
        end = std::min(end, std::max(first, second));
    }
    // A little more than the box: a hit on its face must not be lost to rounding.
    constexpr double kSlack = 1e-9;
    return begin <= end + kSlack * std::max(std::fabs(begin), std::fabs(end));
}

} // namespace

LineTree::LineTree(const Facets& facets)
    : m_facets(facets)
    , m_order(facets.size())
{
    std::iota(m_order.begin(), m_order.end(), std::size_t { 0 });
    if (!facets.empty())
        (void)add(0, facets.size()); // the root is the first
}

std::size_t LineTree::add(std::size_t first, std::size_t end)
{
    constexpr std::size_t kLeaf = 4;
    const auto middle_of = [this](std::size_t i, std::size_t axis) {
        const auto& facet = m_facets[i];
        return facet[0][axis] + facet[1][axis] + facet[2][axis];
    };
    const std::size_t number = m_nodes.size();
    Box box { m_facets[m_order[first]][0], m_facets[m_order[first]][0] };
    for (std::size_t i = first; i < end; ++i) {
        for (std::size_t k = 0; k < 3; ++k)
            box += { m_facets[m_order[i]][k], m_facets[m_order[i]][k] };
    }
    m_nodes.push_back({ box, first, end - first });
    if (end - first <= kLeaf)
        return number;
    std::size_t axis = 0;
    for (std::size_t other = 1; other < 3; ++other) {
        if (box.m_vMax[other] - box.m_vMin[other] > box.m_vMax[axis] - box.m_vMin[axis])
            axis = other;
    }
    const std::size_t half = first + (end - first) / 2;
    const auto place
        = [this](std::size_t i) { return m_order.begin() + static_cast<std::ptrdiff_t>(i); };
    std::nth_element(place(first), place(half), place(end),
        [&](std::size_t a, std::size_t b) { return middle_of(a, axis) < middle_of(b, axis); });
    (void)add(first, half); // the node behind this one
    const std::size_t second = add(half, end);
    m_nodes[number].first = second;
    m_nodes[number].count = 0;
    return number;
}

LineHits LineTree::hits(const Point& from, const Point& direction, std::size_t at) const
{
    LineHits found;
    found.nearest.fill(kNowhere);
    std::vector<std::size_t> open;
    if (!m_nodes.empty())
        open.push_back(0);
    while (!open.empty()) {
        const std::size_t number = open.back();
        const Node& node = m_nodes[number];
        open.pop_back();
        if (!is_met(node.box, from, direction))
            continue;
        if (node.count == 0) {
            open.push_back(node.first);
            open.push_back(number + 1);
        }
        for (std::size_t i = node.first; i < node.first + node.count; ++i) {
            const double distance
                = m_order[i] == at ? kNowhere : met_at(m_facets[m_order[i]], from, direction);
            if (!std::isfinite(distance))
                continue;
            const std::size_t side = distance > 0.0 ? 0 : 1;
            ++found.count[side];
            if (std::fabs(distance) < found.nearest[side]) {
                found.nearest[side] = std::fabs(distance);
                found.facet[side] = m_order[i];
            }
        }
    }
    return found;
}

} // namespace Frontend
