// SPDX-License-Identifier: Apache-2.0
#include "frontend/GeometryChecks.h"

#include "tavrobase/StringUtilities.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>
#include <map>
#include <set>

namespace Frontend {

namespace {

using Point = Tavro::Vector<double, 3>;
using Key = std::array<double, 3>;

Key key_of(const Point& p) { return { p[0] + 0.0, p[1] + 0.0, p[2] + 0.0 }; } // -0.0 is 0.0

Point minus(const Point& a, const Point& b) { return { a[0] - b[0], a[1] - b[1], a[2] - b[2] }; }
double dot(const Point& a, const Point& b) { return a[0] * b[0] + a[1] * b[1] + a[2] * b[2]; }
Point cross(const Point& a, const Point& b)
{
    return { a[1] * b[2] - a[2] * b[1], a[2] * b[0] - a[0] * b[2], a[0] * b[1] - a[1] * b[0] };
}

/// Vertex numbers of each facet, equal points having one.
std::vector<std::array<std::size_t, 3>> numbered(const Facets& facets)
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
    for (const auto& facet : facets) {
        std::array<std::size_t, 3> corner {};
        for (std::size_t k = 0; k < 3; ++k)
            corner[k] = static_cast<std::size_t>(
                std::lower_bound(points.begin(), points.end(), key_of(facet[k])) - points.begin());
        corners.push_back(corner);
    }
    return corners;
}

/// How far along the line from `from` the triangle is met; nothing far if it is not.
double met_at(const Tavro::Facet<double, 3, 3>& facet, const Point& from, const Point& direction)
{
    const Point a = minus(facet[1], facet[0]);
    const Point b = minus(facet[2], facet[0]);
    const Point p = cross(direction, b);
    const double determinant = dot(a, p);
    constexpr double kNowhere = std::numeric_limits<double>::infinity();
    if (determinant == 0.0)
        return kNowhere;
    const Point t = minus(from, facet[0]);
    const double u = dot(t, p) / determinant;
    const Point q = cross(t, a);
    const double v = dot(direction, q) / determinant;
    if (u < 0.0 || v < 0.0 || u + v > 1.0)
        return kNowhere;
    return dot(b, q) / determinant;
}

/// Thickness of the body at the middle of a facet, along its normal. Which side is inside follows
/// from how often the line leaves the surface there, not from the winding, which files get wrong.
double thickness(const Facets& facets, std::size_t at)
{
    const auto& facet = facets[at];
    Point normal = cross(minus(facet[1], facet[0]), minus(facet[2], facet[0]));
    const double length = std::sqrt(dot(normal, normal));
    if (!(length > 0.0))
        return std::numeric_limits<double>::infinity();
    Point middle {};
    for (std::size_t axis = 0; axis < 3; ++axis) {
        normal[axis] /= length;
        middle[axis] = (facet[0][axis] + facet[1][axis] + facet[2][axis]) / 3.0;
    }
    std::array<double, 2> nearest;
    nearest.fill(std::numeric_limits<double>::infinity());
    std::array<std::size_t, 2> hits {};
    for (std::size_t i = 0; i < facets.size(); ++i) {
        const double distance
            = i == at ? std::numeric_limits<double>::infinity() : met_at(facets[i], middle, normal);
        if (!std::isfinite(distance))
            continue;
        const std::size_t side = distance > 0.0 ? 0 : 1;
        nearest[side] = std::min(nearest[side], std::fabs(distance));
        ++hits[side];
    }
    double least = std::numeric_limits<double>::infinity();
    for (std::size_t side = 0; side < 2; ++side) {
        if (hits[side] % 2 == 1)
            least = std::min(least, nearest[side]);
    }
    return least;
}

/// Triangles that are one only until their coordinates are rounded to six digits.
std::size_t collapsing(const Facets& facets)
{
    const auto rounded = [](const Point& p) {
        return std::array { Tavro::NumToString(p[0]), Tavro::NumToString(p[1]),
            Tavro::NumToString(p[2]) };
    };
    std::size_t count = 0;
    for (const auto& facet : facets) {
        const bool whole = key_of(facet[0]) != key_of(facet[1])
            && key_of(facet[1]) != key_of(facet[2]) && key_of(facet[2]) != key_of(facet[0]);
        const std::array corners { rounded(facet[0]), rounded(facet[1]), rounded(facet[2]) };
        const bool kept
            = corners[0] != corners[1] && corners[1] != corners[2] && corners[2] != corners[0];
        count += whole && !kept ? 1U : 0U;
    }
    return count;
}

bool is_finite(const Facets& facets)
{
    for (const auto& facet : facets) {
        for (std::size_t k = 0; k < 3; ++k) {
            for (std::size_t axis = 0; axis < 3; ++axis) {
                if (!std::isfinite(facet[k][axis]))
                    return false;
            }
        }
    }
    return true;
}

double base_cell(const VRK::GridData& grid)
{
    const double cells[] { static_cast<double>(grid.m_uintCellsX),
        static_cast<double>(grid.m_uintCellsY), static_cast<double>(grid.m_uintCellsZ) };
    double longest = 0.0;
    for (std::size_t axis = 0; axis < 3; ++axis)
        longest
            = std::max(longest, (grid.m_dDomainMax[axis] - grid.m_dDomainMin[axis]) / cells[axis]);
    return longest;
}

bool leaves_domain(const Facets& facets, const VRK::GridData& grid)
{
    return std::any_of(facets.begin(), facets.end(), [&grid](const auto& facet) {
        for (std::size_t k = 0; k < 3; ++k) {
            for (std::size_t axis = 0; axis < 3; ++axis) {
                if (facet[k][axis] < grid.m_dDomainMin[axis]
                    || facet[k][axis] > grid.m_dDomainMax[axis])
                    return true;
            }
        }
        return false;
    });
}

} // namespace

std::size_t open_edges(const Facets& facets)
{
    std::vector<std::pair<std::size_t, std::size_t>> edges;
    for (const auto& corner : numbered(facets)) {
        if (corner[0] == corner[1] || corner[1] == corner[2] || corner[2] == corner[0])
            continue; // a triangle without area closes nothing and opens nothing
        for (std::size_t k = 0; k < 3; ++k)
            edges.emplace_back(std::minmax(corner[k], corner[(k + 1) % 3]));
    }
    std::sort(edges.begin(), edges.end());
    std::size_t open = 0;
    for (std::size_t i = 0; i < edges.size();) {
        const auto end = std::upper_bound(
            edges.begin() + static_cast<std::ptrdiff_t>(i), edges.end(), edges[i]);
        const auto next = static_cast<std::size_t>(end - edges.begin());
        open += next - i == 2 ? 0U : 1U;
        i = next;
    }
    return open;
}

double thin_share(const Facets& facets, double length)
{
    constexpr std::size_t kPairs = 2'000'000; // a fraction of a second
    if (facets.empty())
        return 0.0;
    const std::size_t samples = std::clamp<std::size_t>(kPairs / facets.size(), 1, facets.size());
    std::size_t thin = 0;
    for (std::size_t i = 0; i < samples; ++i)
        thin += thickness(facets, i * facets.size() / samples) < length ? 1U : 0U;
    return static_cast<double>(thin) / static_cast<double>(samples);
}

double wetted_cell(const std::vector<const Facets*>& bodies, unsigned int level)
{
    Tavro::BoundingBox<double, 3> box { { Tavro::kNone<double>, Tavro::kNone<double>,
                                            Tavro::kNone<double> },
        { -Tavro::kNone<double>, -Tavro::kNone<double>, -Tavro::kNone<double> } };
    for (const Facets* facets : bodies) {
        for (const auto& facet : *facets) {
            for (std::size_t k = 0; k < 3; ++k)
                box += { facet[k], facet[k] };
        }
    }
    double longest = 0.0;
    for (std::size_t axis = 0; axis < 3; ++axis)
        longest = std::max(longest, box.m_vMax[axis] - box.m_vMin[axis]);
    return std::ldexp(1.1 * longest, -static_cast<int>(std::min(level, 1000U)));
}

void check_body(const LookedAtBody& body, Diagnostics& diagnostics)
{
    const Facets& facets = *body.facets;
    constexpr double kLongestCell = 100.0;
    constexpr double kThinShare = 0.05; // every body has some edge or tip
    const auto warn
        = [&](const std::string& what) { diagnostics.warning(body.place, body.name + ' ' + what); };
    if (facets.empty()) {
        warn("has no triangles");
        return;
    }
    if (!is_finite(facets)) {
        warn("has coordinates that are no finite numbers");
        return;
    }
    if (const std::size_t open = open_edges(facets); open > 0) {
        warn("is not closed: " + Tavro::NumToString(static_cast<unsigned long>(open))
            + " edges do not have two triangles; air leaks in there, and its wetted surface comes "
              "out as an open sheet");
        return; // how thick it is means nothing then
    }
    const std::string cell = Tavro::NumToString(body.cell);
    if (body.cell > kLongestCell)
        warn("meets cells " + cell
            + " long; results drift where cells are longer than about 100 units of length, so give "
              "it in metres (scale = 0.001 makes metres of millimetres)");
    if (const double thin = thin_share(facets, body.cell); thin > kThinShare)
        warn("is thinner than a cell of " + cell + " at about "
            + Tavro::NumToString(static_cast<int>(std::lround(100.0 * thin)))
            + " % of its surface; it becomes a sheet there or vanishes, so ask for a higher level");
    if (const std::size_t lost = collapsing(facets); lost > 0)
        warn("lies so far from the origin that "
            + Tavro::NumToString(static_cast<unsigned long>(lost))
            + " of its triangles collapse when six digits of their coordinates are written; move "
              "it "
              "nearer (translate)");
}

void check_bodies(const CaseTree& read, Diagnostics& diagnostics)
{
    const VRK::ControllerInput& record = read.record;
    const VRK::GridData& grid = record.m_grid;
    std::vector<const Facets*> all;
    for (const VRK::BodyData& body : record.m_vecBodies)
        all.push_back(&body.m_vecFacets);
    const bool wetted = grid.m_bApproxWettedSurface;
    const double wettedCell = wetted ? wetted_cell(all, grid.m_uintWettedSurfaceArg) : 0.0;
    std::set<std::uint32_t> ids;
    for (std::size_t i = 0; i < all.size(); ++i) {
        const VRK::BodyData& body = record.m_vecBodies[i];
        const std::string path = "body[" + std::to_string(i) + ']';
        const double cell = wetted
            ? wettedCell
            : std::ldexp(base_cell(grid), -static_cast<int>(std::min(body.m_uintLevel, 1000U)));
        const std::string name = "body " + std::to_string(body.m_uintBodyId);
        check_body({ name, read.place(path), all[i], cell }, diagnostics);
        if (leaves_domain(body.m_vecFacets, grid))
            diagnostics.warning(read.place(path), name + " reaches out of the domain");
        if (!ids.insert(body.m_uintBodyId).second)
            diagnostics.warning(read.place(path), name + " is not the only one with this \"id\"");
    }
}

} // namespace Frontend
