// SPDX-License-Identifier: Apache-2.0
#include "examples/pictures/Svg.h"
#include "frontend/models/RobinBody.h"
#include "geometry/SurfaceStages.h"
#include "geometry/TriangleCloud.h"
#include "geometry/VectorMath.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <string>
#include <utility>

namespace {

using Examples::Place;
using Examples::Svg;
using Point = Tavro::Vector<double, 3>;

constexpr unsigned int kLevel = 6;
constexpr double kSlice = 0.0123; ///< y of the plane of the pictures, away from sides of cells
constexpr Place kLow { 0.3, -0.19 };
constexpr Place kHigh { 1.35, 0.28 };
constexpr double kPixels = 800;

/// Where the plane cuts a polygon that it cuts once.
std::vector<Place> cut(const std::vector<Point>& polygon)
{
    std::vector<Place> places;
    for (std::size_t i = 0; i < polygon.size(); ++i) {
        const Point& a = polygon[i];
        const Point& b = polygon[(i + 1) % polygon.size()];
        if ((a[1] < kSlice) == (b[1] < kSlice))
            continue;
        const double t = (kSlice - a[1]) / (b[1] - a[1]);
        places.push_back({ a[0] + t * (b[0] - a[0]), a[2] + t * (b[2] - a[2]) });
    }
    return places;
}

void draw_body(Svg& svg, const Tavro::TriangleCloud& cloud)
{
    svg.Style(R"(fill="none" stroke="#c00" stroke-width="1.2")");
    for (const auto* facet : cloud.m_vecFacets)
        svg.Line(cut({ (*facet)[0], (*facet)[1], (*facet)[2] }), false);
}

bool draw_octree(
    BasicOctree::BasicOctree& root, const Tavro::TriangleCloud& cloud, const std::string& file)
{
    Svg svg(kLow, kHigh, kPixels);
    Tavro::FrontList<BasicOctree::BasicOctree*> leaves;
    root.GetLeaves(leaves);
    for (const bool withFacets : { false, true }) {
        svg.Style(withFacets ? R"(fill="#fe9" stroke="#777" stroke-width="0.6")"
                             : R"(fill="#f7f7f7" stroke="#777" stroke-width="0.6")");
        for (const BasicOctree::BasicOctree* leaf : leaves) {
            const Point& lo = leaf->m_Box.m_vMin;
            const Point& hi = leaf->m_Box.m_vMax;
            const bool has = leaf->m_pTriangles != nullptr && !leaf->m_pTriangles->empty();
            if (has == withFacets && lo[1] <= kSlice && kSlice < hi[1])
                svg.Line({ { lo[0], lo[2] }, { hi[0], lo[2] }, { hi[0], hi[2] }, { lo[0], hi[2] } },
                    true);
        }
    }
    draw_body(svg, cloud);
    return svg.Write(file);
}

bool draw_cells(const BasicMorpher::BasicMorpher& cells, const std::string& file)
{
    Svg svg(kLow, kHigh, kPixels);
    for (const bool skin : { false, true }) {
        svg.Style(skin ? R"(fill="none" stroke="#06c" stroke-width="2")"
                       : R"(fill="none" stroke="#999" stroke-width="0.5")");
        for (auto face = cells.m_lstFaces.begin(); face != cells.m_lstFaces.end(); ++face) {
            std::vector<Point> corners;
            bool onSurface = face->m_vecEdges.size() == 3;
            for (unsigned int i = 0; i < face->m_vecEdges.size(); ++i) {
                corners.push_back(face->GetVert(i)->m_vPosition);
                onSurface = onSurface && face->GetVert(i)->m_bOnSurface;
            }
            const std::vector<Place> line = cut(corners);
            if (onSurface == skin && line.size() == 2)
                svg.Line(line, false);
        }
    }
    return svg.Write(file);
}

/// From the front, the left and above, as an orthographic projection.
bool draw_skin(const Tavro::TriangleCloud& cloud, const std::string& file)
{
    unsigned char normals = 0;
    unsigned char curvature = 0;
    const auto surface = cloud.GenerateApproximateWettedSurface(kLevel, normals, true, curvature);
    const Point toEye { -0.5, -0.75, 0.433 };
    const Point right { 0.832, -0.555, 0 };
    const Point up = Tavro::Cross(right, { -toEye[0], -toEye[1], -toEye[2] });
    struct Seen {
        double depth;
        std::vector<Place> corners;
        int grey;
        bool sharp;
    };
    std::vector<Seen> all;
    for (std::size_t i = 0; i < surface->NumberOfFacets(); ++i) {
        const auto v = surface->FacetVertices(i);
        const Point& a = surface->m_vecVertices[v[0]];
        const Point& b = surface->m_vecVertices[v[1]];
        const Point& c = surface->m_vecVertices[v[2]];
        const Point normal
            = Tavro::Normalised(Tavro::Cross(Tavro::Subtract(b, a), Tavro::Subtract(c, a)));
        const double facing = Tavro::Dot(normal, toEye);
        if (!(facing > 0))
            continue;
        Seen seen { Tavro::Dot(a, toEye) + Tavro::Dot(b, toEye) + Tavro::Dot(c, toEye), {}, 0,
            surface->m_vecFacetDoubleData[curvature][i] > 0.5 };
        for (const Point& p : { a, b, c })
            seen.corners.push_back({ Tavro::Dot(p, right), Tavro::Dot(p, up) });
        seen.grey = static_cast<int>(std::lround(9 + 5 * facing));
        all.push_back(std::move(seen));
    }
    std::stable_sort(all.begin(), all.end(),
        [](const Seen& one, const Seen& other) { return one.depth < other.depth; });
    Place low { 1e9, 1e9 };
    Place high { -1e9, -1e9 };
    for (const Seen& seen : all) {
        for (const Place& p : seen.corners) {
            low = { std::min(low.x, p.x), std::min(low.y, p.y) };
            high = { std::max(high.x, p.x), std::max(high.y, p.y) };
        }
    }
    Svg svg({ low.x - 0.02, low.y - 0.02 }, { high.x + 0.02, high.y + 0.02 }, 480);
    for (const Seen& seen : all) {
        const char digit = "0123456789abcdef"[seen.grey];
        std::string colour = "#";
        colour += seen.sharp ? 'f' : digit;
        colour += digit;
        colour += seen.sharp ? '6' : digit;
        svg.Style(R"(fill=")" + colour + R"(" stroke="#555" stroke-width=".3")");
        svg.Line(seen.corners, true);
    }
    return svg.Write(file);
}

} // namespace

/// surface_pictures FOLDER: what the stages of the approximate wetted surface make of the ROBIN
/// body, as drawings for the manual.
int main(int argc, char** argv)
{
    if (argc != 2) {
        (void)std::fprintf(stderr, "usage: surface_pictures FOLDER\n");
        return 1;
    }
    const std::string folder = std::string(argv[1]) + "/";
    Tavro::TriangleCloud cloud;
    for (const auto& body :
        { Examples::robin_fuselage(1, 64, 48), Examples::robin_pylon(1, 24, 48) }) {
        for (const auto& facet : body)
            (void)cloud.AddTriangle(facet[0], facet[1], facet[2]); // none is degenerate
    }
    BasicOctree::BasicOctree root;
    root.m_Box = Tavro::RootCube(cloud.m_Box);
    Tavro::RefineAround(root, cloud.m_vecFacets, kLevel);
    BasicMorpher::BasicMorpher cells;
    Tavro::AddLeafCells(cells, root);
    cells.IntersectEdges();
    cells.MorphGrid();
    const bool written = draw_octree(root, cloud, folder + "surface-octree.svg")
        && draw_cells(cells, folder + "surface-cells.svg")
        && draw_skin(cloud, folder + "surface-skin.svg");
    if (!written)
        (void)std::fprintf(stderr, "cannot write to %s\n", folder.c_str());
    return written ? 0 : 1;
}
