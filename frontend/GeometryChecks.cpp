// SPDX-License-Identifier: Apache-2.0
#include "frontend/GeometryChecks.h"

#include "frontend/Thickness.h"
#include "tavrobase/StringUtilities.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <set>

namespace Frontend {

namespace {

using Point = Tavro::Vector<double, 3>;
using Key = std::array<double, 3>;

Key key_of(const Point& p) { return { p[0] + 0.0, p[1] + 0.0, p[2] + 0.0 }; } // -0.0 is 0.0

/// Whether two of its corners are one, so that nothing is made of it.
bool is_degenerate(const Tavro::Facet<double, 3, 3>& facet)
{
    return key_of(facet[0]) == key_of(facet[1]) || key_of(facet[1]) == key_of(facet[2])
        || key_of(facet[2]) == key_of(facet[0]);
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
        const std::array corners { rounded(facet[0]), rounded(facet[1]), rounded(facet[2]) };
        const bool kept
            = corners[0] != corners[1] && corners[1] != corners[2] && corners[2] != corners[0];
        count += !is_degenerate(facet) && !kept ? 1U : 0U;
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

/// How many triangles each edge has.
std::vector<std::size_t> triangles_of_edges(const Facets& facets)
{
    std::vector<std::pair<std::size_t, std::size_t>> edges;
    for (const auto& corner : numbered_corners(facets)) {
        if (corner[0] == corner[1] || corner[1] == corner[2] || corner[2] == corner[0])
            continue; // a triangle without area closes nothing and opens nothing
        for (std::size_t k = 0; k < 3; ++k)
            edges.emplace_back(std::minmax(corner[k], corner[(k + 1) % 3]));
    }
    std::sort(edges.begin(), edges.end());
    std::vector<std::size_t> counts;
    for (std::size_t i = 0; i < edges.size(); ++i) {
        if (i == 0 || edges[i] != edges[i - 1])
            counts.push_back(0);
        ++counts.back();
    }
    return counts;
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

bool has_volume(const CaseTree& read)
{
    const VRK::GridData& grid = read.record.m_grid;
    bool volume = read.sound("grid.domain_min") && read.sound("grid.domain_max");
    for (std::size_t axis = 0; axis < 3; ++axis)
        volume = volume && grid.m_dDomainMax[axis] > grid.m_dDomainMin[axis];
    return volume;
}

/// Length of the cells that meet a body; 0 if what it follows from is faulty.
struct CellOfBody {
    const CaseTree& read;
    double wetted; ///< 0 if not known

    [[nodiscard]] double length(std::size_t i) const
    {
        const VRK::GridData& grid = read.record.m_grid;
        const std::string surface = "grid.wetted_surface.";
        if (!read.sound(surface + "on"))
            return 0.0;
        if (grid.m_bApproxWettedSurface)
            return read.sound(surface + "level") ? wetted : 0.0;
        if (!has_volume(read) || !read.sound("grid.cells")
            || !read.sound("body[" + std::to_string(i) + "].level"))
            return 0.0;
        const unsigned int level = std::min(read.record.m_vecBodies[i].m_uintLevel, 1000U);
        return std::ldexp(base_cell(grid), -static_cast<int>(level));
    }
};

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
    const std::vector<std::size_t> edges = triangles_of_edges(facets);
    const auto two = std::count(edges.begin(), edges.end(), std::size_t { 2 });
    return edges.size() - static_cast<std::size_t>(two);
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

namespace {

/// Edges or tips that every body has are no parts of it.
bool is_noticed(const ThinParts& thin, double cell)
{
    constexpr double kShare = 0.05;
    constexpr double kCells = 16.0; // more than the tip of a cone whose length is 20 diameters
    return thin.share > kShare || thin.largest > kCells * cell * cell;
}

/// What is wrong with the edges; empty if they enclose a body. An even number of triangles is fine:
/// parts may touch.
std::string edge_faults(const Facets& facets)
{
    std::size_t single = 0;
    std::size_t odd = 0;
    for (const std::size_t count : triangles_of_edges(facets)) {
        single += count == 1 ? 1U : 0U;
        odd += count % 2;
    }
    const auto edges = [](std::size_t count) {
        return Tavro::NumToString(static_cast<unsigned long>(count))
            + (count == 1 ? " edge has " : " edges have ");
    };
    if (single > 0)
        return "is not closed: " + edges(single)
            + "only one triangle; through a hole larger than a cell air leaks in, and the wetted "
              "surface comes out as an open sheet";
    if (odd > 0)
        return "does not tell inside from outside: " + edges(odd)
            + "an odd number of triangles; some of them are there twice, or make walls within it";
    return "";
}

std::string percent_text(double share)
{
    const auto percent = std::lround(100.0 * share);
    return percent < 1 ? "less than 1 %"
                       : "about " + Tavro::NumToString(static_cast<int>(percent)) + " %";
}

} // namespace

std::string collapse_of(const Facets& facets)
{
    if (facets.empty() || !std::all_of(facets.begin(), facets.end(), is_degenerate))
        return "";
    const Key first = key_of(facets[0][0]);
    const bool isPoint = std::all_of(facets.begin(), facets.end(), [&first](const auto& facet) {
        return key_of(facet[0]) == first && key_of(facet[1]) == first && key_of(facet[2]) == first;
    });
    if (!isPoint)
        return "has no surface: two corners of each of its triangles are one";
    return "is a single point: all its corners lie at " + Tavro::NumToString(first[0]) + ", "
        + Tavro::NumToString(first[1]) + ", " + Tavro::NumToString(first[2]);
}

void check_body(const LookedAtBody& body, Diagnostics& diagnostics)
{
    const Facets& facets = *body.facets;
    constexpr double kLongestCell = 100.0;
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
    if (const std::string collapse = collapse_of(facets); !collapse.empty()) {
        warn(collapse + "; at no level is anything left of it");
        return;
    }
    const std::string faults = edge_faults(facets);
    if (!faults.empty())
        warn(faults);
    const std::string cell = Tavro::NumToString(body.cell);
    if (body.cell > kLongestCell)
        warn("meets cells " + cell
            + " long; results drift where cells are longer than about 100 units of length, so give "
              "it in metres (scale = 0.001 makes metres of millimetres)");
    if (faults.empty() && body.cell > 0.0) { // else nobody knows where its inside is
        const ThinParts thin = thin_parts(facets, body.cell);
        if (is_noticed(thin, body.cell))
            warn("is thinner than a cell of " + cell + " at " + percent_text(thin.share)
                + " of its surface; it becomes a sheet there or vanishes, so ask for a higher "
                  "level");
    }
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
    const auto key_of_body
        = [](std::size_t i, const char* key) { return "body[" + std::to_string(i) + ']' + key; };
    std::vector<const Facets*> all;
    bool allSound = read.sound("body");
    for (std::size_t i = 0; i < record.m_vecBodies.size(); ++i) {
        all.push_back(&record.m_vecBodies[i].m_vecFacets);
        allSound = allSound && read.sound(key_of_body(i, ".facets"));
    }
    const CellOfBody cells { read, allSound ? wetted_cell(all, grid.m_uintWettedSurfaceArg) : 0.0 };
    const bool domain = has_volume(read);
    std::set<std::uint32_t> ids;
    for (std::size_t i = 0; i < all.size(); ++i) {
        const VRK::BodyData& body = record.m_vecBodies[i];
        const Place place = read.place(key_of_body(i, ""));
        const bool named = read.sound(key_of_body(i, ".id"));
        const std::string name = named ? "body " + std::to_string(body.m_uintBodyId) : "this body";
        if (read.sound(key_of_body(i, ".facets"))) {
            check_body({ name, place, all[i], cells.length(i) }, diagnostics);
            if (domain && leaves_domain(body.m_vecFacets, grid))
                diagnostics.warning(place, name + " reaches out of the domain");
        }
        if (named && !ids.insert(body.m_uintBodyId).second)
            diagnostics.warning(place, name + " is not the only one with this \"id\"");
    }
}

} // namespace Frontend
