// SPDX-License-Identifier: Apache-2.0
#include "frontend/Thickness.h"

#include "frontend/LineHits.h"

#include <algorithm>
#include <cmath>
#include <numeric>

namespace Frontend {

namespace {

using Point = Tavro::Vector<double, 3>;
using Key = std::array<double, 3>;

Key key_of(const Point& p) { return { p[0] + 0.0, p[1] + 0.0, p[2] + 0.0 }; } // -0.0 is 0.0

/// Points of a triangle that fill it evenly, however many are taken, and lie on no line that a mesh
/// is likely to have: the additive sequence with the smallest gaps in the square, folded at its
/// diagonal.
class SpreadPoints {
public:
    Point next(const Tavro::Facet<double, 3, 3>& facet)
    {
        constexpr double kPlastic = 1.32471795724474602596; // the root of x^3 = x + 1
        ++m_count;
        const auto part = [this](double step) {
            const double value = 0.5 + step * m_count;
            return value - std::floor(value);
        };
        double u = part(1.0 / kPlastic);
        double v = part(1.0 / (kPlastic * kPlastic));
        if (u + v > 1.0) {
            u = 1.0 - u;
            v = 1.0 - v;
        }
        Point point {};
        for (std::size_t axis = 0; axis < 3; ++axis)
            point[axis] = facet[0][axis] + u * (facet[1][axis] - facet[0][axis])
                + v * (facet[2][axis] - facet[0][axis]);
        return point;
    }

private:
    double m_count = 0.0;
};

/// Normal of a triangle, as long as twice its area.
Point normal_of(const Tavro::Facet<double, 3, 3>& facet)
{
    Point a {};
    Point b {};
    for (std::size_t axis = 0; axis < 3; ++axis) {
        a[axis] = facet[1][axis] - facet[0][axis];
        b[axis] = facet[2][axis] - facet[0][axis];
    }
    return { a[1] * b[2] - a[2] * b[1], a[2] * b[0] - a[0] * b[2], a[0] * b[1] - a[1] * b[0] };
}

double length_of(const Point& p) { return std::sqrt(p[0] * p[0] + p[1] * p[1] + p[2] * p[2]); }

enum class Thin { No, BesideAnEdge, BetweenSides };

/// Whether the body is thinner than `length` at a point where the unit normal is this. Which side
/// is inside follows from how often the line leaves the surface there, not from the winding, which
/// files get wrong. Beside the edge of a wedge the other side does not face the point.
Thin thinness(const Facets& facets, const LineHits& hits, const Point& normal, double length)
{
    constexpr double kFacing = 0.866; // cosine of 30 degrees
    Thin thin = Thin::No;
    for (std::size_t side = 0; side < 2; ++side) {
        if (hits.count[side] % 2 == 0 || hits.nearest[side] >= length)
            continue;
        const Point other = normal_of(facets[hits.facet[side]]);
        const double cosine = normal[0] * other[0] + normal[1] * other[1] + normal[2] * other[2];
        if (std::fabs(cosine) > kFacing * length_of(other))
            return Thin::BetweenSides;
        thin = Thin::BesideAnEdge;
    }
    return thin;
}

/// Which triangles hang together.
class Groups {
public:
    explicit Groups(std::size_t size)
        : m_parent(size)
    {
        std::iota(m_parent.begin(), m_parent.end(), std::size_t { 0 });
    }
    std::size_t of(std::size_t i)
    {
        while (m_parent[i] != i)
            i = m_parent[i] = m_parent[m_parent[i]];
        return i;
    }
    void join(std::size_t a, std::size_t b) { m_parent[of(a)] = of(b); }

private:
    std::vector<std::size_t> m_parent;
};

double largest_group(const Facets& facets, const std::vector<double>& thin)
{
    const auto corners = numbered_corners(facets);
    Groups groups(3 * facets.size()); // of corners
    for (std::size_t i = 0; i < facets.size(); ++i) {
        if (thin[i] > 0.0) {
            groups.join(corners[i][0], corners[i][1]);
            groups.join(corners[i][1], corners[i][2]);
        }
    }
    std::vector<double> areas(3 * facets.size());
    double largest = 0.0;
    for (std::size_t i = 0; i < facets.size(); ++i) {
        double& area = areas[groups.of(corners[i][0])];
        area += thin[i];
        largest = std::max(largest, area);
    }
    return largest;
}

} // namespace

std::vector<std::array<std::size_t, 3>> numbered_corners(const Facets& facets)
{
    std::vector<Key> points;
    points.reserve(3 * facets.size());
    for (const auto& facet : facets) {
        for (std::size_t k = 0; k < 3; ++k)
            points.push_back(key_of(facet[k]));
    }
    std::sort(points.begin(), points.end());
    points.erase(std::unique(points.begin(), points.end()), points.end());
    std::vector<std::array<std::size_t, 3>> corners;
    corners.reserve(facets.size());
    for (const auto& facet : facets) {
        std::array<std::size_t, 3> corner {};
        for (std::size_t k = 0; k < 3; ++k)
            corner[k] = static_cast<std::size_t>(
                std::lower_bound(points.begin(), points.end(), key_of(facet[k])) - points.begin());
        corners.push_back(corner);
    }
    return corners;
}

ThinParts thin_parts(const Facets& facets, double length)
{
    constexpr double kSpread = 20'000.0; // beside the one on each triangle; a fraction of a second
    double area = 0.0;
    for (const auto& facet : facets)
        area += length_of(normal_of(facet)) / 2.0;
    if (!(area > 0.0) || !std::isfinite(area))
        return {};
    const LineTree tree(facets);
    SpreadPoints points;
    std::vector<double> thin(facets.size()); // area of each triangle between such sides
    double edges = 0.0;
    for (std::size_t i = 0; i < facets.size(); ++i) {
        Point normal = normal_of(facets[i]);
        const double twice = length_of(normal);
        if (!(twice > 0.0))
            continue;
        for (std::size_t axis = 0; axis < 3; ++axis)
            normal[axis] /= twice;
        const auto samples = 1 + static_cast<std::size_t>(kSpread * twice / 2.0 / area);
        const double each = twice / 2.0 / static_cast<double>(samples);
        for (std::size_t k = 0; k < samples; ++k) {
            const Thin found
                = thinness(facets, tree.hits(points.next(facets[i]), normal, i), normal, length);
            thin[i] += found == Thin::BetweenSides ? each : 0.0;
            edges += found == Thin::BesideAnEdge ? each : 0.0;
        }
    }
    const double sides = std::accumulate(thin.begin(), thin.end(), 0.0);
    // Every body has edges; one that consists of them is small as a whole.
    const bool small = sides + edges > 0.8 * area;
    return { (small ? sides + edges : sides) / area, largest_group(facets, thin) };
}

} // namespace Frontend
